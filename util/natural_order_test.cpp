// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/natural_order.h"

#include <gtest/gtest.h>
#include <string>

namespace tallow {
namespace {

using namespace std::string_literals;

/// Returns -1, 0 or 1: a comes before b, is equal to b, or comes after b.
int Compare(const std::string& a, const std::string& b) {
  return NaturalLess(a, b) ? -1 : NaturalLess(b, a) ? 1 : 0;
}

TEST(NaturalOrder, NumbersAreComparedByValue) {
  EXPECT_EQ(Compare("Disc 2", "Disc 10"), -1);
  EXPECT_EQ(Compare("Disc 10", "Disc 2"), 1);
  EXPECT_EQ(Compare("2 b", "10 a"), -1);
  EXPECT_EQ(Compare("a1b3", "a1b20"), -1);
  EXPECT_EQ(Compare("99999999999999999999999998", "99999999999999999999999999"), -1);
}

TEST(NaturalOrder, LeadingZerosAreIgnored) {
  EXPECT_EQ(Compare("007", "7"), 0);
  EXPECT_EQ(Compare("007", "8"), -1);
  EXPECT_EQ(Compare("0", "000"), 0);
  EXPECT_EQ(Compare("a 0", "a 1"), -1);
}

TEST(NaturalOrder, LetterCaseIsIgnored) {
  EXPECT_EQ(Compare("abba", "ABBA"), 0);
  EXPECT_EQ(Compare("b", "A"), 1);
  EXPECT_EQ(Compare("Étienne", "éTIENNE"), 0);
}

TEST(NaturalOrder, APrefixComesFirst) {
  EXPECT_EQ(Compare("", ""), 0);
  EXPECT_EQ(Compare("", "a"), -1);
  EXPECT_EQ(Compare("Disc", "Disc 1"), -1);
  EXPECT_EQ(Compare("Disc 1", "Disc 1 b"), -1);
}

TEST(NaturalOrder, InvalidUtf8ComesLast) {
  EXPECT_EQ(Compare("a\xFF", "a\xFF"), 0);
  EXPECT_EQ(Compare("az", "a\xFF"), -1);
  EXPECT_EQ(Compare("a\0b"s, "a\0c"s), -1);
}

}  // namespace
}  // namespace tallow

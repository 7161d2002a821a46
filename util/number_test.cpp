// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/number.h"

#include <gtest/gtest.h>

#include "util/errors.h"

namespace tallow {
namespace {

TEST(ConvertToInt32, AcceptsBlanksAndSigns) {
  EXPECT_EQ(ConvertToInt32(" 1234 "), 1234);
  EXPECT_EQ(ConvertToInt32("-5"), -5);
  EXPECT_EQ(ConvertToInt32("+007"), 7);
  EXPECT_EQ(ConvertToInt32("2147483647"), 2147483647);
  EXPECT_EQ(ConvertToInt32("-2147483648"), -2147483648LL);
}

TEST(ConvertToInt32, RoundsFractionsHalvesToEven) {
  EXPECT_EQ(ConvertToInt32("0.5"), 0);
  EXPECT_EQ(ConvertToInt32("1.5"), 2);
  EXPECT_EQ(ConvertToInt32("2.5"), 2);
  EXPECT_EQ(ConvertToInt32("2.51"), 3);
  EXPECT_EQ(ConvertToInt32("-2.5"), -2);
  EXPECT_EQ(ConvertToInt32("-3.5"), -4);
  EXPECT_EQ(ConvertToInt32(".6"), 1);
}

TEST(ConvertToInt32, RejectsATextThatIsNotANumber) {
  for (const char* text : {"", " ", "abc", "12a", "1 2", "-", ".", "0x10", "1-"})
    EXPECT_THROW(ConvertToInt32(text), TypeMismatchError) << text;
  try {
    ConvertToInt32("abc");
  } catch (const TypeMismatchError& error) {
    EXPECT_STREQ(error.what(), "'abc' is not a number");
    EXPECT_EQ(error.value(), "abc");
  }
}

TEST(ConvertToInt32, RejectsANumberThatDoesNotFit) {
  for (const char* text : {"2147483648", "-2147483649", "2147483647.5", "99999999999999999999999"})
    EXPECT_THROW(ConvertToInt32(text), OverflowError) << text;
  try {
    ConvertToInt32("2147483648");
  } catch (const OverflowError& error) {
    EXPECT_STREQ(error.what(), "'2147483648' is out of range");
  }
}

TEST(ConvertToInt32, EndsAtTheFirstNul) {
  EXPECT_EQ(ConvertToInt32(std::string_view("85\0\0", 4)), 85);
  EXPECT_THROW(ConvertToInt32(std::string_view("\0\0\0\0", 4)), TypeMismatchError);
}

TEST(ConvertToInt16, ConvertsTrueAndFalse) {
  EXPECT_EQ(ConvertToInt16("True"), -1);
  EXPECT_EQ(ConvertToInt16(" false "), 0);
  EXPECT_EQ(ConvertToInt16("7"), 7);
  EXPECT_EQ(ConvertToInt16("-32768"), -32768);
  EXPECT_THROW(ConvertToInt16("32768"), OverflowError);
  EXPECT_THROW(ConvertToInt16("yes"), TypeMismatchError);
  EXPECT_THROW(ConvertToInt16(""), TypeMismatchError);
}

TEST(NumericValue, ParsesTheNumberAtTheStartOfAText) {
  EXPECT_EQ(NumericValue("12 songs"), 12);
  EXPECT_EQ(NumericValue("  -3"), -3);
  EXPECT_EQ(NumericValue(""), 0);
  EXPECT_EQ(NumericValue("abc"), 0);
  EXPECT_EQ(NumericValue("99999999999"), 2147483647);
  EXPECT_EQ(NumericValue("-99999999999"), -2147483648LL);
}

TEST(GroupedNumber, SeparatesGroupsOfThreeDigits) {
  EXPECT_EQ(GroupedNumber(0), "0");
  EXPECT_EQ(GroupedNumber(999), "999");
  EXPECT_EQ(GroupedNumber(1000), "1,000");
  EXPECT_EQ(GroupedNumber(-999), "-999");
  EXPECT_EQ(GroupedNumber(-1234567), "-1,234,567");
  EXPECT_EQ(GroupedNumber(123456789), "123,456,789");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/quicksort.h"

#include <gtest/gtest.h>
#include <random>

#include "tests/reference_quicksort.h"
#include "tests/text_rows.h"
#include "util/errors.h"

namespace tallow {
namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows Column(std::initializer_list<const char*> cells) {
  Rows rows;
  for (const char* cell : cells) rows.push_back({cell});
  return rows;
}

std::int32_t CountOf(const TextRows& table) { return static_cast<std::int32_t>(table.rows.size()); }

TEST(Quicksort, TextIsSortedAscendingIgnoringCase) {
  TextRows table{{"b"}, {"A"}, {"c"}};
  SortCity::QuickSortStringsAscending(table, 1, 3, 1, 1);
  EXPECT_EQ(table.rows, Column({"A", "b", "c"}));
}

TEST(Quicksort, TextIsSortedDescendingIgnoringCase) {
  TextRows table{{"b"}, {"A"}, {"c"}};
  SortCity::QuickSortStringsDescending(table, 1, 3, 1, 1);
  EXPECT_EQ(table.rows, Column({"c", "b", "A"}));
}

TEST(Quicksort, NumbersAreSortedByValue) {
  TextRows table{{"10"}, {"9"}, {"100"}};
  SortCity::QuickSortNumericAscending(table, 1, 3, 1, 1);
  EXPECT_EQ(table.rows, Column({"9", "10", "100"}));
  SortCity::QuickSortNumericDecending(table, 1, 3, 1, 1);
  EXPECT_EQ(table.rows, Column({"100", "10", "9"}));
}

TEST(Quicksort, ARangeOfOneRowIsUnchanged) {
  TextRows table{{"b"}, {"a"}, {"c"}};
  SortCity::QuickSortStringsAscending(table, 2, 2, 1, 1);
  EXPECT_EQ(table.rows, Column({"b", "a", "c"}));
}

TEST(Quicksort, OnlyRowsInTheRangeMove) {
  TextRows table{{"d"}, {"c"}, {"b"}, {"a"}};
  SortCity::QuickSortStringsAscending(table, 2, 3, 1, 1);
  EXPECT_EQ(table.rows, Column({"d", "b", "c", "a"}));
}

TEST(Quicksort, RowsMoveAsWholes) {
  TextRows table{{"x", "3"}, {"y", "1"}, {"z", "2"}};
  SortCity::QuickSortStringsAscending(table, 1, 3, 2, 2);
  EXPECT_EQ(table.rows, (Rows{{"y", "1"}, {"z", "2"}, {"x", "3"}}));
}

TEST(Quicksort, ColumnsBeyondTheCountDoNotMove) {
  TextRows table{{"b", "1"}, {"a", "2"}};
  SortCity::QuickSortStringsAscending(table, 1, 2, 1, 1);
  EXPECT_EQ(table.rows, (Rows{{"a", "1"}, {"b", "2"}}));
}

TEST(Quicksort, AnEmptyCellIsNotANumber) {
  TextRows table{{"1"}, {""}, {"2"}};
  EXPECT_THROW(SortCity::QuickSortNumericAscending(table, 1, 3, 1, 1), TypeMismatchError);
  EXPECT_THROW(SortCity::QuickSortNumericDecending(table, 1, 3, 1, 1), TypeMismatchError);
}

TEST(Quicksort, BlanksAndFractionsAreNumbers) {
  TextRows table{{" 3 "}, {"2.5"}, {"1.5"}, {"-4"}};
  SortCity::QuickSortNumericAscending(table, 1, 4, 1, 1);
  // 1.5 and 2.5 both round to 2, so only the first and the last row are certain.
  EXPECT_EQ(table.rows.front()[0], "-4");
  EXPECT_EQ(table.rows.back()[0], " 3 ");
}

TEST(Quicksort, TheMiddleOfAnOddSumIsTheEvenNeighbour) {
  EXPECT_EQ(MiddleRow(2, 3), 2);
  EXPECT_EQ(MiddleRow(3, 4), 4);
  EXPECT_EQ(MiddleRow(1, 4), 2);
  EXPECT_EQ(MiddleRow(1, 6), 4);
  EXPECT_EQ(MiddleRow(1, 7), 4);
  EXPECT_EQ(MiddleRow(2147483646, 2147483647), 2147483646);
}

TEST(Quicksort, ManyRowsInAnyOrderDoNotOverflowTheStack) {
  TextRows table;
  for (int k = 0; k < 20000; ++k) table.rows.push_back({std::to_string(20000 - k)});
  SortCity::QuickSortNumericAscending(table, 1, CountOf(table), 1, 1);
  for (int k = 0; k < 20000; ++k)
    ASSERT_EQ(table.rows[static_cast<std::size_t>(k)][0], std::to_string(k + 1));
}

TEST(RankText, EqualLowerCaseFormsShareARank) {
  const std::vector<std::string_view> texts{"beta", "Alpha",    "ALPHA",   "alphabet",
                                            "",     "\xC3\x89", "\xC3\xA9"};
  EXPECT_EQ(RankText(texts), (std::vector<std::int32_t>{3, 1, 1, 2, 0, 4, 4}));
}

TEST(RankText, TextsThatDifferOnlyInNulsAreDifferent) {
  const std::vector<std::string_view> texts{std::string_view("a\0", 2), "a"};
  EXPECT_EQ(RankText(texts), (std::vector<std::int32_t>{1, 0}));
}

/// Few distinct keys of few letters, so that equal keys, keys that differ only in case, and long
/// runs are common.
std::string RandomCell(std::mt19937& random, bool numbers) {
  if (numbers) return std::to_string(static_cast<int>(random() % 40) - 10);
  static const char* const kLetters[] = {"a",        "A", "b", "B",   "\xC3\xA9",
                                         "\xC3\x89", "1", " ", "\xFF"};
  std::string cell;
  for (auto n = random() % 4; n > 0; --n) cell += kLetters[random() % 9];
  return cell;
}

TEST(Quicksort, AgreesWithTheReferenceOnRandomTables) {
  std::mt19937 random(61);
  for (int round = 0; round < 2000; ++round) {
    const bool as_text = random() % 2 == 0;
    const bool ascending = random() % 2 == 0;
    TextRows table;
    for (auto n = 1 + random() % 60; n > 0; --n)
      table.rows.push_back({RandomCell(random, !as_text), std::to_string(n)});
    const auto lo = static_cast<std::int32_t>(1 + random() % table.rows.size());
    const auto hi = static_cast<std::int32_t>(
        lo + static_cast<std::int32_t>(random() %
                                       (table.rows.size() - static_cast<std::size_t>(lo) + 1)));
    Rows expected = table.rows;
    ReferenceQuicksort(expected, ascending, as_text, 1, 2).Sort(lo, hi);
    (ascending
         ? (as_text ? SortCity::QuickSortStringsAscending : SortCity::QuickSortNumericAscending)
         : (as_text ? SortCity::QuickSortStringsDescending : SortCity::QuickSortNumericDecending))(
        table, lo, hi, 1, 2);
    ASSERT_EQ(table.rows, expected) << "round " << round;
  }
}

TEST(Quicksort, AnInvalidKeyLeavesTheSameOrderAsTheReference) {
  std::mt19937 random(62);
  for (int round = 0; round < 500; ++round) {
    TextRows table;
    for (auto n = 2 + random() % 30; n > 0; --n)
      table.rows.push_back({RandomCell(random, true), std::to_string(n)});
    table.rows[random() % table.rows.size()][0] = "none";
    Rows expected = table.rows;
    const std::int32_t hi = CountOf(table);
    EXPECT_THROW(ReferenceQuicksort(expected, true, false, 1, 2).Sort(1, hi), TypeMismatchError);
    EXPECT_THROW(SortCity::QuickSortNumericAscending(table, 1, hi, 1, 2), TypeMismatchError);
    ASSERT_EQ(table.rows, expected) << "round " << round;
  }
}

}  // namespace
}  // namespace tallow

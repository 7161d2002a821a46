// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/set_aside.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "library/song_formats.h"
#include "util/number.h"

namespace tallow {
namespace {

void AddRow(SongTable& table, const std::string& name, const std::string& there, int number) {
  const std::int32_t row = table.rows() + 1;
  table.Resize(row);
  table.SetCell(kFileLocation, row, "/m" + std::to_string(row) + "/");
  table.SetCell(kFileName, row, name);
  table.SetCell(kFileIsThere, row, there);
  table.SetCell(kRecordNumber, row, std::to_string(number));
}

std::vector<bool> RowsSetAside(const SongTable& table) {
  std::vector<bool> rows;
  for (std::int32_t row = 1; row <= table.rows(); ++row) rows.push_back(table.IsSetAside(row));
  return rows;
}

TEST(SetAside, InClassicStyleOtherFormatsAndNamesakesAreSetAside) {
  SongTable table;
  AddRow(table, "a.mp3", "1", 1);
  AddRow(table, "a.flac", "1", 2);
  AddRow(table, "a.mp3", "1", 3);
  AddRow(table, "b.mp3", "1", 4);
  AddRow(table, "A.mp3", "1", 5);
  SetAside(table, kClassicStyle);
  EXPECT_EQ(RowsSetAside(table), (std::vector<bool>{false, true, true, false, false}));
  SetAside(table, kModernStyle);
  EXPECT_EQ(RowsSetAside(table), std::vector<bool>(5, false));
}

TEST(SetAside, EachSwitchSetsItsOwnSongsAside) {
  SongTable table;
  AddRow(table, "a.mp3", "1", 1);
  AddRow(table, "a.flac", "1", 2);
  AddRow(table, "a.flac", "1", 3);
  AddRow(table, "a.mp3", "1", 4);
  SetAside(table, {.more_formats = true});
  EXPECT_EQ(RowsSetAside(table), (std::vector<bool>{false, false, true, true}));
  SetAside(table, {.songs_by_path = true});
  EXPECT_EQ(RowsSetAside(table), (std::vector<bool>{false, true, true, false}));
}

TEST(SetAside, TheLowestNumberDecidesNotTheOrderOfTheRows) {
  SongTable table;
  AddRow(table, "a.mp3", "1", 7);
  AddRow(table, "a.mp3", "1", 3);
  AddRow(table, "a.mp3", "1", 5);
  SetAside(table, kClassicStyle);
  EXPECT_EQ(RowsSetAside(table), (std::vector<bool>{true, false, true}));
}

TEST(SetAside, AMissingSongDoesNotCount) {
  SongTable table;
  AddRow(table, "0", "0", 1);
  AddRow(table, "0", "0", 2);
  AddRow(table, "a.mp3", "1", 3);
  SetAside(table, kClassicStyle);
  EXPECT_EQ(RowsSetAside(table), std::vector<bool>(3, false));
}

TEST(RowsToBlank, ASongThatStaysSetAsideIsNotOneOfThem) {
  SongTable table;
  AddRow(table, "a.mp3", "1", 1);
  AddRow(table, "a.flac", "1", 2);
  AddRow(table, "a.mp3", "1", 3);
  AddRow(table, "a.mp3", "1", 4);
  const auto blanked = [&](std::vector<std::int32_t> missing) {
    return RowsToBlank(table, kClassicStyle, std::move(missing));
  };
  using Rows = std::vector<std::int32_t>;
  SetAside(table, kClassicStyle);
  EXPECT_EQ(blanked({2, 3, 4}), Rows{});
  EXPECT_EQ(blanked({4, 2, 1}), Rows{1});
  EXPECT_EQ(blanked({3, 2, 1}), (Rows{3, 1}));
  EXPECT_EQ(blanked({1, 2, 3, 4}), (Rows{1, 3, 4}));
  table.SetAside({});
  EXPECT_EQ(blanked({4, 2}), (Rows{4, 2}));
}

TEST(SetAside, ANameWithoutAKnownFormatStays) {
  SongTable table;
  AddRow(table, "a", "1", 1);
  AddRow(table, "a.jpg", "1", 2);
  SetAside(table, kClassicStyle);
  EXPECT_EQ(RowsSetAside(table), std::vector<bool>(2, false));
}

TEST(SetAside, MovesWithItsRow) {
  SongTable table;
  AddRow(table, "a.mp3", "1", 1);
  AddRow(table, "b.flac", "1", 2);
  AddRow(table, "c.mp3", "1", 3);
  SetAside(table, kClassicStyle);
  const std::int32_t order[] = {2, 3, 1};
  table.MoveRows(1, order, kSongColumns);
  EXPECT_EQ(RowsSetAside(table), (std::vector<bool>{true, false, false}));
  table.Resize(4);
  EXPECT_EQ(RowsSetAside(table), (std::vector<bool>{true, false, false, false}));
  table.Remove({1, 0, 0, 0});
  EXPECT_EQ(RowsSetAside(table), (std::vector<bool>{false, false, false}));
}

/// Whether the rule sets a row aside, by comparing it with every other row.
bool IsSetAsideByComparison(const SongTable& table, std::int32_t row, const Switches& switches) {
  const auto is_there = [&](std::int32_t of) { return table.Cell(kFileIsThere, of) == "1"; };
  const auto is_left_out = [&](std::int32_t of) {
    return !IsSongName(table.Cell(kFileName, of), switches);
  };
  if (!is_there(row)) return false;
  if (is_left_out(row)) return true;
  if (switches.songs_by_path) return false;
  for (std::int32_t other = 1; other <= table.rows(); ++other)
    if (is_there(other) && !is_left_out(other) &&
        table.Cell(kFileName, other) == table.Cell(kFileName, row) &&
        NumericValue(table.Cell(kRecordNumber, other)) <
            NumericValue(table.Cell(kRecordNumber, row)))
      return true;
  return false;
}

TEST(SetAside, EqualsTheComparisonWithEveryOtherSong) {
  std::mt19937 random(15);
  const std::vector<std::string> names = {"a.mp3", "A.mp3", "b.mp3", "a.flac", "b.ogg", "c.mp3"};
  for (int round = 0; round < 300; ++round) {
    SongTable table;
    std::vector<int> numbers(random() % 12);
    for (std::size_t k = 0; k < numbers.size(); ++k) numbers[k] = static_cast<int>(k) + 1;
    std::shuffle(numbers.begin(), numbers.end(), random);
    for (const int number : numbers)
      AddRow(table, names[random() % names.size()], random() % 4 == 0 ? "0" : "1", number);
    const Switches switches{.more_formats = random() % 2 == 0, .songs_by_path = random() % 2 == 0};
    SetAside(table, switches);
    for (std::int32_t row = 1; row <= table.rows(); ++row)
      ASSERT_EQ(table.IsSetAside(row), IsSetAsideByComparison(table, row, switches)) << row;
  }
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/song_view.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string_view>

namespace tallow {
namespace {

SongTable TableOf(std::string_view flag, std::string_view rank) {
  SongTable table;
  table.Resize(1);
  table.SetCell(kFileLocation, 1, "/m/");
  table.SetCell(kFileName, 1, "a.mp3");
  table.SetCell(kFileIsThere, 1, flag);
  table.SetCell(kRecordNumber, 1, "12");
  table.SetCell(kSongRank, 1, rank);
  return table;
}

TEST(SongView, ReadsTheCellsOfItsRow) {
  const SongTable table = TableOf("1", "7");
  const SongView song(table, 1);
  EXPECT_TRUE(song.Exists());
  EXPECT_EQ(song.Row(), 1);
  EXPECT_EQ(song.RecordNumber(), 12);
  EXPECT_EQ(song.Folder(), "/m/");
  EXPECT_EQ(song.Name(), "a.mp3");
  EXPECT_EQ(song.Path(), "/m/a.mp3");
  EXPECT_EQ(song.Rank(), 7);
}

TEST(SongView, ARowThatDoesNotExistIsEmpty) {
  const SongTable table = TableOf("1", "7");
  for (const std::int32_t row : {-1'000'000'001, -1, 0, 2}) {
    const SongView song(table, row);
    EXPECT_FALSE(song.Exists()) << row;
    EXPECT_EQ(song.Row(), 0) << row;
    EXPECT_EQ(song.RecordNumber(), 0) << row;
    EXPECT_EQ(song.Path(), "") << row;
    EXPECT_EQ(song.Rank(), 0) << row;
    EXPECT_FALSE(song.IsPresent()) << row;
    EXPECT_FALSE(song.IsAway()) << row;
  }
}

TEST(SongView, EveryNumberButZeroIsThePresentFlag) {
  for (const char* const flag : {"1", "2", "-1"})
    EXPECT_TRUE(SongView(TableOf(flag, "2"), 1).IsPresent()) << flag;
  for (const char* const flag : {"0", "", "True"})
    EXPECT_FALSE(SongView(TableOf(flag, "2"), 1).IsPresent()) << flag;
}

TEST(SongView, ASongWithAReasonIsAway) {
  SongTable table = TableOf("1", "2");
  EXPECT_FALSE(SongView(table, 1).IsAway());
  table.Facts(1).away = 1;
  EXPECT_TRUE(SongView(table, 1).IsAway());
}

TEST(SongView, ARankThatIsNotANumberIsZero) { EXPECT_EQ(SongView(TableOf("1", "x"), 1).Rank(), 0); }

}  // namespace
}  // namespace tallow

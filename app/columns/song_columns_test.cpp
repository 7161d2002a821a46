// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/song_columns.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/data_paths.h"
#include "app/playing/play_counts.h"
#include "details/details_store.h"
#include "details/song_details.h"
#include "tests/library_fixture.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class SongColumnsTest : public LibraryTest {
 protected:
  /// Adds a song whose details are stored.
  void AddSongWith(const std::string& name, const SongDetails& details) {
    AddSong(music.path(), name);
    DetailsStore store;
    store.Open(SystemFolder(application.path()) + std::string(kDetailsFileName));
    store.Put(library.Song(library.UBoundOfMp3Array()).Path(), details);
  }
  std::string Text(ListColumn column, std::int32_t record) { return columns_.Text(column, record); }
  /// The records in the order of a column.
  std::vector<std::int32_t> Sorted(ListColumn column, bool descending = false) {
    std::vector<std::int32_t> records;
    for (std::int32_t k = 1; k <= library.UBoundOfMp3Array(); ++k) records.push_back(k);
    std::vector<std::int32_t> sorted;
    for (const std::int32_t index : OrderByColumn(columns_.KeysOf(column)(records), descending))
      sorted.push_back(records[static_cast<std::size_t>(index)]);
    return sorted;
  }

  PlayCounts counts_{application.path()};
  SongColumns columns_{library, tallow.details, counts_};
};

using Records = std::vector<std::int32_t>;

TEST_F(SongColumnsTest, ShowsTheDetailsOfASong) {
  AddSongWith("a.mp3", {.tags = {.found = true,
                                 .title = "Title",
                                 .artist = "Artist",
                                 .album = "Album",
                                 .date = "1999-05-12",
                                 .genre = "Rock",
                                 .disc = 1,
                                 .track = 4},
                        .length_ms = 185'000,
                        .bit_rate = 320,
                        .format = "MP3"});
  tallow.details.LoadAll();
  EXPECT_EQ(Text(ListColumn::kTitle, 1), "Title");
  EXPECT_EQ(Text(ListColumn::kArtist, 1), "Artist");
  EXPECT_EQ(Text(ListColumn::kAlbum, 1), "Album");
  EXPECT_EQ(Text(ListColumn::kDiscTrack, 1), "1-04");
  EXPECT_EQ(Text(ListColumn::kYear, 1), "1999");
  EXPECT_EQ(Text(ListColumn::kGenre, 1), "Rock");
  EXPECT_EQ(Text(ListColumn::kLength, 1), "3:05");
  EXPECT_EQ(Text(ListColumn::kFormat, 1), "MP3");
  EXPECT_EQ(Text(ListColumn::kBitRate, 1), "320");
  EXPECT_EQ(Text(ListColumn::kName, 1), "a.mp3");
  EXPECT_EQ(Text(ListColumn::kKey, 1), "1");
}

TEST_F(SongColumnsTest, WhatIsNotKnownIsEmpty) {
  AddSong(music.path(), "01 Song.flac");
  AddSong("0", "0", "0");
  for (int k = static_cast<int>(ListColumn::kArtist); k < static_cast<int>(ListColumn::kFolder);
       ++k)
    EXPECT_EQ(Text(static_cast<ListColumn>(k), 1), "") << IdOf(static_cast<ListColumn>(k));
  EXPECT_EQ(Text(ListColumn::kTitle, 1), "01 Song");
  EXPECT_EQ(Text(ListColumn::kPlaying, 1), "");
  EXPECT_EQ(Text(ListColumn::kPosition, 1), "");
  for (int k = 0; k < kListColumns; ++k)
    for (const std::int32_t record : {2, 3, 0, -5})
      EXPECT_EQ(Text(static_cast<ListColumn>(k), record), "");
}

TEST_F(SongColumnsTest, ATrackWithoutADiscIsTheNumberAlone) {
  AddSongWith("a.mp3", {.tags = {.found = true, .track = 4}});
  AddSongWith("b.mp3", {.tags = {.found = true, .disc = 2, .track = 12}});
  AddSongWith("c.mp3", {.tags = {.found = true, .disc = 2}});
  tallow.details.LoadAll();
  EXPECT_EQ(Text(ListColumn::kDiscTrack, 1), "4");
  EXPECT_EQ(Text(ListColumn::kDiscTrack, 2), "2-12");
  EXPECT_EQ(Text(ListColumn::kDiscTrack, 3), "");
}

TEST_F(SongColumnsTest, ShowsTheFolderWithoutTheSeparatorAtItsEnd) {
  AddSong("/music/Album/", "a.mp3");
  AddSong("/", "b.mp3");
  AddSong("C:\\", "c.mp3");
  EXPECT_EQ(Text(ListColumn::kFolder, 1), "/music/Album");
  EXPECT_EQ(Text(ListColumn::kFolder, 2), "/");
  EXPECT_EQ(Text(ListColumn::kFolder, 3), "C:\\");
}

TEST_F(SongColumnsTest, ShowsRanksAndPlays) {
  AddSong(music.path(), "a.mp3", "1", "7");
  AddSong(music.path(), "b.mp3", "1", "2");
  counts_.Add(library.Song(1).Path(), std::chrono::sys_days(std::chrono::days(20'000)));
  EXPECT_EQ(Text(ListColumn::kRank, 1), "7");
  EXPECT_EQ(Text(ListColumn::kRank, 2), "");
  EXPECT_EQ(Text(ListColumn::kPlays, 1), "1");
  EXPECT_EQ(Text(ListColumn::kLastPlayed, 1), "2024-10-04");
  EXPECT_EQ(Text(ListColumn::kPlays, 2), "");
  EXPECT_EQ(Text(ListColumn::kLastPlayed, 2), "");
}

TEST_F(SongColumnsTest, ASongWithoutADayIsOfTheDayOfItsFile) {
  const std::string file = music.File("a.mp3");
  AddSongWith("a.mp3", {.tags = {.found = true}, .stamp = StampOf(file).value()});
  library.AddSong(music.path(), "b.mp3", 1);
  tallow.details.LoadAll();
  EXPECT_EQ(Text(ListColumn::kAdded, 1), DayText(DayOf(StampOf(file).value())));
  EXPECT_EQ(Text(ListColumn::kAdded, 2), DayText(library.Facts(2).added));
  EXPECT_EQ(Text(ListColumn::kAdded, 2).size(), 10U);
}

TEST_F(SongColumnsTest, WritesDaysAndLengths) {
  EXPECT_EQ(DayText(0), "");
  EXPECT_EQ(DayText(1), "1970-01-02");
  EXPECT_EQ(LengthText(0), "");
  EXPECT_EQ(LengthText(499), "0:00");
  EXPECT_EQ(LengthText(59'500), "1:00");
  EXPECT_EQ(LengthText(3'599'000), "59:59");
  EXPECT_EQ(LengthText(3'723'000), "1:02:03");
}

TEST_F(SongColumnsTest, SortsInNaturalOrderWithoutCaseAndAccents) {
  for (const char* const artist : {"b 10", "", "É", "B 9", "e", "a"})
    AddSongWith(std::string("song ") + artist + ".mp3",
                {.tags = {.found = true, .artist = artist}});
  EXPECT_EQ(Sorted(ListColumn::kArtist), (Records{6, 4, 1, 3, 5, 2}));
  EXPECT_EQ(Sorted(ListColumn::kArtist, true), (Records{3, 5, 1, 4, 6, 2}));
}

TEST_F(SongColumnsTest, EqualSongsAreInTheOrderOfTheirAlbums) {
  const auto song = [&](const char* name, const char* album, int disc, int track) {
    AddSongWith(
        name,
        {.tags = {
             .found = true, .artist = "Artist", .album = album, .disc = disc, .track = track}});
  };
  song("a.mp3", "Second", 1, 2);
  song("b.mp3", "Second", 1, 1);
  song("c.mp3", "First", 2, 1);
  song("d.mp3", "first", 1, 9);
  song("e.mp3", "Second", 1, 1);
  EXPECT_EQ(Sorted(ListColumn::kArtist), (Records{4, 3, 2, 5, 1}));
  EXPECT_EQ(Sorted(ListColumn::kArtist, true), (Records{4, 3, 2, 5, 1}));
}

TEST_F(SongColumnsTest, EveryColumnHasItsKey) {
  const auto day = [](int number) { return std::chrono::sys_days(std::chrono::days(number)); };
  // Each column puts the second song first.
  AddSong("/music/b/", "b 10.mp3", "1", "7");
  AddSong("/music/a/", "b 9.mp3", "1", "3");
  const auto store = [&](std::int32_t record, const SongDetails& details) {
    DetailsStore file;
    file.Open(SystemFolder(application.path()) + std::string(kDetailsFileName));
    file.Put(library.Song(record).Path(), details);
  };
  store(1, {.tags = {.found = true, .album = "Zoo", .genre = "Rock", .disc = 1, .track = 10},
            .bit_rate = 320,
            .format = "MP3"});
  store(2, {.tags = {.found = true, .album = "abc", .genre = "jazz", .disc = 1, .track = 9},
            .bit_rate = 96,
            .format = "FLAC"});
  tallow.details.LoadAll();
  counts_.Add(library.Song(1).Path(), day(20'000));
  counts_.Add(library.Song(1).Path(), day(20'002));
  counts_.Add(library.Song(2).Path(), day(20'001));
  for (const ListColumn column :
       {ListColumn::kName, ListColumn::kAlbum, ListColumn::kDiscTrack, ListColumn::kGenre,
        ListColumn::kRank, ListColumn::kPlays, ListColumn::kLastPlayed, ListColumn::kFormat,
        ListColumn::kBitRate, ListColumn::kFolder}) {
    EXPECT_EQ(Sorted(column), (Records{2, 1})) << IdOf(column);
    EXPECT_EQ(Sorted(column, true), (Records{1, 2})) << IdOf(column);
  }
  // The record number is the key.
  EXPECT_EQ(Sorted(ListColumn::kKey), (Records{1, 2}));
  EXPECT_EQ(Sorted(ListColumn::kKey, true), (Records{2, 1}));
}

TEST_F(SongColumnsTest, SortsByTheDayOnWhichASongWasAdded) {
  const std::string file = music.File("a.mp3");
  AddSongWith("a.mp3", {.tags = {.found = true}, .stamp = StampOf(file).value()});
  AddSong(music.path(), "b.mp3");
  library.AddSong(music.path(), "c.mp3", 1);
  tallow.details.LoadAll();
  ASSERT_GT(library.Facts(3).added, 1);
  // Of the second song nothing is known.
  const bool is_older = DayOf(StampOf(file).value()) <= library.Facts(3).added;
  EXPECT_EQ(Sorted(ListColumn::kAdded), is_older ? (Records{1, 3, 2}) : (Records{3, 1, 2}));
}

TEST_F(SongColumnsTest, AmongEqualSongsThoseWithoutAnAlbumAreLast) {
  for (const char* const album : {"", "Some", "A"})
    AddSongWith(std::string("song ") + album + ".mp3",
                {.tags = {.found = true, .artist = "Artist", .album = album}});
  EXPECT_EQ(Sorted(ListColumn::kArtist), (Records{3, 2, 1}));
  EXPECT_EQ(Sorted(ListColumn::kArtist, true), (Records{3, 2, 1}));
}

TEST_F(SongColumnsTest, SortsByNumbersAndTitles) {
  AddSongWith("3.mp3",
              {.tags = {.found = true, .title = "Zulu", .date = "2001"}, .length_ms = 900});
  AddSongWith("Ab.mp3", {.tags = {.found = true, .date = "1999"}, .length_ms = 1000});
  AddSongWith("c.mp3", {.tags = {.found = true, .title = "aa"}, .length_ms = 800});
  AddSong("0", "0", "0");
  EXPECT_EQ(Sorted(ListColumn::kYear), (Records{2, 1, 3, 4}));
  EXPECT_EQ(Sorted(ListColumn::kLength, true), (Records{2, 1, 3, 4}));
  EXPECT_EQ(Sorted(ListColumn::kTitle), (Records{3, 2, 1, 4}));
  EXPECT_EQ(Sorted(ListColumn::kPlaying), (Records{1, 2, 3, 4}));
}

}  // namespace
}  // namespace tallow

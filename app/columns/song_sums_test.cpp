// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/song_sums.h"

#include <string>
#include <vector>

#include "app/data_paths.h"
#include "details/details_store.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

class SongSumsTest : public LibraryTest {
 protected:
  void AddSongOf(std::int32_t length_ms, std::int64_t size) {
    const std::int32_t record = library.UBoundOfMp3Array() + 1;
    AddSong(music.path(), std::to_string(record) + ".mp3");
    library.SetSize(record, library.Song(record).Folder(), library.Song(record).Name(), size);
    DetailsStore store;
    store.Open(SystemFolder(application.path()) + std::string(kDetailsFileName));
    store.Put(library.Song(record).Path(), {.length_ms = length_ms});
  }
};

TEST_F(SongSumsTest, AddUpLengthsAndSizes) {
  AddSongOf(60'000, 1000);
  AddSongOf(125'000, 2500);
  tallow.details.LoadAll();
  const std::vector<std::int32_t> records{1, 2};
  EXPECT_EQ(SumsOf(library, tallow.details, records),
            (SongSums{.songs = 2, .length_ms = 185'000, .bytes = 3500, .lengths = 2, .sizes = 2}));
}

TEST_F(SongSumsTest, UnknownSongsCountAsSongs) {
  AddSongOf(60'000, 1000);
  AddSong(music.path(), "unknown.mp3");
  tallow.details.LoadAll();
  const std::vector<std::int32_t> records{1, 2, 99};
  EXPECT_EQ(SumsOf(library, tallow.details, records),
            (SongSums{.songs = 3, .length_ms = 60'000, .bytes = 1000, .lengths = 1, .sizes = 1}));
}

TEST_F(SongSumsTest, OneCallReadsAtMost500SongsFromTheDatabase) {
  AddSongOf(1000, 10);
  // Opens the database.
  tallow.details.TagReader()(library.Song(1).Path());
  std::vector<std::int32_t> records;
  for (int song = 1; song <= 600; ++song) records.push_back(song);
  for (int song = 2; song <= 600; ++song) AddSong(music.path(), std::to_string(song) + ".mp3");
  {
    DetailsStore store;
    store.Open(SystemFolder(application.path()) + std::string(kDetailsFileName));
    for (const std::int32_t song : records)
      store.Put(library.Song(song).Path(), {.length_ms = 1000});
  }
  EXPECT_EQ(SumsOf(library, tallow.details, records).lengths, 500);
  EXPECT_EQ(SumsOf(library, tallow.details, records).lengths, 600);
}

TEST(SumsText, TellsNumberLengthAndSize) {
  const SongSums folder{
      .songs = 12, .length_ms = 2'890'000, .bytes = 61'000'000, .lengths = 12, .sizes = 12};
  EXPECT_EQ(SumsText(folder, {}), "12 songs, 48:10, 61 MB");
  const SongSums some{
      .songs = 3, .length_ms = 552'000, .bytes = 15'400'000, .lengths = 3, .sizes = 3};
  EXPECT_EQ(SumsText(folder, some), "3 of 12 songs selected, 9:12, 15 MB");
  const SongSums one{.songs = 1, .length_ms = 1000, .bytes = 10, .lengths = 1, .sizes = 1};
  EXPECT_EQ(SumsText(one, {}), "1 song, 0:01, 1 KB");
}

TEST(SumsText, TellsThatLengthsAreUnknown) {
  const SongSums part{
      .songs = 12, .length_ms = 552'000, .bytes = 15'000'000, .lengths = 3, .sizes = 12};
  EXPECT_EQ(SumsText(part, {}), "12 songs, at least 9:12, 15 MB");
  EXPECT_EQ(SumsText({.songs = 1234}, {}), "1,234 songs");
}

TEST(SumsText, IsEmptyForAnEmptyFolder) { EXPECT_EQ(SumsText({}, {}), ""); }

TEST(SizeText, UsesAUnitOfTheRightSize) {
  EXPECT_EQ(SizeText(0), "0 KB");
  EXPECT_EQ(SizeText(1), "1 KB");
  EXPECT_EQ(SizeText(999'000), "999 KB");
  EXPECT_EQ(SizeText(1'499'999), "1 MB");
  EXPECT_EQ(SizeText(999'000'000), "999 MB");
  EXPECT_EQ(SizeText(1'250'000'000), "1.3 GB");
  EXPECT_EQ(SizeText(1'234'000'000'000), "1,234.0 GB");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// Progress reports and cancellation of the filing of songs.
#include <random>

#include "jukebox/jukebox.h"
#include "jukebox/sorting.h"
#include "tests/library_fixture.h"
#include "tests/tagged_file.h"

namespace tallow {
namespace {

class FilingIsWatched : public LibraryTest {
 protected:
  /// Creates songs of a few artists, years and genres, about one in five without a tag.
  void MakeSongs(int count) {
    std::mt19937 random(3);
    for (int k = 0; k < count; ++k) {
      const std::string name = std::to_string(k) + ".mp3";
      std::string bytes = Audio(300);
      if (random() % 5 != 0)
        bytes += Tag({.artist = "Artist " + std::to_string(random() % 12),
                      .year = std::to_string(1960 + random() % 40),
                      .genra = static_cast<unsigned char>(random() % 20)});
      music.File(name, bytes);
      AddSong(music.path(), name);
    }
  }
  static void MakeFolders(Jukebox& jukebox) {
    jukebox.Caption("box");
    for (const char* const text : {"All Songs", "Artist", "Year", "Genre", "New"})
      jukebox.Nodes().AddChild(nullptr, text);
    Folder& decades = jukebox.Nodes().AddChild(nullptr, "Decades");
    for (const char* const text : {"60's", "70's", "80's", "90's"})
      jukebox.Nodes().AddChild(&decades, text);
  }
  bool File(Jukebox& jukebox, const FilingProgress& progress = {}) {
    tallow::Jukebox* const open[] = {&jukebox};
    return FillAutomaticFolders(kFillNewToo, false, {}, library, open, nullptr, progress);
  }
};

TEST_F(FilingIsWatched, ProgressIsReportedAfterEverySong) {
  MakeSongs(300);
  Jukebox jukebox;
  MakeFolders(jukebox);
  std::vector<std::size_t> reported;
  EXPECT_TRUE(File(jukebox, [&](std::size_t filed, std::size_t songs) {
    EXPECT_EQ(songs, 300U);
    if (reported.empty() || reported.back() != filed) reported.push_back(filed);
    return true;
  }));
  std::erase(reported, 0U);
  ASSERT_EQ(reported.size(), 300U);
  for (std::size_t k = 0; k < reported.size(); ++k) EXPECT_EQ(reported[k], k + 1);
}

TEST_F(FilingIsWatched, CancelledAnywhereItKeepsTheSongsFiledSoFar) {
  constexpr int kSongs = 200;
  MakeSongs(kSongs);
  Jukebox whole;
  MakeFolders(whole);
  EXPECT_TRUE(File(whole));
  for (const int end : {1, 2, 63, 64, 65, 199, 200}) {
    Jukebox ended;
    MakeFolders(ended);
    EXPECT_FALSE(File(ended, [&](std::size_t filed, std::size_t) {
      return filed < static_cast<std::size_t>(end);
    }));
    // Reference: the same filing with the remaining songs marked as missing.
    Jukebox reference;
    MakeFolders(reference);
    for (std::int32_t row = end + 1; row <= kSongs; ++row) library.Mp3Info(kFileIsThere, row, "0");
    EXPECT_TRUE(File(reference));
    for (std::int32_t row = end + 1; row <= kSongs; ++row) library.Mp3Info(kFileIsThere, row, "1");
    EXPECT_EQ(ContentHash(ended.Nodes()), ContentHash(reference.Nodes())) << end;
    // The next run files the remaining songs, as if the first run had not been cancelled.
    EXPECT_TRUE(File(ended));
    EXPECT_EQ(ContentHash(ended.Nodes()), ContentHash(whole.Nodes())) << end;
  }
}

TEST_F(FilingIsWatched, CancellingAffectsAllOpenJukeboxes) {
  MakeSongs(10);
  Jukebox first;
  Jukebox second;
  MakeFolders(first);
  MakeFolders(second);
  Jukebox* const open[] = {&first, &second};
  EXPECT_FALSE(FillAutomaticFolders(kFillNewToo, false, {}, library, open, nullptr,
                                    [](std::size_t filed, std::size_t) { return filed < 4; }));
  EXPECT_EQ(second.Nodes().Find("All Songs")->Items().size(), 4U);
  EXPECT_EQ(first.Nodes().Find("All Songs")->Items().size(), 0U);
}

TEST_F(FilingIsWatched, TheStatusLinesShowTheProgress) {
  EXPECT_EQ(FilingLine(12, 50), "Filed 12 of 50 songs");
  EXPECT_EQ(
      FilingCancelledLine(),
      "Filing was cancelled; the remaining songs will be filed when the jukebox is next opened");
}

}  // namespace
}  // namespace tallow

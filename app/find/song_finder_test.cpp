// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/find/song_finder.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/data_paths.h"
#include "details/details_store.h"
#include "details/song_details.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

using Records = std::vector<std::int32_t>;

class SongFinderTest : public LibraryTest {
 protected:
  void AddSongWith(const std::string& name, const SongTags& tags, const std::string& rank = "2") {
    AddSong(music.path(), name, "1", rank);
    DetailsStore store;
    store.Open(SystemFolder(application.path()) + std::string(kDetailsFileName));
    store.Put(library.Song(library.UBoundOfMp3Array()).Path(), {.tags = tags});
  }

  SongFinder finder_{library, tallow.details};
};

TEST_F(SongFinderTest, EveryWordIsSomewhereInTheSong) {
  AddSongWith("1.mp3", {.found = true, .title = "Halo", .artist = "Beyoncé", .genre = "Pop"});
  AddSongWith("2.mp3", {.found = true, .title = "Other", .artist = "Beyoncé", .album = "Halo"});
  AddSongWith("halo.mp3", {.found = true, .artist = "Someone"});
  EXPECT_EQ(finder_.Find("BEYONCE  halo"), (Records{1, 2}));
  EXPECT_EQ(finder_.Find("halo pop"), (Records{1}));
  EXPECT_EQ(finder_.Find("halo"), (Records{1, 2, 3}));
  EXPECT_EQ(finder_.Find("nothing"), Records{});
  EXPECT_EQ(finder_.Find(" \t"), Records{});
}

TEST_F(SongFinderTest, BeginningsOfWordsComeFirstThenRanksThenNames) {
  AddSong(music.path(), "10 abba.mp3");
  AddSong(music.path(), "9 abba.mp3");
  AddSong(music.path(), "cabbage.mp3", "1", "7");
  AddSong(music.path(), "99 abba.mp3", "1", "3");
  EXPECT_EQ(finder_.Find("abb"), (Records{4, 2, 1, 3}));
}

TEST_F(SongFinderTest, FindsOnlySongsThatAreThere) {
  AddSong(music.path(), "a.mp3");
  AddSong(music.path(), "b.mp3", "0");
  AddSong("0", "0", "0");
  EXPECT_EQ(finder_.Find("mp3"), (Records{1}));
  EXPECT_EQ(finder_.Find("0"), Records{});
}

}  // namespace
}  // namespace tallow

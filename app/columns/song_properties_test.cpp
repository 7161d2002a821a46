// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/song_properties.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/tallow.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

class Properties : public LibraryTest {
 protected:
  Properties() {
    for (const char* const name : {"one.mp3", "two.mp3"}) {
      music.File(name);
      AddSong(music.path(), name);
    }
  }
  std::vector<SongProperty> Of(const std::vector<std::int32_t>& songs) {
    return PropertiesOf(songs, library, tallow.details, tallow.play_counts);
  }
  /// The value of a property; "none of this name" if there is none.
  std::string Value(const std::vector<std::int32_t>& songs, const char* name) {
    for (const SongProperty& property : Of(songs))
      if (property.name == name) return property.value;
    return "none of this name";
  }
};

TEST_F(Properties, OfOneSongNameItsDetailsItsCountsAndItsFile) {
  std::string names;
  for (const SongProperty& property : Of({1})) names += property.name + "|";
  EXPECT_EQ(names,
            "Title|Artist|Album Artist|Album|Disc/Track|Year|Genre|Length|Rank|Plays|Last Played|"
            "Added|Format|Bit Rate|File Name|Folder|File Size|Key|");
  EXPECT_EQ(Value({1}, "Title"), "one");
  EXPECT_EQ(Value({1}, "Artist"), "not known");
  EXPECT_EQ(Value({1}, "Length"), "not known");
  EXPECT_EQ(Value({1}, "Rank"), "not ranked");
  EXPECT_EQ(Value({1}, "Plays"), "none");
  EXPECT_EQ(Value({1}, "Last Played"), "never");
  EXPECT_EQ(Value({1}, "File Name"), "one.mp3");
  EXPECT_EQ(Value({1}, "Key"), "1");
}

TEST_F(Properties, CountsOfPlaysAndRanksAreShown) {
  using namespace std::chrono_literals;
  const std::chrono::sys_days day{2026y / 11 / 23};
  for (int k = 0; k < 3; ++k) tallow.play_counts.Add(library.Song(1).Path(), day);
  library.Mp3Info(kSongRank, 1, "6");
  EXPECT_EQ(Value({1}, "Plays"), "3");
  EXPECT_EQ(Value({1}, "Last Played"), "2026-11-23");
  EXPECT_EQ(Value({1}, "Rank"), "6");
}

TEST_F(Properties, OfSeveralSongsShowWhatTheyHaveInCommon) {
  EXPECT_EQ(Value({1, 2}, "Songs"), "2 songs");
  EXPECT_EQ(Value({1, 2}, "Title"), "(different)");
  EXPECT_EQ(Value({1, 2}, "File Name"), "(different)");
  EXPECT_EQ(Value({1, 2}, "Key"), "(different)");
  EXPECT_EQ(Value({1, 2}, "Artist"), "not known");
  EXPECT_EQ(Value({1, 2}, "Folder"), Value({1}, "Folder"));
  EXPECT_EQ(Value({1, 2}, "Rank"), "not ranked");
}

TEST_F(Properties, SizesAreAddedUp) {
  library.SetSize(1, library.Song(1).Folder(), library.Song(1).Name(), 1'500'000);
  EXPECT_EQ(Value({1}, "File Size"), "2 MB (1,500,000 bytes)");
  EXPECT_EQ(Value({1, 2}, "Total File Size"),
            "at least 2 MB (1,500,000 bytes), not known of 1 song");
  library.SetSize(2, library.Song(2).Folder(), library.Song(2).Name(), 500'001);
  EXPECT_EQ(Value({1, 2}, "Total File Size"), "2 MB (2,000,001 bytes)");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/handed_over_songs.h"

#include <gtest/gtest.h>
#include <map>
#include <random>

namespace tallow {
namespace {

TEST(HandedOverSongs, AnEntryOfTheOwnPlayerHasItsSongAndItsOrigin) {
  HandedOverSongs songs;
  EXPECT_EQ(songs.SongOf(1), 0);
  EXPECT_EQ(songs.OriginOf(1), SongsOrigin());
  songs.Add(std::vector<HandedOverSong>{{7, 3}, {8, 4}}, {nullptr, 1});
  songs.Add(std::vector<HandedOverSong>{{7, 9}}, {nullptr, 2});
  EXPECT_EQ(songs.Count(), 3U);
  EXPECT_EQ(songs.SongOf(3), 7);
  EXPECT_EQ(songs.SongOf(4), 8);
  EXPECT_EQ(songs.SongOf(9), 7);
  EXPECT_EQ(songs.OriginOf(4).folder, 1U);
  EXPECT_EQ(songs.OriginOf(9).folder, 2U);
  for (const std::uint64_t other : {0, 1, 5, 8, 10}) {
    EXPECT_EQ(songs.SongOf(other), 0) << other;
    EXPECT_EQ(songs.OriginOf(other).folder, 0U) << other;
  }
}

TEST(HandedOverSongs, AnEntryOfWinampIsItsPlaceFromOne) {
  HandedOverSongs songs;
  songs.Add(std::vector<HandedOverSong>{{7, 0}, {8, 0}}, {});
  songs.Add(std::vector<HandedOverSong>{{9, 0}}, {});
  EXPECT_EQ(songs.SongOf(1), 7);
  EXPECT_EQ(songs.SongOf(3), 9);
  songs.Clear();
  EXPECT_TRUE(songs.IsEmpty());
  songs.Add(std::vector<HandedOverSong>{{5, 0}}, {});
  EXPECT_EQ(songs.SongOf(1), 5);
}

TEST(HandedOverSongs, EachChangeHasAnotherRevision) {
  HandedOverSongs songs;
  std::uint64_t before = songs.Revision();
  const auto has_changed = [&] { return std::exchange(before, songs.Revision()) != before; };
  songs.Add(std::vector<HandedOverSong>{{7, 1}}, {});
  EXPECT_TRUE(has_changed());
  songs.Renumber({{7, 8}});
  EXPECT_TRUE(has_changed());
  EXPECT_EQ(songs.SongOf(1), 8);
  songs.Clear();
  EXPECT_TRUE(has_changed());
}

TEST(HandedOverSongs, AgreesWithALiteralMapAtRandomChanges) {
  std::mt19937 random(1);
  HandedOverSongs songs;
  std::map<std::uint64_t, std::pair<std::int32_t, std::uint32_t>> literal;
  std::uint64_t entry = 0;
  for (int step = 0; step < 2000; ++step) {
    if (random() % 200 == 0) {
      songs.Clear();
      literal.clear();
    }
    const auto folder = static_cast<std::uint32_t>(random() % 3);
    std::vector<HandedOverSong> added;
    for (auto k = random() % 5; k > 0; --k) {
      entry += 1 + random() % 3;
      const auto song = static_cast<std::int32_t>(1 + random() % 50);
      added.push_back({song, entry});
      literal[entry] = {song, folder};
    }
    songs.Add(added, {nullptr, folder});
    const std::uint64_t asked =
        entry == 0 ? 0 : entry - random() % std::min<std::uint64_t>(entry, 40);
    const auto found = literal.find(asked);
    const auto expected =
        found == literal.end() ? std::pair<std::int32_t, std::uint32_t>() : found->second;
    ASSERT_EQ(songs.SongOf(asked), expected.first);
    ASSERT_EQ(songs.OriginOf(asked).folder, expected.second);
  }
}

TEST(HandedOverSongs, AnotherListHasAnotherGeneration) {
  HandedOverSongs songs;
  const std::uint64_t first = songs.Generation();
  songs.Add(std::vector<HandedOverSong>{{1, 0}}, {});
  EXPECT_EQ(songs.Generation(), first);
  songs.Clear();
  EXPECT_NE(songs.Generation(), first);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/missing_songs.h"

#include <gtest/gtest.h>

#include "tests/temp_folder.h"

namespace tallow {
namespace {

MissingSong Song(std::int32_t number, const std::string& name, std::int64_t size,
                 std::int32_t now = 0) {
  return {.number = number,
          .name = name,
          .folder = "/m/",
          .size = size,
          .rank = "7",
          .day = 20000,
          .now = now};
}

TEST(MissingSongs, OnlyFindsASongWithAUniqueNameAndSize) {
  MissingSongs songs;
  songs.Add(Song(1, "a.mp3", 100));
  songs.Add(Song(2, "a.mp3", 200));
  songs.Add(Song(3, "b.mp3", 300));
  songs.Add(Song(4, "b.mp3", 300));
  ASSERT_NE(songs.Only("a.mp3", 100), nullptr);
  EXPECT_EQ(songs.Only("a.mp3", 100)->number, 1);
  EXPECT_EQ(songs.Only("a.mp3", 150), nullptr);
  EXPECT_EQ(songs.Only("b.mp3", 300), nullptr);
  EXPECT_EQ(songs.OnlyOfName("a.mp3"), nullptr);
}

TEST(MissingSongs, AnUnknownSizeMatchesNothing) {
  MissingSongs songs;
  songs.Add(Song(1, "a.mp3", -1));
  EXPECT_EQ(songs.Only("a.mp3", -1), nullptr);
  EXPECT_EQ(songs.OnlyOfName("a.mp3")->number, 1);
}

TEST(MissingSongs, NamesIgnoreCaseWherePathsDo) {
  MissingSongs songs;
  songs.Add(Song(1, "A.mp3", 100));
  EXPECT_EQ(songs.Only("a.mp3", 100) != nullptr, kPathsIgnoreCase);
}

TEST(MissingSongs, ASongThatCameBackKeepsItsNewNumber) {
  MissingSongs songs;
  songs.Add(Song(1, "a.mp3", 100));
  EXPECT_TRUE(songs.IsMissing(1));
  EXPECT_EQ(songs.NumberNow(1), 1);
  songs.CameBack(1, 8);
  EXPECT_FALSE(songs.IsMissing(1));
  EXPECT_EQ(songs.NumberNow(1), 8);
  EXPECT_EQ(songs.Only("a.mp3", 100), nullptr);
  // The song is missing again, and comes back again.
  songs.Add(Song(8, "a.mp3", 100));
  EXPECT_EQ(songs.NumberNow(1), 8);
  songs.CameBack(8, 12);
  EXPECT_EQ(songs.NumberNow(1), 12);
  EXPECT_EQ(songs.NumberNow(8), 12);
  EXPECT_EQ(songs.NumberNow(5), 5);
}

TEST(MissingSongs, ACycleOfNumbersEnds) {
  MissingSongs songs;
  songs.Add(Song(5, "a.mp3", 100, 3));
  songs.Add(Song(3, "a.mp3", 100, 5));
  EXPECT_EQ(songs.NumberNow(5), 5);
  EXPECT_EQ(songs.NumberNow(3), 5);
}

TEST(MissingSongs, TheOldestAreRemovedFirst) {
  MissingSongs songs;
  for (int k = 1; k <= 5; ++k) songs.Add(Song(k, std::to_string(k), k));
  songs.Shrink(2);
  EXPECT_EQ(songs.size(), 2U);
  EXPECT_EQ(songs.Find(3), nullptr);
  EXPECT_NE(songs.Find(4), nullptr);
  EXPECT_EQ(songs.Only("5", 5)->number, 5);
  songs.Shrink(7);
  EXPECT_EQ(songs.size(), 2U);
}

TEST(MissingSongs, AnEntryWithTheSameNumberIsReplaced) {
  MissingSongs songs;
  songs.Add(Song(1, "a.mp3", 100));
  songs.Add(Song(2, "b.mp3", 100));
  songs.Add(Song(1, "c.mp3", 100));
  EXPECT_EQ(songs.size(), 2U);
  EXPECT_EQ(songs.Find(1)->name, "c.mp3");
  EXPECT_EQ(songs.Only("a.mp3", 100), nullptr);
  EXPECT_EQ(songs.Only("b.mp3", 100)->number, 2);
}

TEST(MissingSongs, TheFileHoldsEverything) {
  MissingSongs songs;
  songs.Add(Song(1, "bytes \xFF\".mp3", 5'000'000'000));
  songs.Add(Song(2, "b.mp3", -1, 9));
  EXPECT_TRUE(songs.IsDirty());
  MissingSongs read;
  read.Decode(songs.Encode());
  EXPECT_FALSE(read.IsDirty());
  EXPECT_EQ(read.Encode(), songs.Encode());
  EXPECT_EQ(read.Only("bytes \xFF\".mp3", 5'000'000'000)->rank, "7");
  EXPECT_EQ(read.NumberNow(2), 9);
}

TEST(MissingSongs, NamesakesAreRememberedOnceTheyAreExpected) {
  MissingSongs songs;
  const std::string classic = songs.Encode();
  songs.Decode(classic);
  EXPECT_FALSE(songs.MayHaveNamesakes());
  songs.ExpectNamesakes();
  EXPECT_TRUE(songs.IsDirty());
  // A file that is read later does not end it.
  songs.Decode(classic);
  EXPECT_TRUE(songs.MayHaveNamesakes());
  EXPECT_TRUE(songs.IsDirty());
  songs.Clear();
  MissingSongs read;
  read.Decode(songs.Encode());
  EXPECT_TRUE(read.MayHaveNamesakes());
  EXPECT_FALSE(read.IsDirty());
  read.ExpectNamesakes();
  EXPECT_FALSE(read.IsDirty());
}

TEST(MissingSongs, ADamagedFileIsAnErrorAndChangesNothing) {
  MissingSongs songs;
  songs.Add(Song(1, "a.mp3", 100));
  const std::string whole = songs.Encode();
  for (std::size_t length = 0; length + 1 < whole.size(); ++length)
    EXPECT_THROW(songs.Decode(whole.substr(0, length)), std::exception) << length;
  EXPECT_THROW(songs.Decode(R"({"format":"another","version":1,"songs":[]})"), std::exception);
  EXPECT_THROW(songs.Decode(R"({"format":"Tallow missing songs","version":2,"songs":[]})"),
               std::exception);
  EXPECT_EQ(songs.Encode(), whole);
}

}  // namespace
}  // namespace tallow

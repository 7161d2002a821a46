// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/heard_time.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tallow {
namespace {

using std::chrono::milliseconds;

/// A song that plays under a clock of its own.
class HeardTimeTest : public testing::Test {
 protected:
  /// Plays on for a time, with a poll every 150 ms, and returns how often the song was counted.
  int Hear(milliseconds time) {
    int counted = 0;
    for (milliseconds left = time; left > milliseconds{0}; left -= milliseconds{150}) {
      const milliseconds step = std::min(left, milliseconds{150});
      now += step;
      position += step.count();
      counted += Poll();
    }
    return counted;
  }
  int Poll() { return heard.Update({list, entry}, position, length, now) ? 1 : 0; }

  HeardTime heard;
  HeardTime::Time now{std::chrono::hours(1)};
  std::uint64_t list = 1;
  std::uint64_t entry = 1;
  std::int64_t position = 0;
  std::int64_t length = 200'000;
};

TEST_F(HeardTimeTest, HalfOfASongCountsOnce) {
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(Hear(milliseconds(99'900)), 0);
  EXPECT_EQ(Hear(milliseconds(300)), 1);
  EXPECT_EQ(Hear(milliseconds(90'000)), 0);
}

TEST_F(HeardTimeTest, FourMinutesOfALongSongOrOneOfUnknownLengthCount) {
  for (const std::int64_t long_one : {3'600'000, -1, 0}) {
    length = long_one;
    ++entry;
    position = 0;
    Poll();
    EXPECT_EQ(Hear(milliseconds(239'900)), 0);
    EXPECT_EQ(Hear(milliseconds(300)), 1);
  }
}

TEST_F(HeardTimeTest, JumpingCountsNothing) {
  Poll();
  EXPECT_EQ(Hear(milliseconds(10'000)), 0);
  position = 190'000;
  EXPECT_EQ(Poll(), 0);
  position = 20'000;
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(Hear(milliseconds(89'800)), 0);
  EXPECT_EQ(Hear(milliseconds(600)), 1);
}

TEST_F(HeardTimeTest, APauseOfAnyLengthCountsNothing) {
  Poll();
  EXPECT_EQ(Hear(milliseconds(60'000)), 0);
  now += std::chrono::hours(2);
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(Hear(milliseconds(39'900)), 0);
  EXPECT_EQ(Hear(milliseconds(300)), 1);
}

TEST_F(HeardTimeTest, TheTimeThatAWindowWasBusyCounts) {
  Poll();
  now += milliseconds(120'000);
  position += 120'000;
  EXPECT_EQ(Poll(), 1);
}

TEST_F(HeardTimeTest, WholeSecondsOfWinampCount) {
  Poll();
  int counted = 0;
  for (int second = 1; second <= 101; ++second) {
    now += milliseconds(1000);
    position = second * 1000;
    for (int poll = 0; poll < 6; ++poll) counted += Poll();
  }
  EXPECT_EQ(counted, 1);
}

TEST_F(HeardTimeTest, EachEntryAndEachRepetitionIsCountedOfItself) {
  Poll();
  EXPECT_EQ(Hear(milliseconds(199'900)), 1);
  position = 0;
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(Hear(milliseconds(199'900)), 1);
  entry = 2;
  position = 0;
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(Hear(milliseconds(199'900)), 1);
}

TEST_F(HeardTimeTest, GoingBackInTheSameSongDoesNotCountItAgain) {
  Poll();
  EXPECT_EQ(Hear(milliseconds(150'000)), 1);
  position = 0;
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(Hear(milliseconds(150'000)), 0);
}

TEST_F(HeardTimeTest, NothingIsHeardWithoutASong) {
  entry = 0;
  EXPECT_EQ(Hear(milliseconds(300'000)), 0);
}

TEST_F(HeardTimeTest, AnEntryOfAnotherListWithTheSameNumberIsAnotherSong) {
  Poll();
  EXPECT_EQ(Hear(milliseconds(60'000)), 0);
  list = 2;
  EXPECT_EQ(Hear(milliseconds(60'000)), 0);
  EXPECT_EQ(Hear(milliseconds(45'000)), 1);
}

}  // namespace
}  // namespace tallow

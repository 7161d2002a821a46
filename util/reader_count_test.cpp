// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/reader_count.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

namespace tallow {
namespace {

using Clock = ReaderCount::Clock;
using std::chrono::microseconds;

/// A simulated disk: readers that each make one call after another. Its time is made up.
class SimulatedDisk {
 public:
  /// The duration of a call that begins while `readers` readers are at work.
  using CallTime = std::function<microseconds(unsigned readers)>;

  explicit SimulatedDisk(unsigned initial, microseconds slow_call = ReaderCount::kSlowCall)
      : count(initial, slow_call) {}

  /// Makes calls with as many readers as are wanted.
  /// \param most_work number of calls that can be made at the same time, e.g. because there are no
  ///   more folders to list
  /// \param added     number of calls that a reader adds at once; `calls` and the duration are
  ///   those of so many calls together
  void Make(int calls, const CallTime& call_time, unsigned most_work = ReaderCount::kMost,
            std::size_t added = 1) {
    for (int k = 0; k < calls; ++k) {
      readers_.resize(std::min(count.Wanted(), most_work), now_);
      const auto first = std::min_element(readers_.begin(), readers_.end());
      const Clock::time_point begin = *first;
      now_ = begin;
      *first = begin + call_time(static_cast<unsigned>(readers_.size()));
      count.Add(begin, *first, added);
      highest = std::max(highest, count.Wanted());
    }
  }

  ReaderCount count;
  unsigned highest = 0;

 private:
  Clock::time_point now_;
  std::vector<Clock::time_point> readers_;  ///< when each reader is free
};

SimulatedDisk::CallTime Always(int time) {
  return [time](unsigned) { return microseconds(time); };
}

/// A disk that answers at most `most` calls at the same time, each in `time` microseconds.
SimulatedDisk::CallTime AtOnce(unsigned most, int time) {
  return [=](unsigned readers) {
    return microseconds(time) * std::max(readers, most) / static_cast<int>(most);
  };
}

TEST(ReaderCount, TheFirstCallsChangeNothing) {
  SimulatedDisk disk(2);
  disk.Make(15, Always(1000));
  EXPECT_EQ(disk.count.Wanted(), 2U);
  EXPECT_EQ(disk.count.CurrentPace(), ReaderCount::Pace::kUnknown);
}

TEST(ReaderCount, QuickCallsKeepTheInitialNumber) {
  SimulatedDisk disk(5);
  disk.Make(10000, Always(10));
  EXPECT_EQ(disk.highest, 5U);
  EXPECT_EQ(disk.count.CurrentPace(), ReaderCount::Pace::kQuick);
}

TEST(ReaderCount, CallsOfExactlyTheLimitAreQuick) {
  SimulatedDisk disk(2);
  disk.Make(10000, Always(30));
  EXPECT_EQ(disk.highest, 2U);
  EXPECT_FALSE(disk.count.IsSlow());
}

TEST(ReaderCount, TheLimitOfWholeFilesIsHigher) {
  SimulatedDisk disk(2, ReaderCount::kSlowFile);
  disk.Make(10000, Always(200));
  EXPECT_EQ(disk.highest, 2U);
  EXPECT_FALSE(disk.count.IsSlow());
  disk.Make(10000, Always(201));
  EXPECT_EQ(disk.count.Wanted(), ReaderCount::kMost);
}

TEST(ReaderCount, SlowCallsGrowItToTheMaximumWithinAFewHundredCalls) {
  SimulatedDisk disk(2);
  disk.Make(300, Always(1000));
  EXPECT_EQ(disk.count.Wanted(), ReaderCount::kMost);
  EXPECT_TRUE(disk.count.IsSlow());
  disk.Make(10000, Always(1000));
  EXPECT_EQ(disk.count.Wanted(), ReaderCount::kMost);
  EXPECT_EQ(disk.highest, ReaderCount::kMost);
}

TEST(ReaderCount, AnInitialNumberThatIsNoPowerOfTwoGrowsToTheMaximumToo) {
  SimulatedDisk disk(5);
  disk.Make(2000, Always(300));
  EXPECT_EQ(disk.count.Wanted(), ReaderCount::kMost);
}

TEST(ReaderCount, AGrowthThatDoesNotHelpIsTakenBack) {
  SimulatedDisk disk(2);
  disk.Make(200, AtOnce(4, 1000));
  EXPECT_EQ(disk.highest, 8U);
  EXPECT_EQ(disk.count.Wanted(), 4U);
}

TEST(ReaderCount, AGrowthThatDoesNotHelpIsTriedAgainMoreAndMoreRarely) {
  SimulatedDisk disk(2);
  const auto calls_above = [&](int calls) {
    int above = 0;
    for (int k = 0; k < calls; ++k) {
      disk.Make(1, AtOnce(4, 1000));
      if (disk.count.Wanted() > 4) ++above;
    }
    return above;
  };
  const int first = calls_above(2000);
  const int second = calls_above(2000);
  EXPECT_GT(second, 0);
  EXPECT_LT(second, first);
}

TEST(ReaderCount, ADiskThatGetsWiderIsUsedAgain) {
  SimulatedDisk disk(2);
  disk.Make(1000, AtOnce(4, 1000));
  EXPECT_LE(disk.count.Wanted(), 8U);
  disk.Make(5000, Always(1000));
  EXPECT_EQ(disk.count.Wanted(), ReaderCount::kMost);
}

TEST(ReaderCount, QuickCallsShrinkItToTheInitialNumber) {
  SimulatedDisk disk(3);
  disk.Make(2000, Always(1000));
  ASSERT_EQ(disk.count.Wanted(), ReaderCount::kMost);
  disk.Make(2000, Always(10));
  EXPECT_EQ(disk.count.Wanted(), 3U);
}

TEST(ReaderCount, CallsBetweenQuickAndSlowKeepTheNumber) {
  SimulatedDisk disk(2);
  disk.Make(2000, Always(1000));
  disk.Make(2000, Always(20));
  EXPECT_EQ(disk.count.Wanted(), ReaderCount::kMost);
  EXPECT_FALSE(disk.count.IsSlow());
}

TEST(ReaderCount, ReadersWithoutEnoughToDoDoNotGrow) {
  SimulatedDisk disk(4);
  disk.Make(5000, Always(1000), 2);
  EXPECT_EQ(disk.highest, 4U);
  disk.Make(500, Always(1000));
  EXPECT_EQ(disk.count.Wanted(), ReaderCount::kMost);
}

TEST(ReaderCount, ALimitHoldsForGood) {
  SimulatedDisk disk(2);
  disk.count.LimitTo(5);
  EXPECT_EQ(disk.count.Wanted(), 2U);
  disk.Make(5000, Always(1000));
  EXPECT_EQ(disk.count.Wanted(), 5U);
  disk.count.LimitTo(0);
  disk.Make(5000, Always(1000));
  EXPECT_EQ(disk.count.Wanted(), 0U);
}

TEST(ReaderCount, CallsAddedTogetherCountOneByOne) {
  ReaderCount count(1);
  Clock::time_point now;
  const auto add = [&](int calls, int time) {
    const Clock::time_point begin = now;
    now += calls * microseconds(time);
    count.Add(begin, now, static_cast<std::size_t>(calls));
  };
  add(8, 10);
  add(8, 10);
  EXPECT_EQ(count.CurrentPace(), ReaderCount::Pace::kQuick);
  add(8, 1000);
  add(8, 1000);
  EXPECT_TRUE(count.IsSlow());
}

TEST(ReaderCount, AGrowthIsNotJudgedBeforeEachReaderHasAddedCalls) {
  SimulatedDisk disk(2);
  constexpr std::size_t kCallsATurn = 64;
  disk.Make(500, Always(64000), ReaderCount::kMost, kCallsATurn);
  EXPECT_EQ(disk.count.Wanted(), ReaderCount::kMost);
}

}  // namespace
}  // namespace tallow

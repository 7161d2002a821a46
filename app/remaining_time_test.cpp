// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/remaining_time.h"

#include <gtest/gtest.h>

namespace tallow {
namespace {

using std::chrono::milliseconds;

TEST(RemainingTime, IsLongAboveTwoSeconds) {
  const RemainingTime::Time begin{std::chrono::hours(1)};
  const RemainingTime time(begin);
  EXPECT_FALSE(time.IsLong(0, 1000, begin));
  EXPECT_FALSE(time.IsLong(1, 1000, begin + milliseconds(499)));
  EXPECT_TRUE(time.IsLong(1, 1000, begin + milliseconds(500)));
  EXPECT_TRUE(time.IsLong(0, 1000, begin + milliseconds(500)));
  // 100 parts a second.
  EXPECT_FALSE(time.IsLong(100, 300, begin + milliseconds(1000)));
  EXPECT_TRUE(time.IsLong(100, 301, begin + milliseconds(1000)));
  EXPECT_FALSE(time.IsLong(0, 0, begin + milliseconds(1000)));
  EXPECT_FALSE(time.IsLong(300, 300, begin + milliseconds(1000)));
}

}  // namespace
}  // namespace tallow

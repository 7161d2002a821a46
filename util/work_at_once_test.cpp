// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/work_at_once.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace tallow {
namespace {

using Works = std::vector<std::function<void()>>;

TEST(WorkAtOnce, RunsAllAndTheLastOnTheCallingThread) {
  std::vector<int> done(3);
  std::thread::id last;
  WorkAtOnce(Works{[&] { done[0] = 1; }, [&] { done[1] = 2; },
                   [&] {
                     done[2] = 3;
                     last = std::this_thread::get_id();
                   }});
  EXPECT_EQ(done, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(last, std::this_thread::get_id());
  WorkAtOnce(Works{});
}

TEST(WorkAtOnce, ThrowsTheFirstExceptionWhenAllHaveEnded) {
  for (const int thrower : {0, 1, 2}) {
    std::atomic<int> ended = 0;
    Works works;
    for (int k = 0; k < 3; ++k)
      works.emplace_back([&ended, k, thrower] {
        ++ended;
        if (k >= thrower) throw std::runtime_error(std::to_string(k));
      });
    try {
      WorkAtOnce(works);
      ADD_FAILURE() << "no exception";
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(error.what(), std::to_string(thrower));
    }
    EXPECT_EQ(ended, 3);
  }
}

TEST(WorkAtOnce, PartsCoverTheWhole) {
  EXPECT_EQ(PartsForCores(0, 10), (std::vector<std::size_t>{0, 0}));
  EXPECT_EQ(PartsForCores(19, 10), (std::vector<std::size_t>{0, 19}));
  const std::vector<std::size_t> parts = PartsForCores(1000, 1);
  EXPECT_EQ(parts.front(), 0U);
  EXPECT_EQ(parts.back(), 1000U);
  EXPECT_EQ(parts.size(), std::max(std::thread::hardware_concurrency(), 1U) + 1);
  for (std::size_t k = 1; k < parts.size(); ++k) EXPECT_LT(parts[k - 1], parts[k]);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/detached_threads.h"

#include <array>
#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>

namespace tallow {
namespace {

TEST(DetachedThreads, ShortThreadsEachRunTheirOwnWorkOnce) {
  // Threads that end while they are being detached.
  constexpr std::size_t kThreads = 3000;
  struct Shared {
    std::mutex mutex;
    DetachedThreads threads{mutex};
    std::array<std::atomic<int>, kThreads> runs{};
  };
  const auto shared = std::make_shared<Shared>();
  for (std::size_t k = 0; k < kThreads; ++k) {
    ASSERT_TRUE(shared->threads.Start([shared, k] {
      ++shared->runs[k];
      const std::lock_guard lock(shared->mutex);
      shared->threads.RemoveLocked();
    }));
    constexpr unsigned kAtOnce = 4;
    if (k % kAtOnce == 0) shared->threads.WaitForEnd();
  }
  shared->threads.WaitForEnd();
  for (std::size_t k = 0; k < kThreads; ++k) EXPECT_EQ(shared->runs[k], 1) << k;
}

TEST(DetachedThreads, AWaitWithATimeoutSaysWhetherAThreadStillRuns) {
  struct Shared {
    std::mutex mutex;
    DetachedThreads threads{mutex};
    std::atomic<bool> may_end = false;
  };
  const auto shared = std::make_shared<Shared>();
  ASSERT_TRUE(shared->threads.Start([shared] {
    shared->may_end.wait(false);
    const std::lock_guard lock(shared->mutex);
    shared->threads.RemoveLocked();
  }));
  EXPECT_FALSE(shared->threads.WaitForEnd(std::chrono::milliseconds(1)));
  shared->may_end = true;
  shared->may_end.notify_all();
  shared->threads.WaitForEnd();
  EXPECT_TRUE(shared->threads.WaitForEnd(std::chrono::milliseconds(0)));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/read_ahead.h"

#include <atomic>
#include <gtest/gtest.h>
#include <stdexcept>

namespace tallow {
namespace {

TEST(ReadAhead, EveryThingIsConsumedOnceInOrder) {
  for (const std::size_t count : {0U, 1U, 7U, 8U, 9U, 1000U, 5003U}) {
    std::vector<std::atomic<int>> produced(count);
    std::size_t next = 0;
    ReadAhead(
        count, 8,
        [&](std::size_t i) {
          ++produced[i];
          return i * 3;
        },
        [&](std::size_t i, std::size_t value) {
          ASSERT_EQ(i, next++);
          ASSERT_EQ(value, i * 3);
        });
    EXPECT_EQ(next, count);
    for (const auto& times : produced) EXPECT_EQ(times.load(), 1);
  }
}

TEST(ReadAhead, AThreadThatWaitsLives) {
  for (const std::size_t count : {1U, 3U, 100U}) {
    std::atomic<int> lived = 0;
    std::size_t consumed = 0;
    ReadAhead(
        count, 8,
        [&](std::size_t i) {
          // As a disk that first has to start: until the one who waits has lived twice.
          while (i == 0 && lived < 2) std::this_thread::yield();
          return i;
        },
        [&](std::size_t, std::size_t) { ++consumed; }, [&] { ++lived; });
    EXPECT_EQ(consumed, count);
    EXPECT_GE(lived, 2);
  }
}

TEST(ReadAhead, WhoWaitsMayEndTheWork) {
  std::atomic<bool> ended = false;
  EXPECT_THROW(ReadAhead(
                   100, 8,
                   [&](std::size_t i) {
                     while (!ended) std::this_thread::yield();
                     return i;
                   },
                   [](std::size_t, std::size_t) {},
                   [&] {
                     ended = true;
                     throw std::runtime_error("cancelled");
                   }),
               std::runtime_error);
}

TEST(ReadAhead, AFailingProducerEndsTheWork) {
  EXPECT_THROW(ReadAhead(
                   1000, 4,
                   [](std::size_t i) {
                     if (i == 500) throw std::runtime_error("500");
                     return i;
                   },
                   [](std::size_t, std::size_t) {}),
               std::runtime_error);
}

TEST(ReadAhead, AFailingConsumerEndsTheWork) {
  std::size_t last = 0;
  EXPECT_THROW(ReadAhead(
                   1000, 4, [](std::size_t i) { return i; },
                   [&](std::size_t i, std::size_t) {
                     last = i;
                     if (i == 300) throw std::runtime_error("300");
                   }),
               std::runtime_error);
  EXPECT_EQ(last, 300U);
}

}  // namespace
}  // namespace tallow

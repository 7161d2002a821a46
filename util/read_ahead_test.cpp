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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/queue_entries.h"

#include <gtest/gtest.h>
#include <random>

namespace tallow {
namespace {

/// A queue in which the entry of a row is the row plus `offset`.
class QueueEntriesTest : public testing::Test {
 protected:
  std::vector<std::uint64_t> Ask(std::size_t from, std::size_t count) {
    ++questions;
    std::vector<std::uint64_t> part;
    for (std::size_t row = from; row < length && part.size() < count; ++row)
      part.push_back(row + offset);
    return part;
  }

  std::size_t length = 100'000;
  std::uint64_t offset = 1;
  int questions = 0;
  QueueEntries entries{[this](std::size_t from, std::size_t count) { return Ask(from, count); }};
};

TEST_F(QueueEntriesTest, NeighboursAreAskedForOnce) {
  for (std::size_t row = 0; row < QueueEntries::kBlock; ++row) EXPECT_EQ(entries.At(row), row + 1);
  EXPECT_EQ(questions, 1);
  EXPECT_EQ(entries.At(QueueEntries::kBlock), QueueEntries::kBlock + 1);
  EXPECT_EQ(questions, 2);
  EXPECT_EQ(entries.At(0), 1U);
  EXPECT_EQ(questions, 2);
}

TEST_F(QueueEntriesTest, AnotherQueueIsAskedForAnew) {
  entries.At(5);
  offset = 7;
  EXPECT_EQ(entries.At(5), 6U);
  entries.Forget();
  EXPECT_EQ(entries.At(5), 12U);
}

TEST_F(QueueEntriesTest, PastTheEndThereIsNone) {
  length = 3;
  EXPECT_EQ(entries.At(2), 3U);
  EXPECT_EQ(entries.At(3), 0U);
  EXPECT_EQ(entries.At(9'999'999), 0U);
}

TEST_F(QueueEntriesTest, RandomRowsAreRightAndFewAreKept) {
  std::mt19937 random(1);
  for (int step = 0; step < 5000; ++step) {
    const std::size_t row = random() % length;
    ASSERT_EQ(entries.At(row), row + 1);
  }
}

TEST_F(QueueEntriesTest, AllAreAskedForInFewParts) {
  const std::vector<std::uint64_t> all = entries.All(length);
  ASSERT_EQ(all.size(), length);
  EXPECT_EQ(all.front(), 1U);
  EXPECT_EQ(all.back(), 100'000U);
  EXPECT_EQ(questions, 25);
  // The queue has become shorter since its length was asked for.
  length = 5000;
  EXPECT_EQ(entries.All(100'000).size(), 5000U);
  EXPECT_TRUE(entries.All(0).empty());
}

}  // namespace
}  // namespace tallow

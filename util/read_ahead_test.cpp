// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/read_ahead.h"

#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>

namespace tallow {
namespace {

using Milliseconds = std::chrono::milliseconds;

std::size_t Number(std::size_t i) { return i; }

TEST(ReadAhead, EveryAnswerIsConsumedOnceInOrder) {
  for (const std::size_t count : {0U, 1U, 7U, 8U, 9U, 1000U, 5003U}) {
    std::vector<std::atomic<int>> produced(count);
    std::size_t next = 0;
    ReadAhead(
        count, 8, Number,
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

TEST(ReadAhead, QuestionsAreMadeOnTheCallersThread) {
  const auto caller = std::this_thread::get_id();
  ReadAhead(
      1000, 8,
      [&](std::size_t i) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        return i;
      },
      Number, [&](std::size_t, std::size_t) { EXPECT_EQ(std::this_thread::get_id(), caller); });
}

TEST(ReadAhead, TheWaitingCallbackIsCalledUntilAnAnswerComes) {
  for (const std::size_t count : {1U, 3U, 100U}) {
    std::atomic<int> lived = 0;
    std::size_t consumed = 0;
    ReadAhead(
        count, 8, Number,
        [&](std::size_t i) {
          // Simulates a disk that has to spin up: blocks until the waiting callback was called
          // twice.
          while (i == 0 && lived < 2) std::this_thread::yield();
          return i;
        },
        [&](std::size_t, std::size_t) { ++consumed; },
        [&](std::size_t i, Milliseconds) {
          EXPECT_EQ(i, lived < 2 ? 0U : i);
          ++lived;
          return WaitDecision::kWait;
        },
        Number);
    EXPECT_EQ(consumed, count);
    EXPECT_GE(lived, 2);
  }
}

TEST(ReadAhead, TheWaitingCallbackMayEndTheWork) {
  std::atomic<bool> ended = false;
  EXPECT_THROW(ReadAhead(
                   100, 8, Number,
                   [&](std::size_t i) {
                     while (!ended) std::this_thread::yield();
                     return i;
                   },
                   [](std::size_t, std::size_t) {},
                   [&](std::size_t, Milliseconds) -> WaitDecision {
                     ended = true;
                     throw std::runtime_error("cancelled");
                   },
                   Number),
               std::runtime_error);
}

TEST(ReadAhead, AnExceptionOfAWorkerIsRethrown) {
  std::size_t consumed = 0;
  EXPECT_THROW(ReadAhead(
                   1000, 4, Number,
                   [](std::size_t i) {
                     if (i == 501) throw std::runtime_error("501");
                     return i;
                   },
                   [&](std::size_t, std::size_t) { ++consumed; }),
               std::runtime_error);
  EXPECT_EQ(consumed, 501U);
}

TEST(ReadAhead, AnExceptionOfAQuestionIsRethrown) {
  EXPECT_THROW(ReadAhead(
                   1000, 4,
                   [](std::size_t i) {
                     if (i == 500) throw std::runtime_error("500");
                     return i;
                   },
                   Number, [](std::size_t, std::size_t) {}),
               std::runtime_error);
}

TEST(ReadAhead, AFailingConsumerEndsTheWork) {
  std::size_t last = 0;
  EXPECT_THROW(ReadAhead(1000, 4, Number, Number,
                         [&](std::size_t i, std::size_t) {
                           last = i;
                           if (i == 300) throw std::runtime_error("300");
                         }),
               std::runtime_error);
  EXPECT_EQ(last, 300U);
}

/// A simulated disk that never answers questions divisible by a given number until it is released.
/// Shared, because abandoned threads use it after the test.
struct DeadDisk {
  std::mutex mutex;
  std::condition_variable changed;
  bool is_back = false;
  int waiting = 0;

  void Wait() {
    std::unique_lock lock(mutex);
    ++waiting;
    changed.wait(lock, [this] { return is_back; });
    --waiting;
    changed.notify_all();
  }
  void ComeBack() {
    std::unique_lock lock(mutex);
    is_back = true;
    changed.notify_all();
    changed.wait(lock, [this] { return waiting == 0; });
  }
};

TEST(ReadAhead, AQuestionWithoutAnAnswerIsGivenUpAndTheOthersAreAnswered) {
  const auto disk = std::make_shared<DeadDisk>();
  std::vector<std::size_t> consumed;
  ReadAhead(
      200, 4, Number,
      [disk](std::size_t i) {
        if (i % 50 == 1) disk->Wait();
        return i;
      },
      [&](std::size_t, std::size_t value) { consumed.push_back(value); },
      [](std::size_t i, Milliseconds) {
        return i % 50 == 1 ? WaitDecision::kGiveUp : WaitDecision::kWait;
      },
      [](std::size_t i) { return i + 1000; });
  ASSERT_EQ(consumed.size(), 200U);
  for (std::size_t i = 0; i < 200; ++i) EXPECT_EQ(consumed[i], i % 50 == 1 ? i + 1000 : i);
  disk->ComeBack();
}

TEST(ReadAhead, TheEndDoesNotWaitForAnswersThatNeverCome) {
  const auto disk = std::make_shared<DeadDisk>();
  EXPECT_THROW(
      ReadAhead(
          100, 2, Number,
          [disk](std::size_t i) {
            disk->Wait();
            return i;
          },
          [](std::size_t, std::size_t) {},
          [](std::size_t, Milliseconds) -> WaitDecision { throw std::runtime_error("cancelled"); },
          Number),
      std::runtime_error);
  disk->ComeBack();
}

TEST(ReadAhead, TheWaitingCallbackReceivesTheTimeWaited) {
  const auto disk = std::make_shared<DeadDisk>();
  Milliseconds before(0);
  int calls = 0;
  ReadAhead(
      1, 1, Number,
      [disk](std::size_t i) {
        disk->Wait();
        return i;
      },
      [](std::size_t, std::size_t) {},
      [&](std::size_t, Milliseconds waited) {
        EXPECT_GE(waited, before);
        before = waited;
        return ++calls == 3 ? WaitDecision::kGiveUp : WaitDecision::kWait;
      },
      Number);
  EXPECT_EQ(calls, 3);
  EXPECT_GT(before, Milliseconds(0));
  disk->ComeBack();
}

}  // namespace
}  // namespace tallow

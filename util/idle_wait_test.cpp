// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/idle_wait.h"

#include <gtest/gtest.h>
#include <thread>

namespace tallow {
namespace {

/// A number that two threads share.
struct Shared {
  std::mutex mutex;
  std::condition_variable changed;
  int number = 0;

  void Set(int to) {
    const std::lock_guard lock(mutex);
    number = to;
    changed.notify_all();
  }
};

TEST(IdleWait, TheCallbackIsNotCalledForWhatIsDoneAlready) {
  Shared shared;
  shared.number = 7;
  const int result = WaitWithIdleCallback(
      shared.mutex, shared.changed, [&] { return shared.number == 7; },
      [] {
        ADD_FAILURE() << "called";
        return true;
      },
      [&] { return shared.number; });
  EXPECT_EQ(result, 7);
}

TEST(IdleWait, TheCallbackRunsWithoutTheLockUntilAnotherThreadIsDone) {
  Shared shared;
  std::thread other;
  const int result = WaitWithIdleCallback(
      shared.mutex, shared.changed, [&] { return shared.number != 0; },
      [&] {
        if (!other.joinable()) other = std::thread([&] { shared.Set(3); });
        return true;
      },
      [&] { return shared.number; });
  other.join();
  EXPECT_EQ(result, 3);
}

TEST(IdleWait, TheCallbackMayEndTheWait) {
  Shared shared;
  int calls = 0;
  EXPECT_EQ(WaitWithIdleCallback(
                shared.mutex, shared.changed, [] { return false; }, [&] { return ++calls < 3; },
                [&] { return calls; }),
            3);
}

}  // namespace
}  // namespace tallow

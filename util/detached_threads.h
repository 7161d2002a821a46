// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace tallow {

/// How long an object that stops its worker threads waits for the busy ones before it abandons
/// them. No window events are processed meanwhile.
inline constexpr std::chrono::milliseconds kAbandonAfter{80};

/// The detached threads that work for an object and keep it alive, because a call on a disk that
/// does not respond may never return.
///
/// The object's mutex guards the number of threads. Functions named ...Locked require it to be
/// locked and leave it locked; all others lock it themselves.
class DetachedThreads {
 public:
  /// \param mutex of the object that this is a member of
  explicit DetachedThreads(std::mutex& mutex) : mutex_(mutex) {}

  /// Starts and counts a thread.
  ///
  /// \param work owns the object, and ends by calling RemoveLocked unless the thread was abandoned
  /// \returns false when the system cannot create another thread
  bool Start(std::function<void()> work);

  /// Stops counting a thread that is about to end, or that is abandoned.
  void RemoveLocked();

  unsigned CountLocked() const { return count_; }

  /// Waits until no thread is counted.
  void WaitForEnd();

  /// \returns false when threads were still counted after `timeout`
  bool WaitForEnd(std::chrono::milliseconds timeout);

 private:
  std::mutex& mutex_;
  std::condition_variable ended_;
  unsigned count_ = 0;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/detached_threads.h"

#include <utility>

#include "util/detached_thread.h"

namespace tallow {

bool DetachedThreads::Start(std::function<void()> work) {
  {
    // Counted before it starts, because it may end before StartDetachedThread returns.
    const std::lock_guard lock(mutex_);
    ++count_;
  }
  if (StartDetachedThread(std::move(work))) return true;
  const std::lock_guard lock(mutex_);
  RemoveLocked();
  return false;
}

void DetachedThreads::RemoveLocked() {
  --count_;
  ended_.notify_all();
}

void DetachedThreads::WaitForEnd() {
  std::unique_lock lock(mutex_);
  ended_.wait(lock, [this] { return count_ == 0; });
}

bool DetachedThreads::WaitForEnd(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  return ended_.wait_for(lock, timeout, [this] { return count_ == 0; });
}

}  // namespace tallow

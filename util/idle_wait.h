// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tallow {

/// How long a thread with windows waits before it calls the callback that processes window events.
inline constexpr std::chrono::milliseconds kEventInterval{40};

/// Waits for other threads and calls an idle callback every kEventInterval meanwhile. The calling
/// thread must not have locked the mutex.
///
/// \param changed notified when `done` may have become true
/// \param done    what is waited for; called with the mutex locked
/// \param idle    called with the mutex unlocked; returns whether to keep waiting
/// \param finish  called once, at the end of the wait, under the same lock as the last `done`
/// \returns what `finish` returns
template <typename Done, typename Idle, typename Finish>
auto WaitWithIdleCallback(std::mutex& mutex, std::condition_variable& changed, const Done& done,
                          const Idle& idle, const Finish& finish) {
  for (bool go_on = true;; go_on = idle()) {
    std::unique_lock lock(mutex);
    if (!go_on || changed.wait_for(lock, kEventInterval, done)) return finish();
  }
}

}  // namespace tallow

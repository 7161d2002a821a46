// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/length_callbacks.h"

#include <ctime>
#include <utility>

namespace tallow {
namespace {

/// How long a callback waits for the length, in µs.
constexpr std::uint64_t kTimeout = 2'000'000;

}  // namespace

void LengthCallbacks::CallWhenKnown(Callback callback) {
  if (!deferred_) return callback(length_());
  waiting_.push_back(std::move(callback));
  if (timeout_) return;
  sd_event_source* timer = nullptr;
  const int added = sd_event_add_time_relative(
      loop_, &timer, CLOCK_MONOTONIC, kTimeout, 0,
      [](sd_event_source*, std::uint64_t, void* self) {
        static_cast<LengthCallbacks*>(self)->CallAll();
        return 0;
      },
      this);
  if (added < 0) return CallAll();
  timeout_.reset(timer);
}

void LengthCallbacks::CallAll() {
  deferred_ = false;
  timeout_.reset();
  const std::vector<Callback> callbacks = std::exchange(waiting_, {});
  for (const Callback& callback : callbacks) callback(length_());
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "player/substitute/event_loop.h"

namespace tallow {

/// Callbacks that receive the length of the current track.
///
/// The length is known only after the track was opened. Between DeferCalls and CallAll callbacks
/// are therefore stored, for two seconds at most.
class LengthCallbacks {
 public:
  /// \param length in s; -1 if unknown
  using Callback = std::function<void(std::int64_t length)>;

  /// \param length returns the length of the current track in s, or -1 if unknown
  LengthCallbacks(EventLoop& loop, std::function<std::int64_t()> length)
      : loop_(loop), length_(std::move(length)) {}
  LengthCallbacks(const LengthCallbacks&) = delete;
  LengthCallbacks& operator=(const LengthCallbacks&) = delete;

  /// Call this after starting a track whose length will be known soon.
  void DeferCalls() noexcept { deferred_ = true; }
  /// Calls a callback: at once, or by the next CallAll when calls are deferred.
  void CallWhenKnown(Callback callback);
  /// Calls the stored callbacks. Later calls are no longer deferred.
  void CallAll();

 private:
  EventLoop& loop_;
  std::function<std::int64_t()> length_;
  bool deferred_ = false;
  std::vector<Callback> waiting_;
  std::unique_ptr<LoopCallback> timeout_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "player/substitute/event_loop.h"

namespace tallow {

/// Ends the player after some minutes without playback and clients, because it has no window that
/// could be closed.
class IdleShutdown {
 public:
  /// After this many consecutive checks that found the player idle, it ends.
  static constexpr int kMaxIdleChecks = 5;
  static constexpr std::chrono::minutes kCheckInterval{1};

  /// \param is_idle        returns whether the player neither plays nor has clients
  /// \param shut_down      callback that ends the player
  /// \param check_interval time between two checks
  IdleShutdown(EventLoop& loop, std::function<bool()> is_idle, std::function<void()> shut_down,
               std::chrono::microseconds check_interval = kCheckInterval);
  IdleShutdown(const IdleShutdown&) = delete;
  IdleShutdown& operator=(const IdleShutdown&) = delete;

 private:
  void CheckLater();
  void Check();

  EventLoop& loop_;
  std::function<bool()> is_idle_;
  std::function<void()> shut_down_;
  std::chrono::microseconds check_interval_;
  std::unique_ptr<LoopCallback> timer_;
  int idle_checks_ = 0;  ///< number of consecutive checks that found the player idle
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <systemd/sd-event.h>

#include "player/substitute/event_source.h"

namespace tallow {

class RequestServer;
class SongPlayer;

/// Ends the player after some minutes without playback and connections, because it has no window
/// that could be closed.
class IdleShutdown {
 public:
  /// After this many consecutive checks without playback or connections, the player ends.
  static constexpr int kMaxIdleChecks = 5;
  static constexpr std::uint64_t kCheckInterval = 60'000'000;  ///< in µs

  /// \param player, server must outlive this object
  /// \param shut_down      callback that ends the player
  /// \param check_interval time between two checks, in µs
  IdleShutdown(sd_event* loop, const SongPlayer& player, const RequestServer& server,
               std::function<void()> shut_down, std::uint64_t check_interval = kCheckInterval);
  IdleShutdown(const IdleShutdown&) = delete;
  IdleShutdown& operator=(const IdleShutdown&) = delete;

 private:
  int Check();

  const SongPlayer& player_;
  const RequestServer& server_;
  std::function<void()> shut_down_;
  std::uint64_t check_interval_;  ///< in µs
  EventSource timer_;
  int idle_checks_ = 0;  ///< number of consecutive checks that found the player idle
};

}  // namespace tallow

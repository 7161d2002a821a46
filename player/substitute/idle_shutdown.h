// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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
  /// \param player, server must outlive this object
  /// \param shut_down      callback that ends the player
  IdleShutdown(sd_event* loop, const SongPlayer& player, const RequestServer& server,
               std::function<void()> shut_down);
  IdleShutdown(const IdleShutdown&) = delete;
  IdleShutdown& operator=(const IdleShutdown&) = delete;

 private:
  int Check();

  const SongPlayer& player_;
  const RequestServer& server_;
  std::function<void()> shut_down_;
  EventSource timer_;
  int idle_checks_ = 0;  ///< number of consecutive checks that found the player idle
};

}  // namespace tallow

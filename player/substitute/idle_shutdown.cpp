// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/idle_shutdown.h"

#include <cstdint>
#include <ctime>
#include <utility>

#include "player/substitute/request_server.h"
#include "player/substitute/song_player.h"

namespace tallow {
namespace {

/// After this many consecutive checks without playback or connections, the player ends.
constexpr int kMaxIdleChecks = 5;
constexpr std::uint64_t kCheckInterval = 60'000'000;  ///< in µs

}  // namespace

IdleShutdown::IdleShutdown(sd_event* loop, const SongPlayer& player, const RequestServer& server,
                           std::function<void()> shut_down)
    : player_(player), server_(server), shut_down_(std::move(shut_down)) {
  sd_event_source* timer = nullptr;
  Require(sd_event_add_time_relative(
              loop, &timer, CLOCK_MONOTONIC, kCheckInterval, 0,
              [](sd_event_source*, std::uint64_t, void* self) {
                return static_cast<IdleShutdown*>(self)->Check();
              },
              this),
          "the event loop");
  timer_.reset(timer);
  Require(sd_event_source_set_enabled(timer, SD_EVENT_ON), "the event loop");
}

int IdleShutdown::Check() {
  const bool idle = player_.Status() == kStopped && server_.Connections() == 0;
  idle_checks_ = idle ? idle_checks_ + 1 : 0;
  if (idle_checks_ >= kMaxIdleChecks) shut_down_();
  return sd_event_source_set_time_relative(timer_.get(), kCheckInterval);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/idle_shutdown.h"

#include <ctime>
#include <utility>

#include "player/substitute/request_server.h"
#include "player/substitute/song_player.h"

namespace tallow {

IdleShutdown::IdleShutdown(sd_event* loop, const SongPlayer& player, const RequestServer& server,
                           std::function<void()> shut_down, std::uint64_t check_interval)
    : player_(player),
      server_(server),
      shut_down_(std::move(shut_down)),
      check_interval_(check_interval) {
  sd_event_source* timer = nullptr;
  Require(sd_event_add_time_relative(
              loop, &timer, CLOCK_MONOTONIC, check_interval_, 0,
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
  return sd_event_source_set_time_relative(timer_.get(), check_interval_);
}

}  // namespace tallow

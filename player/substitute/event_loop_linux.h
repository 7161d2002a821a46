// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <systemd/sd-event.h>

#include "player/substitute/event_loop.h"
#include "player/substitute/event_source.h"

namespace tallow {

/// The event loop on Linux, for the parts of the player that only Linux has.
class LinuxEventLoop final : public EventLoop {
 public:
  /// \throws std::runtime_error on failure
  LinuxEventLoop();

  sd_event* Get() const noexcept { return loop_.get(); }

  std::unique_ptr<LoopCallback> AddTimer(std::chrono::microseconds time,
                                         Callback callback) override;
  std::unique_ptr<WakeUp> AddWakeUp(Callback callback) override;
  void CallAtEnd(Callback callback) override;
  void RunOnce(std::chrono::microseconds max_wait) override;
  int Run() override;
  void Exit(int code) override;

 private:
  SdEventLoop loop_;
  Callback at_end_;
};

}  // namespace tallow

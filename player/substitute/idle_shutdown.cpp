// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/idle_shutdown.h"

#include <utility>

namespace tallow {

IdleShutdown::IdleShutdown(EventLoop& loop, std::function<bool()> is_idle,
                           std::function<void()> shut_down,
                           std::chrono::microseconds check_interval)
    : loop_(loop),
      is_idle_(std::move(is_idle)),
      shut_down_(std::move(shut_down)),
      check_interval_(check_interval) {
  CheckLater();
}

void IdleShutdown::CheckLater() {
  timer_ = loop_.AddTimer(check_interval_, [this] { Check(); });
}

void IdleShutdown::Check() {
  idle_checks_ = is_idle_() ? idle_checks_ + 1 : 0;
  if (idle_checks_ >= kMaxIdleChecks) shut_down_();
  CheckLater();
}

}  // namespace tallow

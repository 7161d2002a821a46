// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/player_work.h"

#include <string>
#include <thread>

namespace tallow {

WhileStarting PlayerWork::Starting() {
  return [this] {
    if (!work_ && begin_) work_ = begin_(kStartingPlayer);
    std::this_thread::sleep_for(kPlayerPollInterval);
    return !work_ || work_->GoOn([] { return std::string("Waiting for the player"); });
  };
}

HandOverProgress PlayerWork::BeginHandingOver() {
  work_.reset();
  if (begin_) work_ = begin_(kHandingOver);
  if (!work_) return {};
  return [this](std::size_t done, std::size_t songs) {
    return !work_ || work_->GoOn([=] {
      return "Handed over " + std::to_string(done) + " of " + std::to_string(songs) + " songs";
    });
  };
}

}  // namespace tallow

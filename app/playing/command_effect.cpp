// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/command_effect.h"

namespace tallow {

std::string WhyNoEffect(PlayerCommand command, const Playing& now) {
  if (!now.is_running) return {};
  switch (command) {
    case kNextTrack:
      return now.can_go_next ? "" : "There is no next song.";
    case kPreviousTrack:
      return now.can_go_previous ? "" : "There is no previous song.";
    case kPause:
    case kStop:
    case kStopAfterTrack:
      return now.status == kStopped ? "Nothing is playing." : "";
    case kPlay: {
      // Tallow's own player goes to the previous song whenever it has songs.
      const bool is_empty =
          now.kind == PlayerKind::kTallowPlayer && now.status == kStopped && !now.can_go_previous;
      return is_empty ? "The player has no songs. Select songs, and choose Play Selected Songs."
                      : "";
    }
    default:
      return {};
  }
}

}  // namespace tallow

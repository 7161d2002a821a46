// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_commands.h"

namespace tallow {

std::optional<PlayerCommand> PlayerCommandOf(FrameCommand command) {
  switch (command) {
    case FrameCommand::kNextTrack:
      return kNextTrack;
    case FrameCommand::kPreviousTrack:
      return kPreviousTrack;
    case FrameCommand::kPause:
      return kPause;
    case FrameCommand::kPlay:
      return kPlay;
    case FrameCommand::kStop:
      return kStop;
    case FrameCommand::kStopAfterTrack:
      return kStopAfterTrack;
    case FrameCommand::kCloseWinAmp:
      return kClosePlayer;
    default:
      return std::nullopt;
  }
}

}  // namespace tallow

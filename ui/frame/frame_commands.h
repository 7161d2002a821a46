// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "player/player_messages.h"

namespace tallow {

/// The commands of the frame window's menus and toolbar, without the recent files.
enum class FrameCommand {
  kNew,
  kOpen,
  kClose,
  kSave,
  kSaveAs,
  kExit,
  kUndo,
  kRedo,
  kCut,
  kCopy,
  kPaste,
  kDelete,
  kFind,
  kFindField,
  kAddFolderToRoot,
  kAddFolderToSelectedFolder,
  kNewSongsNormalLocations,
  kNewSongsWholeComputerSearch,
  kPlaySelectedSongs,
  kPlayAllSongsInFolder,
  kNextTrack,
  kPreviousTrack,
  kPause,
  kPlay,
  kStop,
  kStopAfterTrack,
  kCloseWinAmp,
  kChangeBackgroundPicture,
  kCascade,
  kTile,
  kArrangeIcons,
  kPreferences,
  kWhereMyMusicIs,
  kFileAgainByTags,
  kPlayerBar,
  kPlayerPanel,
  kShowPlayingSong,
  kQueue,
  kHelp,
  kTip,
  kAbout,
};

/// The command for the player that a command of the menus stands for; no value for the others.
std::optional<PlayerCommand> PlayerCommandOf(FrameCommand command);

}  // namespace tallow

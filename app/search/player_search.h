// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "app/search/drive_list.h"

namespace tallow {

// Tallow's own player lies beside the program: "tallow-player.exe" on Windows, "tallow-player" on
// Linux. Another place may hold it on Linux; on Windows another player may be used, "winamp.exe".
// Searches ignore the letter case of these names.

/// The file name of the player that is searched for on disks.
std::string_view PlayerProgramName();

/// The file name of Tallow's own player.
std::string_view OwnPlayerName();

/// Tallow's own player beside the program, as stored in the settings; empty when it is not there.
std::string FindOwnPlayer();

/// The player's path as stored in the settings, for a file with the player's name: in lower case on
/// Windows, whose file systems ignore case. Empty when the file is not executable.
std::string PlayerAt(const std::string& path);

/// The player's path in one folder; empty when the folder does not contain the player.
/// \param name PlayerProgramName() or OwnPlayerName()
std::string PlayerIn(const std::string& folder, std::string_view name = PlayerProgramName());

/// How to install the player where no installer can be run, in whole sentences.
std::string_view HowToInstallPlayer();

/// Looks for a player where no disk search is needed: beside the program; then on Linux in the
/// folders of PATH, on Windows in the usual places of Winamp. Empty when not found.
std::string FindPlayerNearby();

/// Looks for the player in the folders of PATH, without relative folders; nowhere on Windows.
std::string FindPlayerOnPath();

/// The full path, as stored in the settings, of the first player in the tree below a root; empty
/// when not found. Links to folders and junctions are not followed.
///
/// \param go_on called after each folder is read, on several threads; returns whether to continue;
///              may be empty
std::string FindWinampUnder(const std::string& root, const DriveList& drives,
                            const std::function<bool()>& go_on = {});

}  // namespace tallow

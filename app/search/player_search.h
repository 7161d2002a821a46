// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "app/search/drive_list.h"

namespace tallow {

// The name of the player's program depends on the platform: "winamp.exe" on Windows,
// "tallow-player" on Linux. The search ignores its letter case.

/// The file name of the player's program.
std::string_view PlayerProgramName();

/// The player's path as stored in the settings, for a file with the player's name: in lower case on
/// Windows, whose file systems ignore case. Empty when the file is not executable.
std::string PlayerAt(const std::string& path);

/// The player's path in one folder; empty when the folder does not contain the player.
std::string PlayerIn(const std::string& folder);

/// How to install the player where no installer can be run, in whole sentences.
std::string_view HowToInstallPlayer();

/// Looks for the player where no disk search is needed: on Linux beside the program, then in the
/// folders of PATH; nowhere on Windows. Empty when not found.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "app/drive_list.h"

namespace tallow {

// Which program is the player differs by platform: "winamp.exe" on Windows, "tallow-player" on
// Linux. Its name matches in any letter case.

/// The name of the player's program.
std::string_view PlayerProgramName();

/// How a user comes by the player where no installer of it can be run, as whole sentences.
std::string_view HowToInstallPlayer();

/// The player where it can be without a search of a disk: on Linux beside the program, then in the
/// folders of PATH; nowhere on Windows. Empty when it is not there.
std::string FindPlayerNearby();

/// The player in the folders of PATH, relative ones left out; nowhere on Windows.
std::string FindPlayerOnPath();

/// The full path of the first player in the tree below a root; empty when there is none. In lower
/// case on Windows, whose file systems ignore case.
std::string FindWinampUnder(const std::string& root, const DriveList& drives);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "app/search/drive_list.h"

namespace tallow {

// Which program is the player differs by platform: "winamp.exe" on Windows, "tallow-player" on
// Linux. Its name matches in any letter case.

/// The name of the player's program.
std::string_view PlayerProgramName();

/// The player's path as it is stored, for a file of its name: in lower case on Windows, whose file systems
/// ignore case. Empty when it is no program that can be run.
std::string PlayerAt(const std::string& path);

/// The player in one folder; empty when it is not there.
std::string PlayerIn(const std::string& folder);

/// How a user comes by the player where no installer of it can be run, as whole sentences.
std::string_view HowToInstallPlayer();

/// The player where it can be without a search of a disk: on Linux beside the program, then in the
/// folders of PATH; nowhere on Windows. Empty when it is not there.
std::string FindPlayerNearby();

/// The player in the folders of PATH, relative ones left out; nowhere on Windows.
std::string FindPlayerOnPath();

/// The full path of the first player in the tree below a root, as it is stored; empty when there is none.
/// Links to folders and junctions are not followed.
///
/// \param go_on asked after each folder is read whether to go on; may be empty
std::string FindWinampUnder(const std::string& root, const DriveList& drives,
                            const std::function<bool()>& go_on = {});

}  // namespace tallow

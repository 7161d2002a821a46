// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "library/drive_timeouts.h"
#include "library/folder_scan.h"
#include "library/switches.h"

namespace tallow {

/// Whether a walk may enter a folder below the one where it began.
using MayEnterFolder = std::function<bool(const std::string& folder)>;

/// Allows all folders except mount points where the system shows its own state.
MayEnterFolder EnterAllVolumes();

/// The folders with songs in a folder, at any depth, sorted by their paths; only the folder itself
/// when there are none. Each ends in a separator.
///
/// Links to folders are followed unless they lead to a folder above, or to one that was walked
/// already. Folders that searches skip (IsExcludedFolder) are left out, and so is a folder below
/// whose disk does not respond.
///
/// \param switches what counts as a song
/// \param go_on    called with each folder, and repeatedly while its disk does not respond; returns
///                 whether to continue. May be empty: a disk may then take any time
/// \param problems gets a sentence for each folder that did not respond
/// \param max_wait how long a folder may take to respond
std::vector<std::string> FoldersWithSongs(const std::string& folder, const Switches& switches,
                                          const MayEnterFolder& may_enter, const GoOn& go_on,
                                          std::vector<std::string>& problems,
                                          std::chrono::milliseconds max_wait = kMaxWait);

}  // namespace tallow

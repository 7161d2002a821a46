// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

#include "library/scan_report.h"

namespace tallow {

class Jukebox;
class JukeboxClipboard;

/// Replaces the old numbers of songs that have returned by their new ones, in the folders and undo
/// steps of jukeboxes and on the clipboard.
void RenumberReturnedSongs(const std::vector<ReturnedSong>& returned,
                           std::span<Jukebox* const> jukeboxes, JukeboxClipboard& clipboard);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

#include "library/scan_report.h"

namespace tallow {

class Jukebox;
class JukeboxClipboard;

/// Lets jukeboxes and the clipboard mean the songs that came back by the numbers that they have now: in
/// folders, in steps that can be undone, and in what was cut or copied.
void FollowReturnedSongs(const std::vector<ReturnedSong>& returned,
                         std::span<Jukebox* const> jukeboxes, JukeboxClipboard& clipboard);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

#include "library/scan_report.h"

namespace tallow {

class Jukebox;
class Tallow;

/// Replaces the old numbers of songs that have returned by their new ones, in jukeboxes, on the
/// clipboard and among the songs that the player has.
void FollowReturnedSongs(const std::vector<ReturnedSong>& returned,
                         std::span<Jukebox* const> jukeboxes, Tallow& tallow);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "app/playing/saved_queue.h"
#include "player/reach_player.h"
#include "player/tallow_player.h"

namespace tallow {

class HandedOverSongs;
class Tallow;
class clsMain;

/// The songs of entries that were handed over, as the file of the queue holds them.
/// \param entries  the current entry and those that follow
/// \param position in the current one, in ms; negative when unknown
SavedSongs SongsToSave(const Tallow& tallow, std::span<const std::uint64_t> entries,
                       std::int64_t position);

/// The songs of a saved queue that the library has.
struct RestoredSongs {
  std::vector<std::int32_t> records;
  std::vector<std::string> paths;  ///< of the records
  std::int64_t position = 0;       ///< in the first, in ms
};

/// Songs that are missing, away or set aside are left out.
RestoredSongs SongsToRestore(const clsMain& library, const SavedSongs& saved);

/// Adds songs to the list of a player that has none, and makes the first one the current song,
/// paused.
/// \param record receives the songs
/// \param go_on  called after each request; returns false to stop. May be empty
void CueSongs(TallowPlayer& player, const RestoredSongs& songs, HandedOverSongs& record,
              const WhileStarting& go_on);

}  // namespace tallow

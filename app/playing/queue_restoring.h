// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "app/playing/player_report.h"
#include "app/playing/saved_queue.h"
#include "player/playfile.h"
#include "player/tallow_player.h"

namespace tallow {

class HandedOverSongs;
class Tallow;
class clsMain;

/// The songs of entries that were handed over, as the file of the queue holds them.
/// \param entries the current entry and those that follow
/// \param state   of the player
SavedSongs SongsToSave(const Tallow& tallow, std::span<const std::uint64_t> entries,
                       const PlayerReport& state);

/// The songs of a saved queue that the library has.
struct RestoredSongs {
  std::vector<std::int32_t> records;
  std::vector<std::string> paths;  ///< of the records
  std::int64_t position = 0;       ///< in the first, in ms
};

/// Songs that are missing, away or set aside are left out.
RestoredSongs SongsToRestore(const clsMain& library, const SavedSongs& saved);

/// The songs of a player that has run on since its queue was saved, by ascending entry; none when
/// its list is another one, as far as can be told.
/// \param entries the current entry and those that follow
/// \param list    number of songs in the player's list
std::vector<HandedOverSong> SongsOfEntries(const clsMain& library, const SavedSongs& saved,
                                           std::span<const std::uint64_t> entries,
                                           std::size_t list);

/// Adds songs to the list of a player that has none, and makes the first one the current song,
/// paused. They will play in this order, also when the player is shuffled.
/// \param shuffled whether the player plays in random order
/// \param record   receives the songs
/// \param progress called after each request; returns false to stop. May be empty
/// \returns whether the player has all songs
bool CueSongs(TallowPlayer& player, const RestoredSongs& songs, bool shuffled,
              HandedOverSongs& record, const HandOverProgress& progress);

}  // namespace tallow

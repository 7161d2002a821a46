// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "library/song_table.h"
#include "library/switches.h"

namespace tallow {

/// Whether a file name is that of a song only in another style, because of its format.
bool IsOfOtherFormat(std::string_view name, const Switches& switches);

/// Determines for every song whether the switches set it aside (SongTable::IsSetAside).
///
/// A song that is set aside is in the library file and keeps its number, rank and jukebox entries,
/// but it is not listed, filed or played, and it keeps its row even if its file is gone. Songs are
/// set aside by rule, never by a stored mark, so switching to and fro loses nothing:
///
/// - Unless the switches have more formats, songs of other formats than MP3 are set aside.
/// - Unless a song is a path, of the remaining songs with one file name all but the one with the
///   lowest record number are set aside. Missing songs do not count, away songs do.
///
/// Cost: O(rows).
void SetAside(SongTable& table, const Switches& switches);

/// Of songs whose files are gone, the rows to blank: all except those that stay set aside. A song
/// that is set aside is to be blanked, too, if all songs before which it was set aside are gone.
///
/// \param missing rows; the result has them in the same order
/// Cost: O(rows) if one of them is set aside, else O(missing rows).
std::vector<std::int32_t> RowsToBlank(const SongTable& table, const Switches& switches,
                                      std::vector<std::int32_t> missing);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/song_table.h"
#include "library/switches.h"

namespace tallow {

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

}  // namespace tallow

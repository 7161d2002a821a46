// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/song_table.h"

namespace tallow {

/// Takes out every song whose name another present song has, and cuts the table to what is left.
///
/// The rule is a walk over neighbours in the order of names (case ignored), repeated until a walk
/// finds nothing: of two neighbours that are both present and whose names are the same (equal, or
/// the first one matches the second one as a wildcard pattern, case counting), the one with the
/// higher record number goes; of equal numbers the later one goes. Folders do not matter. Which
/// rows are neighbours among equal names depends on the quicksort of SortCity, and so does the
/// order in which the rows are left: both come out here as sorting the whole table over and over
/// would give them. The names are ranked once, and integers are sorted instead of rows.
///
/// The rows end in the order of a descending sort by name.
///
/// \throws TypeMismatchError, OverflowError when two songs of one name are met of which one has no
///         number; what was decided up to then is carried out
void RemoveDuplicates(SongTable& table);

}  // namespace tallow

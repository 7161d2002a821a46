// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/song_table.h"

namespace tallow {

/// A file removed from the table because a song has the same name.
struct LeftOutFile {
  std::string path;
  std::string stands_for_it;  ///< path of that song
};

/// Removes every added song that is a copy of a song with a lower record number.
///
/// Two songs are compared when both are present and their names are adjacent in name order
/// (ignoring case): either the names are equal in that order, or no third name lies between them.
/// They are copies when the names are equal including case, or when the name that comes first
/// matches the other name as a wildcard pattern (see SameName); for names that differ only in case,
/// when either matches the other. Of two copies, the one with the higher record number is removed;
/// with equal numbers, the later row. Folders are ignored. The comparison is repeated until nothing
/// is removed, because removed rows make other rows adjacent.
///
/// The rows of a run (names equal in name order) are all compared with each other, and with all
/// rows of the next run. So the result does not depend on how the sort orders equal keys.
///
/// Rows up to the old count are never removed, even without a name. Other rows without a name are
/// always removed.
///
/// Cost: ranking the names, plus O(rows) when no name has wildcards.
///
/// \param old_count number of rows before rows were added
/// \param is_compared whether a row is compared, one element per row, element 0 being row 1
/// \returns the removed files that are not themselves songs in the table
/// \throws TypeMismatchError, OverflowError when one of two copies has an invalid record number;
/// rows marked before that are still removed
std::vector<LeftOutFile> RemoveDuplicates(SongTable& table, std::int32_t old_count,
                                          const std::vector<char>& is_compared);

}  // namespace tallow

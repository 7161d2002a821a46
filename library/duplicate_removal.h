// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/song_table.h"

namespace tallow {

/// A file that was taken out of the table because of a song that has its name.
struct LeftOutFile {
  std::string path;
  std::string stands_for_it;  ///< path of the song
};

/// Takes out every added song that is a copy of a song with a lower record number.
///
/// Two songs are compared when both are present and their names stand beside each other in the order of
/// names (case ignored): either the names are equal in that order, or no third name lies between. They
/// are copies when the names are equal with case, or when the one that comes first matches the other one
/// as a wildcard pattern (see SameName); of names that are equal but for case, when either matches the
/// other. Of two copies the one with the higher record number goes; of equal numbers the later row goes.
/// Folders do not matter. This is repeated until nothing goes, as rows that go let others stand beside
/// each other.
///
/// Names that are equal in the order of names (a run) are compared each with each, and with each of the
/// next run. So the result does not depend on what a sort does with equal keys.
///
/// Rows up to the old count are never taken out, not even those without a name, which otherwise go.
///
/// Cost: ranking the names, and O(rows) more where no name has wildcards.
///
/// \param old_count how many rows there were before rows were added
/// \param takes_part whether a row is present for this purpose, one element a row, element 0 being row 1
/// \returns the files that went because of a song in another place
/// \throws TypeMismatchError, OverflowError when two copies are met of which one has no number; what was
///         decided up to then is carried out
std::vector<LeftOutFile> RemoveDuplicates(SongTable& table, std::int32_t old_count,
                                          const std::vector<char>& takes_part);

}  // namespace tallow

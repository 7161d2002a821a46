// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "jukebox/sorting.h"

namespace tallow {

class Folder;
class Jukebox;
class clsMain;

/// Which folders FileAgainByTags empties and fills.
enum class FileAgainScope {
  kAll,    ///< "Artist", "Year", "Genre", "Decades" and the automatic "Album"
  kAlbum,  ///< only the automatic "Album", which is added where there is none
  /// As kAll. The sample jukebox gets the automatic "Album" if it has none and the switch `albums`
  /// is on, as a new sample jukebox does.
  kStyle,
};

/// The songs of a folder and of all folders below it, each once: record numbers, ascending.
std::vector<std::int32_t> SongsIn(const Folder& folder);

/// All songs that the library can read now: record numbers, ascending.
std::vector<std::int32_t> SongsThatArePresent(const clsMain& library);

/// Files songs again by their present tags and the present switches of the library. Takes them out
/// of "Artist", "Year", "Genre", "Decades" and the automatic "Album", and out of all folders below
/// these, and files them as FillAutomaticFolders does. Folders below these that are empty because
/// of that are removed, except those of the classic decades. With the switch `natural_order`, the
/// folders directly below these are sorted.
///
/// "All Songs", "New", what lies below them, and all other folders stay as they are. Songs that are
/// missing, away, set aside, on a drive that does not answer, unreadable or not in a jukebox's "All
/// Songs" stay where they are. In each jukebox that changes, this is one step that can be undone.
///
/// \param records   record numbers; invalid ones are ignored
/// \param windows   the open jukeboxes
/// \param read_tags see FillAutomaticFolders
/// \param progress  called with the number of songs whose tags have been read, and with the number
///                  of songs. When it cancels, the songs read so far are filed again completely,
///                  and the others stay where they are
/// \returns false when `progress` cancelled
/// \throws FilingError after everything else is done, see FillAutomaticFolders
bool FileAgainByTags(std::span<const std::int32_t> records, clsMain& library,
                     std::span<Jukebox* const> windows, const ReadTags& read_tags = {},
                     const FilingProgress& progress = {},
                     FileAgainScope scope = FileAgainScope::kAll);

}  // namespace tallow

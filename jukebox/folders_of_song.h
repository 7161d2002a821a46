// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

namespace tallow {

class Folder;
class Jukebox;
class clsMain;

/// Where a folder holds a song.
struct FolderOfSong {
  const Folder* folder = nullptr;  ///< null for none
  int index = -1;                  ///< of the first entry of the song in the folder, from 0
};

/// Returns the folders of a jukebox that hold a song, in the order of the tree. Folders that are
/// set aside, and what lies below them, are left out.
///
/// Cost: one pass over all entries of the jukebox.
std::vector<FolderOfSong> FoldersOfSong(const Jukebox& jukebox, std::int32_t record,
                                        const clsMain& library);

/// Returns the folder in which a song of a list of hits is best shown: the folder shown, if it has
/// the song, else the first folder in the order of the tree; "All Songs" and "New" come last,
/// because every other folder says more about the song.
FolderOfSong FolderToShowSongIn(const Jukebox& jukebox, std::int32_t record,
                                const clsMain& library);

/// Returns the songs that are shown of a folder and of all folders below it, each once, in the
/// order of the tree.
/// \returns record numbers
std::vector<std::int32_t> SongsBelow(const Folder& folder, const clsMain& library);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "app/long_work.h"
#include "jukebox/file_again.h"

namespace tallow {

class Jukebox;
class Tallow;
class clsMain;

/// The songs that the command "File Again By Tags" acts on: the selected songs of the list, else
/// those of its folder and of all folders below it, else, when no folder is on show, all songs of
/// the library.
///
/// \param selected positions of the selected songs in Jukebox::ListFolder(), from 0
/// \returns record numbers
std::vector<std::int32_t> SongsToFileAgain(const Jukebox& jukebox, const std::vector<int>& selected,
                                           const clsMain& library);

/// The result of FileSongsAgain.
struct FiledAgain {
  bool is_complete = true;  ///< false: the user cancelled
  /// What was done, in one sentence; then one for each problem.
  std::vector<std::string> lines;
};

/// Files songs again in open jukeboxes, with progress and Cancel, see FileAgainByTags.
///
/// \param songs   record numbers
/// \param windows the open jukeboxes
/// \param begin   begins long work; may be empty
FiledAgain FileSongsAgain(std::span<const std::int32_t> songs, Tallow& tallow,
                          std::span<Jukebox* const> windows, const BeginLongWork& begin,
                          FileAgainScope scope = FileAgainScope::kAll);

/// Adds the automatic folder "Album" to a jukebox that has none, and files all songs of the jukebox
/// into it.
FiledAgain AddAlbumFolder(Jukebox& jukebox, Tallow& tallow, const BeginLongWork& begin);

/// Whether "Add Album Folder" is offered for a jukebox: with the switch `albums`, while the jukebox
/// has no automatic "Album".
bool OffersAlbumFolder(const Jukebox& jukebox, const clsMain& library);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "jukebox/folder_tree.h"
#include "library/folder_scan.h"
#include "library/scan_report.h"

namespace tallow {

class clsMain;

/// The result of adding files to the library.
struct AddedFiles {
  /// An entry for each file that the library contains now, in the order of the files.
  std::vector<SongEntry> songs;
  bool has_new_songs = false;
  /// Songs that came back. Every jukebox has to update its references to them before songs are
  /// filed into it, see RenumberReturnedSongs.
  std::vector<ReturnedSong> returned;
  ScanReport report;
  /// One sentence for each file that was left out, and for a library that could not be saved.
  std::vector<std::string> problems;
};

/// Replaces a dropped folder by folders; of each, the MP3 files directly in it are added.
///
/// \param go_on    returns whether to continue
/// \param problems gets a sentence for each folder that was left out
using ExpandFolder = std::function<std::vector<std::string>(
    const std::string& folder, const GoOn& go_on, std::vector<std::string>& problems)>;

/// Adds MP3 files to the library with the rules of a search: a file with the same name as a present
/// song is that song; any other file becomes a new song of rank "2". A moved song is detected here:
/// the song is found to be missing, and the new file is recognized as the same song. Later searches
/// include the folders of the new songs. The library is saved once.
///
/// \param paths paths of files, and of folders; of a folder, the MP3 files directly in it are added
/// \param go_on called with each file before the file is added, and repeatedly while its disk does
///              not respond; returns whether to continue. Files added before a cancel are kept. May
///              be empty
/// \param expand called for each folder; empty: a folder stays as it is
AddedFiles AddFiles(std::span<const std::string> paths, clsMain& library, const GoOn& go_on = {},
                    const ExpandFolder& expand = {});

}  // namespace tallow

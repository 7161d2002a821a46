// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <vector>

#include "jukebox/folder_tree.h"
#include "library/folder_scan.h"
#include "library/scan_report.h"

namespace tallow {

class clsMain;

/// What became of files that were to be taken into the library.
struct TakenFiles {
  /// An entry for each file that the library holds now, in the files' order.
  std::vector<SongEntry> songs;
  bool has_new_songs = false;
  /// Songs that came back; every jukebox has to follow them before it is filed into, see
  /// FollowReturnedSongs.
  std::vector<ReturnedSong> returned;
  ScanReport report;
  /// Why the others were left out, a sentence each, and why the library could not be saved.
  std::vector<std::string> problems;
};

/// Takes MP3 files into the library, as a search does that finds them: a file whose name a song that is
/// there has already counts as that song, others become new songs of rank "2". A song whose file has been
/// moved is found to be missing here, and so is known again. The folders of the new
/// songs are among those that are looked into from then on. The library is saved once.
///
/// \param paths of files, and of folders, of which the MP3 files directly in them are taken
/// \param go_on is told each file before it is taken, and again and again while its disk does not answer; says
///              whether to go on. What was taken until then is kept. May be empty
TakenFiles TakeFiles(std::span<const std::string> paths, clsMain& library, const GoOn& go_on = {});

}  // namespace tallow

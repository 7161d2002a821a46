// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/search/search_progress.h"
#include "app/window_interfaces.h"

namespace tallow {

class Jukebox;
class Tallow;

/// The windows that the commands for new songs use.
class NewSongsWindows : public JukeboxWindows {
 public:
  /// Shows the window with the progress of the search, not modal, and redraws it at once.
  virtual SearchProgress& ShowSearching() = 0;
  virtual void UnloadSearching() = 0;
  /// A disabled frame window accepts neither clicks nor keys.
  virtual void EnableFrame(bool enabled) = 0;
  /// The active jukebox; null for none.
  virtual Jukebox* ActiveJukebox() = 0;
  /// Notice of the result of a search; a click on the notice lists the files that were left out and
  /// the songs that are away.
  virtual void NoticeScan(const std::vector<std::string>& lines) = 0;
};

/// Where to search for new songs.
enum class NewSongsPlace {
  kKnownFolders,   ///< the folders in which songs were found before
  kWholeComputer,  ///< every fixed disk
};

/// Which jukeboxes new songs are filed in.
enum class NewSongsTarget {
  kActiveJukebox,
  kOpenJukeboxes,  ///< all of them get all songs that they lack
};

/// The result of a search for new songs.
struct NewSongsResult {
  bool is_complete = true;         ///< false: the user cancelled, or the search failed
  std::vector<std::string> lines;  ///< what NoticeScan got
  std::size_t counts = 0;  ///< index in lines of the one that begins with TextOf(report, true)
  ScanReport report;
};

/// Searches every fixed disk for songs and adds them to the library; returns false when the search
/// was cancelled.
using SearchAllDrives = std::function<bool(SearchProgress& progress)>;

/// Searches for new songs and for songs whose files are gone, and files the new songs. Reports at
/// the end what was found.
///
/// The frame window is disabled during the search, and always enabled again, also after a failure.
/// A cancel (SearchCancelled) stops after the current folder, or when searching the whole computer
/// after the current drive; the folders searched until then are complete. A library that was never
/// filled is filled from the whole computer.
NewSongsResult BringInNewSongs(NewSongsPlace place, Tallow& tallow, NewSongsWindows& windows,
                               const SearchAllDrives& search_all_drives,
                               NewSongsTarget target = NewSongsTarget::kActiveJukebox);

}  // namespace tallow

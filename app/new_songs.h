// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <vector>

#include "app/search/search_progress.h"
#include "util/message.h"

namespace tallow {

class Jukebox;
class Tallow;

/// What bringing in new songs needs of windows.
class NewSongsWindows {
 public:
  virtual ~NewSongsWindows() = default;
  /// Shows the window that tells of the search, not modal, and redraws it at once.
  virtual SearchProgress& ShowSearching() = 0;
  virtual void UnloadSearching() = 0;
  /// A frame window that is disabled takes neither clicks nor keys.
  virtual void EnableFrame(bool enabled) = 0;
  /// The active jukebox; null for none.
  virtual Jukebox* ActiveJukebox() = 0;
  /// The open jukeboxes, in the order they were opened.
  virtual std::span<Jukebox* const> AllJukeboxes() = 0;
  virtual MessageAnswer Show(const Message& message) = 0;
  /// Says something that does not stop anything, where it does not get in the way.
  virtual void Notice(const std::vector<std::string>& lines) = 0;
  /// Notice of what a search came to; a click on it shows which files were left out, and what is away.
  virtual void NoticeScan(const std::vector<std::string>& lines) = 0;
};

/// Where new songs are looked for.
enum class NewSongsPlace {
  kUsualFolders,   ///< the folders that songs were found in before
  kWholeComputer,  ///< every fixed disk
};

/// Looks for songs that are new, and for songs whose files have gone, and files the new ones in the
/// active jukebox. Says in the end what was found.
///
/// The frame window is disabled meanwhile, and enabled again whatever happens. A cancel (SearchCancelled)
/// stops after the folder, or on the whole computer after the drive; what was searched is complete then.
/// A library that was never filled is filled from the whole computer.
void BringInNewSongs(NewSongsPlace place, Tallow& tallow, NewSongsWindows& windows);

}  // namespace tallow

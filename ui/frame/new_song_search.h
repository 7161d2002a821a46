// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/new_songs.h"
#include "library/scan_report.h"
#include "ui/frame/frame_windows_base.h"

namespace tallow {

class DriveSearches;
class FrameFindings;
class frmSearching;

/// The frame window's search for new songs, with its progress window. Also updates the jukeboxes
/// when songs are found again.
class NewSongSearch : private FrameWindows<NewSongsWindows> {
 public:
  /// \param tallow, searches, jukeboxes, messages, busy, findings have to outlive this object
  /// \param notice_scan shows the result of a search
  NewSongSearch(Tallow& tallow, DriveSearches& searches, JukeboxArea& jukeboxes,
                FrameMessages& messages, BusyFrame& busy, FrameFindings& findings,
                std::function<void(const std::vector<std::string>&)> notice_scan);
  ~NewSongSearch() override;

  /// Searches for new songs, see BringInNewSongs; does nothing during a search.
  NewSongsResult BringIn(NewSongsPlace place,
                         NewSongsTarget target = NewSongsTarget::kActiveJukebox);
  /// Renumbers songs that were found again in all jukeboxes.
  void FollowSongs(const std::vector<ReturnedSong>& songs);

 private:
  SearchProgress& ShowSearching() override;
  void UnloadSearching() override;
  void EnableFrame(bool enabled) override;
  Jukebox* ActiveJukebox() override;
  void NoticeScan(const std::vector<std::string>& lines) override { notice_scan_(lines); }

  Tallow& tallow_;
  DriveSearches& searches_;
  FrameFindings& findings_;
  std::function<void(const std::vector<std::string>&)> notice_scan_;
  std::unique_ptr<frmSearching> searching_;  ///< during a search
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/search/player_search.h"

namespace tallow {

class DriveList;
class SearchProgress;
class Tallow;

/// The searches of the whole computer that commands run after start-up. Tests replace them by their
/// own.
class DriveSearches {
 public:
  /// \param tallow, drives must outlive this object
  /// \param nearby finds the player without searching a disk, see FindPlayerNearby
  DriveSearches(Tallow& tallow, const DriveList& drives,
                std::function<std::string()> nearby = FindPlayerNearby);
  DriveSearches(const DriveSearches&) = delete;
  DriveSearches& operator=(const DriveSearches&) = delete;
  virtual ~DriveSearches();

  /// The drives that are there now, or those that were given.
  virtual std::shared_ptr<const DriveList> DrivesNow() const;

  /// Searches the places that are ticked for songs, by default all fixed disks, see
  /// FileSearch::SearchDrivesForMp3s.
  /// \returns false when the search was cancelled
  virtual bool SearchForSongs(SearchProgress& progress);

  /// Searches for the player, see WinampSearch, and sets Tallow::player_path.
  /// \returns false when the search was cancelled
  virtual bool SearchForPlayer(SearchProgress& progress);

  /// Searches the fixed disks for a player, even when one is known or lies beside the program, and
  /// stores nothing.
  /// \returns the full path; empty when there is none; no value when the search was cancelled
  virtual std::optional<std::string> SearchDisksForPlayer(SearchProgress& progress);

 private:
  Tallow& tallow_;
  const DriveList& drives_;
  std::function<std::string()> nearby_;
};

}  // namespace tallow

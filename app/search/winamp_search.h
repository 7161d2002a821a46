// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/search/drive_questions.h"
#include "app/search/player_search.h"

namespace tallow {

/// Finds the player on the drives, with a window that shows the progress.
class WinampSearch {
 public:
  /// \param tallow, drives must outlive this object
  /// \param progress may be null when there is no window to report to
  /// \param nearby   finds the player without searching a disk, see FindPlayerNearby
  WinampSearch(Tallow& tallow, const DriveList& drives, SearchProgress* progress,
               std::function<std::string()> nearby = FindPlayerNearby);

  /// The player search: beside the program and on the PATH where the platform has one, then in the
  /// tree of each fixed disk. The first match is stored in the settings, which are saved; without a
  /// match, or after a cancel, nothing is stored.
  /// \returns false when the search was cancelled
  bool SearchDrivesForWinamp();

  /// The same search without storing anything.
  /// \returns the full path; empty when there is none; no value when the search was cancelled
  std::optional<std::string> Find();

 private:
  std::string FindUnder(const std::string& root);
  void Store(const std::string& path);

  Tallow& tallow_;
  const DriveList& drives_;
  std::function<std::string()> nearby_;
  DriveQuestions questions_;
};

}  // namespace tallow

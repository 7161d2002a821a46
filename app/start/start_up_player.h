// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

namespace tallow {

class DriveList;
class StartUpSettings;
class StartUpWait;
class StartUpWindows;
class Tallow;

/// Finds the player during a start.
class StartUpPlayer {
 public:
  /// \param tallow, drives, windows, settings, wait must outlive this object
  /// \param nearby finds the player without searching a disk
  StartUpPlayer(Tallow& tallow, const DriveList& drives, StartUpWindows& windows,
                StartUpSettings& settings, StartUpWait& wait, std::function<std::string()> nearby);

  /// Searches for the player unless the settings name one that exists. A search that the user
  /// cancels is left to the next play command (Tallow::player_search_is_pending).
  void Find();

  /// Sets the player's path of the session. Clears the setting when that file is missing.
  void SetPath();

 private:
  bool Search();

  Tallow& tallow_;
  const DriveList& drives_;
  StartUpWindows& windows_;
  StartUpSettings& settings_;
  StartUpWait& wait_;
  std::function<std::string()> nearby_;
};

}  // namespace tallow

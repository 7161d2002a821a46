// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "app/runtime_file.h"
#include "app/search/drive_list.h"
#include "app/search/player_search.h"
#include "app/start/start_up_jukeboxes.h"
#include "app/start/start_up_library.h"
#include "app/start/start_up_notices.h"
#include "app/start/start_up_player.h"
#include "app/start/start_up_settings.h"
#include "app/start/start_up_wait.h"
#include "app/tallow.h"

namespace tallow {

class StartUpWindows;

/// The program's start-up: runs its steps in their order.
class System {
 public:
  /// \param nearby finds the player without searching a disk
  System(Tallow& tallow, const DriveList& drives, StartUpWindows& windows,
         std::function<std::string()> nearby = FindPlayerNearby);
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  /// Runs the whole start-up: folders, settings, player, library, first jukebox.
  ///
  /// An error that ends the start-up is reported with the file, folder or drive that it concerns
  /// and with what to do. Where the program can continue by rebuilding damaged data, it offers to
  /// do so, and keeps the damaged file with ".bak" appended to its name.
  /// \returns false when the program is to exit; no window is open then
  bool Main(const RuntimeFile& runtime_file);

 private:
  bool CheckRuntimeFile(const RuntimeFile& file);
  void CreateDataFolders();
  /// The steps of a start between the splash window and the tip.
  bool LoadAndOpen();
  void Notice(const ScanReport& report);

  Tallow& tallow_;
  StartUpWindows& windows_;
  StartUpNotices notices_;
  StartUpWait wait_;
  StartUpSettings settings_;
  StartUpPlayer player_;
  StartUpLibrary library_;
  StartUpJukeboxes jukeboxes_;
};

}  // namespace tallow

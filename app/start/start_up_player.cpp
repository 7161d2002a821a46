// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/start_up_player.h"

#include <utility>

#include "app/search/winamp_search.h"
#include "app/start/start_up_settings.h"
#include "app/start/start_up_wait.h"
#include "app/start/start_up_windows.h"
#include "app/tallow.h"
#include "util/file_system.h"

namespace tallow {

StartUpPlayer::StartUpPlayer(Tallow& tallow, const DriveList& drives, StartUpWindows& windows,
                             StartUpSettings& settings, StartUpWait& wait,
                             std::function<std::string()> nearby)
    : tallow_(tallow),
      drives_(drives),
      windows_(windows),
      settings_(settings),
      wait_(wait),
      nearby_(std::move(nearby)) {}

void StartUpPlayer::Find() {
  const std::string& player = tallow_.settings.LocOfWinAmpExe();
  // A player on a share that does not respond may still exist.
  if (!player.empty() && wait_.CheckPath(player).presence == FilePresence::kThere) return;
  if (wait_.IsUnresponsive(player)) return;
  // The path may be damaged, and other settings with it.
  if (!player.empty()) settings_.BackUp();
  tallow_.player_search_is_pending = !Search();
}

bool StartUpPlayer::Search() {
  windows_.ShowCancelButton(true);
  const bool is_finished =
      WinampSearch(tallow_, drives_, &windows_.Splash(), nearby_).SearchDrivesForWinamp();
  windows_.ShowCancelButton(false);
  return is_finished;
}

void StartUpPlayer::SetPath() {
  clsINI& settings = tallow_.settings;
  const std::string path = settings.LocOfWinAmpExe();
  const bool is_gone = !wait_.IsUnresponsive(path) &&
                       (path.empty() || CheckFile(path).presence == FilePresence::kNotThere);
  if (is_gone) {
    settings.LocOfWinAmpExe({});
    tallow_.SaveSettings();
  }
  tallow_.player_path = settings.LocOfWinAmpExe();
}

}  // namespace tallow

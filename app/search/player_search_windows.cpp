// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/player_search.h"
#include "util/file_system.h"
#include "util/text.h"

namespace tallow {

std::string_view PlayerProgramName() { return "winamp.exe"; }

std::string PlayerAt(const std::string& path) {
  // The lower-case form of some letters is a different letter to the file system.
  std::string lower = ToLower(path);
  return FileExists(lower) ? lower : path;
}

std::string_view HowToInstallPlayer() { return "Install the player, winamp.exe, yourself."; }

std::string FindPlayerNearby() { return {}; }
std::string FindPlayerOnPath() { return {}; }

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <vector>

#include "app/search/player_search.h"
#include "app/search/winamp_places.h"
#include "util/file_system.h"
#include "util/text.h"

namespace tallow {

std::string_view PlayerProgramName() { return "winamp.exe"; }
std::string_view OwnPlayerName() { return "tallow-player.exe"; }

std::string PlayerAt(const std::string& path) {
  // The lower-case form of some letters is a different letter to the file system.
  std::string lower = ToLower(path);
  return FileExists(lower) ? lower : path;
}

std::string_view HowToInstallPlayer() {
  return "The player is the program tallow-player.exe, which comes with Tallow: install Tallow "
         "again, "
         "or put it beside tallow.exe. Winamp (winamp.exe) plays the songs, too.";
}

std::string FindPlayerNearby() {
  std::string found = FindOwnPlayer();
  if (!found.empty()) return found;
  const std::vector<std::string> winamps = WinampsInUsualPlaces();
  return winamps.empty() ? std::string() : winamps.front();
}

std::string FindPlayerOnPath() { return {}; }

}  // namespace tallow

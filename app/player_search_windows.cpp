// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/player_search.h"
#include "util/text.h"

namespace tallow {

std::string_view PlayerProgramName() { return "winamp.exe"; }

std::string PlayerAt(const std::string& path) { return ToLower(path); }

std::string_view HowToInstallPlayer() { return "Install the player, winamp.exe, yourself."; }

std::string FindPlayerNearby() { return {}; }
std::string FindPlayerOnPath() { return {}; }

}  // namespace tallow

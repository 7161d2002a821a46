// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

#include "app/search/player_search.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr std::string_view kPlayerName = "tallow-player";

}  // namespace

std::string_view PlayerProgramName() { return kPlayerName; }
std::string_view OwnPlayerName() { return kPlayerName; }

std::string PlayerAt(const std::string& path) {
  return faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0 ? path : std::string();
}

std::string_view HowToInstallPlayer() {
  return "The player is the program tallow-player, which comes with Tallow and needs the package "
         "libmpv2. Install that package, and put tallow-player beside Tallow or into a folder of "
         "PATH.";
}

std::string FindPlayerNearby() {
  std::string found = FindOwnPlayer();
  return found.empty() ? FindPlayerOnPath() : found;
}

std::string FindPlayerOnPath() {
  const char* const variable = std::getenv("PATH");
  std::string_view path = variable == nullptr ? std::string_view() : variable;
  while (!path.empty()) {
    const std::size_t end = path.find(':');
    const std::string_view folder = path.substr(0, end);
    if (IsAbsolutePath(folder)) {
      std::string found = PlayerIn(EnsureTrailingBackslash(folder));
      if (!found.empty()) return found;
    }
    path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
  }
  return {};
}

}  // namespace tallow

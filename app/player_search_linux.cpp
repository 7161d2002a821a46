// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "app/player_search.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/user_folders.h"

namespace tallow {
namespace {

constexpr std::string_view kPlayerName = "tallow-player";

/// The player in one folder; empty when it is not there.
std::string PlayerIn(const std::string& folder, const FolderListing& listing) {
  for (const FileEntry& file : listing.files) {
    const std::string path = folder + file.name;
    if (faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0) return path;
  }
  return {};
}

std::string PlayerIn(const std::string& folder) {
  return PlayerIn(folder, ListFolder(folder, {.pattern = kPlayerName}));
}

}  // namespace

std::string_view PlayerProgramName() { return kPlayerName; }

std::string_view HowToInstallPlayer() {
  return "The player is the program tallow-player, which comes with Tallow and needs the package "
         "libmpv2. Install that package, and put tallow-player beside Tallow or into a folder of "
         "PATH.";
}

std::string FindPlayerNearby() {
  const std::string program = ExecutablePath();
  if (!program.empty()) {
    std::string found = PlayerIn(std::string(FolderOfPath(program)));
    if (!found.empty()) return found;
  }
  return FindPlayerOnPath();
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

std::string FindWinampUnder(const std::string& root, const DriveList& drives) {
  std::vector<std::string> waiting{EnsureTrailingBackslash(root)};  // the next one is last
  while (!waiting.empty()) {
    const std::string folder = std::move(waiting.back());
    waiting.pop_back();
    const FolderListing listing = ListFolder(folder, {.pattern = kPlayerName, .subfolders = true});
    std::string found = PlayerIn(folder, listing);
    if (!found.empty()) return found;
    for (auto entry = listing.subfolders.rbegin(); entry != listing.subfolders.rend(); ++entry) {
      std::string subfolder = folder + entry->name + kSeparator;
      if (!entry->linked && !drives.IsMountPoint(subfolder))
        waiting.push_back(std::move(subfolder));
    }
  }
  return {};
}

}  // namespace tallow

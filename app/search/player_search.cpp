// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/player_search.h"

#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {
namespace {

std::string PlayerIn(const std::string& folder, const FolderListing& listing) {
  for (const FileEntry& file : listing.files) {
    std::string found = PlayerAt(folder + file.name);
    if (!found.empty()) return found;
  }
  return {};
}

}  // namespace

std::string PlayerIn(const std::string& folder) {
  return PlayerIn(folder, ListFolder(folder, {.pattern = PlayerProgramName()}));
}

// Does not use the Windows function SearchTreeForFile: it follows junctions to their parents, and
// its behaviour with paths of more than 260 characters is undefined.
std::string FindWinampUnder(const std::string& root, const DriveList& drives,
                            const std::function<bool()>& go_on) {
  std::vector<std::string> waiting{EnsureTrailingBackslash(root)};  // stack: the next folder last
  std::set<std::tuple<std::uint64_t, std::uint64_t, std::uint64_t>> visited;
  while (!waiting.empty()) {
    const std::string folder = std::move(waiting.back());
    waiting.pop_back();
    const FolderListing listing =
        ListFolder(folder, {.pattern = PlayerProgramName(), .subfolders = true});
    if (go_on && !go_on()) return {};
    // A file system without folder numbers reports 0 for every folder.
    const auto& [device, number, number_high] = listing.identity;
    if (number != 0 && !visited.emplace(device, number, number_high).second) continue;
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

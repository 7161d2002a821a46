// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/player_search.h"

#include <cstdint>
#include <memory>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "app/search/folder_reader.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/user_folders.h"

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

std::string PlayerIn(const std::string& folder, std::string_view name) {
  return PlayerIn(folder, ListFolder(folder, {.pattern = name}));
}

std::string FindOwnPlayer() {
  const std::string program = ExecutablePath();
  return program.empty() ? program : PlayerIn(std::string(FolderOfPath(program)), OwnPlayerName());
}

// Does not use the Windows function SearchTreeForFile: it follows junctions to their parents, and
// its behaviour with paths of more than 260 characters is undefined.
std::string FindWinampUnder(const std::string& root, const DriveList& drives,
                            const std::function<bool()>& go_on) {
  FolderReader reader(
      std::string(PlayerProgramName()), true,
      // A search that was ended must not use the drives any more.
      [&](const std::string& folder) {
        return (!go_on || go_on()) && !drives.IsMountPoint(folder);
      },
      [](const std::string&) { return false; });
  std::vector<std::shared_ptr<TreeFolder>> waiting{reader.Root(root)};  // stack: the next one last
  std::set<std::tuple<std::uint64_t, std::uint64_t, std::uint64_t>> visited;
  while (!waiting.empty()) {
    const std::shared_ptr<TreeFolder> folder = std::move(waiting.back());
    waiting.pop_back();
    reader.WaitFor(folder);
    if (go_on && !go_on()) return {};
    // A file system without folder numbers reports 0 for every folder.
    const auto& [device, number, number_high] = folder->listing.identity;
    if (number != 0 && !visited.emplace(device, number, number_high).second) continue;
    std::string found = PlayerIn(folder->path, folder->listing);
    if (!found.empty()) return found;
    reader.Enter(*folder);
    waiting.insert(waiting.end(), folder->subfolders.rbegin(), folder->subfolders.rend());
  }
  return {};
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "library/recycle_bin_platform.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/user_folders.h"

namespace tallow {
namespace {

/// ".Trash", or ".Trash-" and a user id: the standard names of the trash folder at the root of a
/// disk.
bool IsTrashName(std::string_view name) noexcept {
  constexpr std::string_view kTrash = ".Trash";
  if (!name.starts_with(kTrash)) return false;
  name.remove_prefix(kTrash.size());
  if (name.empty()) return true;
  if (name.front() != '-' || name.size() == 1) return false;
  return std::all_of(name.begin() + 1, name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

bool IsInPlatformBin(std::string_view folder) {
  if (folder.find("Trash") == std::string_view::npos) return false;
  // Searches use resolved paths, but the user's data folder may be reached through a link, so check
  // both.
  const std::string own = UserDataFolder() + "Trash";
  const std::string path = EnsureTrailingBackslash(folder);
  if (path.starts_with(own + "/") || path.starts_with(AbsolutePath(own) + "/")) return true;
  for (std::string_view rest = folder; !rest.empty();) {
    const std::size_t end = rest.find(kSeparator);
    if (IsTrashName(rest.substr(0, end))) return true;
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  return false;
}

}  // namespace tallow

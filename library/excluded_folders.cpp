// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/excluded_folders.h"

#include <algorithm>
#include <array>
#include <string>

#include "library/recycle_bin.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

/// A folder name that marks folders without songs.
struct ExcludedName {
  std::string_view name;
  bool skipped;  ///< a search does not enter the folder
};

constexpr std::array<ExcludedName, 8> kExcludedNames = {{
    {"$RECYCLE.BIN", false},  // Windows, since Vista
    {"RECYCLER", false},      // Windows NT to XP
    {".Trashes", false},      // macOS
    {"#recycle", false},      // NAS systems
    {"@Recycle", false},
    {".snapshots", true},  // btrfs
    {".snapshot", true},   // NAS systems
    {"@eaDir", true},      // thumbnails and attributes on NAS systems
}};

const ExcludedName* FindExcluded(std::string_view name) {
  const auto* const found =
      std::find_if(kExcludedNames.begin(), kExcludedNames.end(), [&](const ExcludedName& excluded) {
        return name.size() == excluded.name.size() && EqualsIgnoringCase(name, excluded.name);
      });
  return found != kExcludedNames.end() ? found : nullptr;
}

template <typename Test>
bool AnyPart(std::string_view path, const Test& test) {
  while (!path.empty()) {
    const std::size_t end = path.find(kSeparator);
    if (test(path.substr(0, end))) return true;
    path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
  }
  return false;
}

}  // namespace

bool HoldsNoSongs(std::string_view folder) {
  return AnyPart(folder, [](std::string_view name) { return FindExcluded(name) != nullptr; }) ||
         IsInRecycleBin(folder);
}

bool IsExcludedFolder(std::string_view folder) {
  return ToLower(folder).find("incomplete") != std::string::npos || HoldsNoSongs(folder);
}

bool IsSkippedFolderName(std::string_view name) {
  const ExcludedName* const excluded = FindExcluded(name);
  return excluded != nullptr && excluded->skipped;
}

bool LiesInSkippedFolder(std::string_view folder) { return AnyPart(folder, IsSkippedFolderName); }

bool MayBeSong(std::string_view name) noexcept { return !name.starts_with("._"); }

}  // namespace tallow

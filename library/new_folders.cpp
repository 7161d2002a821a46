// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/new_folders.h"

#include <algorithm>
#include <array>
#include <utility>

#include "library/excluded_folders.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// Folders in the root of a system's drive that belong to the system or to programs.
constexpr std::array<std::string_view, 15> kSystemFolders = {
    "bin",        "boot", "etc", "lib",     "lib64",         "nix", "sbin",
    "snap",       "usr",  "var", "Windows", "Program Files", "gnu", "Program Files (x86)",
    "ProgramData"};

/// The folder in a home folder in which Windows keeps the settings of programs.
constexpr std::string_view kAppData = "AppData";

/// The folder that contains a folder; empty for a root.
std::string_view FolderAbove(std::string_view folder) {
  return FolderOfPath(folder.substr(0, std::max<std::size_t>(folder.size(), 1) - 1));
}

/// The first part of a path without its root.
std::string_view FirstPart(std::string_view path) {
  const std::size_t begin = path.find(kSeparator);
  if (begin == std::string_view::npos) return {};
  return path.substr(begin + 1, path.find(kSeparator, begin + 1) - begin - 1);
}

bool IsOfSystem(std::string_view folder) {
  return std::ranges::any_of(kSystemFolders, [part = FirstPart(folder)](std::string_view name) {
    return IsSamePathText(part, name);
  });
}

/// Whether a folder in the home folder has settings of programs.
bool IsOfPrograms(std::string_view name) {
  return name.starts_with('.') || IsSamePathText(name, kAppData);
}

}  // namespace

NewFolders::NewFolders(const std::vector<std::string>& known, std::string_view home,
                       const std::vector<std::string>& roots)
    : home_(PathKey(home)), above_home_(PathKey(FolderAbove(home))) {
  for (const std::string& root : roots) ends_.insert(PathKey(root));
  for (std::string_view folder = home; !folder.empty(); folder = FolderAbove(folder))
    ends_.insert(PathKey(folder));
  std::vector<const std::string*> different;
  for (const std::string& folder : known)
    if (roles_.emplace(PathKey(folder), Role::kKnown).second) different.push_back(&folder);
  for (const std::string* const folder : different) AddParentsOf(*folder);
}

bool NewFolders::IsEnd(std::string_view folder) const {
  return FolderAbove(folder).empty() || folder == ShareOfPath(folder) ||
         ends_.contains(PathKey(folder));
}

bool NewFolders::IsTop(std::string_view folder) const {
  if (IsEnd(folder) || IsOfSystem(folder)) return false;
  const std::string key = PathKey(folder);
  if (home_.empty()) return true;
  if (PathKey(FolderAbove(folder)) == above_home_) return false;
  if (!key.starts_with(home_)) return true;
  const std::string_view below = std::string_view(key).substr(home_.size());
  return !IsOfPrograms(below.substr(0, below.find(kSeparator)));
}

void NewFolders::AddParentsOf(const std::string& known) {
  if (IsExcludedFolder(known)) return;
  std::string_view folder = known;
  while (!IsEnd(folder)) {
    const std::string_view above = FolderAbove(folder);
    const auto [at, is_new] = parent_index_.try_emplace(PathKey(above), parents_.size());
    if (is_new) parents_.push_back({std::string(above)});
    Parent& parent = parents_[at->second];
    ++parent.leading;
    parent.has_known = parent.has_known || roles_.contains(PathKey(folder));
    // A known folder, and one that was a parent before, already is, or will be, counted.
    if (!is_new || roles_.contains(at->first)) return;
    folder = above;
  }
}

bool NewFolders::IsEntered(const std::string& folder, std::string_view name) const {
  const std::string path = folder + std::string(name) + kSeparator;
  if (ends_.contains(PathKey(path)) || IsExcludedFolder(path)) return false;
  return home_.empty() || PathKey(folder) != home_ || !IsOfPrograms(name);
}

NewFolders::Role NewFolders::Visit(const std::string& folder,
                                   const std::vector<SubfolderEntry>& subfolders) {
  const std::string key = PathKey(folder);
  const auto [found, is_undecided] = roles_.try_emplace(key, Role::kParent);
  if (is_undecided) {
    const std::size_t leading = 2 * parents_[parent_index_.at(key)].leading;
    const bool is_root = IsEnd(folder);
    const auto counted = std::ranges::count_if(subfolders, [&](const SubfolderEntry& entry) {
      return !entry.linked && (!is_root || IsEntered(folder, entry.name));
    });
    const auto all = static_cast<std::size_t>(counted);
    if (is_root ? leading <= all : leading < all) found->second = Role::kIgnored;
  }
  const Role role = found->second;
  const bool is_above_home = key != home_ && !home_.empty() && home_.starts_with(key);
  if (role == Role::kIgnored || is_above_home) return role;
  for (const SubfolderEntry& entry : subfolders) {
    if (entry.linked || !IsEntered(folder, entry.name)) continue;
    std::string path = folder + entry.name + kSeparator;
    if (roles_.try_emplace(PathKey(path), Role::kNew).second) next_.push_back(std::move(path));
  }
  return role;
}

std::vector<std::string> NewFolders::TakeNext() {
  if (!std::exchange(has_taken_parents_, true))
    for (const Parent& parent : parents_) {
      if (parent.leading < 2) continue;
      const std::string key = PathKey(parent.path);
      // The listing of a root decides about it.
      if (IsEnd(parent.path) ? !home_.starts_with(key) && !roles_.contains(key)
                             : IsTop(parent.path) && roles_.try_emplace(key, Role::kParent).second)
        next_.push_back(parent.path);
    }
  if (next_.empty() && !std::exchange(has_taken_undecided_, true))
    for (const Parent& parent : parents_)
      if (parent.has_known && IsTop(parent.path) && !roles_.contains(PathKey(parent.path)))
        next_.push_back(parent.path);
  return std::exchange(next_, {});
}

}  // namespace tallow

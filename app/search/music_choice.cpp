// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/music_choice.h"

#include <algorithm>

#include "app/preferences.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr const char* kFolders = "music.folders";
constexpr const char* kTicked = "music.ticked";
constexpr const char* kUnticked = "music.unticked";
constexpr const char* kUnread = "music.unread";

bool HasPath(const std::vector<std::string>& roots, std::string_view root) {
  return std::any_of(roots.begin(), roots.end(),
                     [&](const std::string& other) { return IsSamePathText(other, root); });
}

}  // namespace

std::vector<std::string> MusicChoice::List(const char* member) const {
  // The file may have been edited: a root without its separator would also begin other names.
  std::vector<std::string> roots;
  for (const std::string& root : preferences_.Get(member, std::vector<std::string>()))
    if (!root.empty()) roots.push_back(EnsureTrailingBackslash(root));
  return roots;
}

bool MusicChoice::Has(const char* member, std::string_view root) const {
  return HasPath(List(member), root);
}

void MusicChoice::Put(const char* member, std::string_view root, bool in_list) {
  std::vector<std::string> roots = List(member);
  if (HasPath(roots, root) == in_list) return;
  if (in_list)
    roots.emplace_back(root);
  else
    std::erase_if(roots, [&](const std::string& other) { return IsSamePathText(other, root); });
  preferences_.Set(member, roots);
}

bool MusicChoice::IsDefault() const {
  return Folders().empty() && TickedDrives().empty() && List(kUnticked).empty();
}

std::vector<std::string> MusicChoice::Folders() const { return List(kFolders); }

std::vector<std::string> MusicChoice::TickedDrives() const { return List(kTicked); }

bool MusicChoice::IsTicked(std::string_view root, bool by_default) const {
  return by_default ? !IsUnticked(root) : Has(kTicked, root);
}

bool MusicChoice::IsUnticked(std::string_view root) const { return Has(kUnticked, root); }

void MusicChoice::Tick(const std::string& root, bool ticked, bool by_default) {
  if (IsTicked(root, by_default) == ticked) return;
  // A fixed disk may have been another kind of drive before.
  Put(kTicked, root, ticked && !by_default);
  Put(kUnticked, root, !ticked && by_default);
  Put(kUnread, root, ticked);
}

void MusicChoice::AddFolder(const std::string& root) {
  Put(kUnticked, root, false);
  if (Has(kFolders, root)) return;
  Put(kFolders, root, true);
  Put(kUnread, root, true);
}

void MusicChoice::RemoveFolder(std::string_view root) {
  for (const char* const member : {kFolders, kUnticked, kUnread}) Put(member, root, false);
}

bool MusicChoice::IsUnread(std::string_view root) const { return Has(kUnread, root); }

void MusicChoice::MarkRead(std::string_view root) { Put(kUnread, root, false); }

}  // namespace tallow

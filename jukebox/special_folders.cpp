// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/special_folders.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "jukebox/folder_tree.h"

namespace tallow {
namespace {

constexpr std::string_view kAllSongs = "All Songs";
constexpr std::string_view kDecades = "Decades";
constexpr std::string_view kTopLevel[] = {kAllSongs, "Artist", "Genre", kDecades, "Year", "New"};
constexpr std::string_view kBelowDecades[] = {"20's", "30's", "40's", "50's", "60's",
                                              "70's", "80's", "90's", "00's"};

template <typename Texts>
bool IsOneOf(const Texts& texts, std::string_view text) noexcept {
  return std::find(std::begin(texts), std::end(texts), text) != std::end(texts);
}

/// Whether no earlier sibling has the same text.
bool IsFirstOfItsText(const Folder& folder) noexcept {
  for (const Folder* before = folder.Previous(); before != nullptr; before = before->Previous())
    if (before->Text() == folder.Text()) return false;
  return true;
}

/// Whether a folder at top level is the automatic "Album".
bool IsAlbumFolder(const Folder& folder) noexcept {
  if (!folder.Automatic() || folder.Text() != kAlbumFolder) return false;
  for (const Folder* before = folder.Previous(); before != nullptr; before = before->Previous())
    if (before->Automatic() && before->Text() == kAlbumFolder) return false;
  return true;
}

}  // namespace

Folder* FindAlbumFolder(const FolderTree& tree) noexcept {
  for (std::int32_t k = 0; k < tree.Children(); ++k)
    if (Folder& folder = tree.ChildAt(k); IsAlbumFolder(folder)) return &folder;
  return nullptr;
}

bool IsSpecialFolder(const Folder& folder) noexcept {
  if (folder.Level() == 0)
    return IsAlbumFolder(folder) || (IsOneOf(kTopLevel, folder.Text()) && IsFirstOfItsText(folder));
  return folder.Level() == 1 && IsOneOf(kBelowDecades, folder.Text()) &&
         folder.Parent()->Text() == kDecades && IsFirstOfItsText(*folder.Parent()) &&
         IsFirstOfItsText(folder);
}

bool IsAllSongs(const Folder& folder) noexcept {
  return folder.Level() == 0 && folder.Text() == kAllSongs && IsFirstOfItsText(folder);
}

bool IsAutomaticFolder(const Folder& folder) noexcept {
  const Folder* top = &folder;
  while (top->Parent() != nullptr) top = top->Parent();
  return IsSpecialFolder(*top);
}

}  // namespace tallow

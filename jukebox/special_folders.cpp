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

}  // namespace

bool IsSpecialFolder(const Folder& folder) noexcept {
  if (folder.Level() == 0) return IsOneOf(kTopLevel, folder.Text());
  return folder.Level() == 1 && folder.Parent()->Text() == kDecades &&
         IsOneOf(kBelowDecades, folder.Text());
}

bool IsAllSongs(const Folder& folder) noexcept {
  return folder.Level() == 0 && folder.Text() == kAllSongs;
}

}  // namespace tallow

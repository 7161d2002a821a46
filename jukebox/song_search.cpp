// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/song_search.h"

#include <algorithm>
#include <unordered_set>

#include "jukebox/folder_tree.h"
#include "jukebox/set_aside_folders.h"
#include "library/cls_main.h"
#include "util/text.h"

namespace tallow {
namespace {

/// \param hidden folders to leave out together with all folders below them
void AppendFolders(std::vector<Folder*>& to, Folder& folder,
                   const std::unordered_set<const Folder*>& hidden) {
  if (hidden.contains(&folder)) return;
  to.push_back(&folder);
  for (std::int32_t k = 0; k < folder.Children(); ++k) AppendFolders(to, folder.ChildAt(k), hidden);
}

/// Returns all folders that the tree shows, in tree order, parents before children.
std::vector<Folder*> FoldersOf(const FolderTree& tree, const clsMain& library) {
  const std::vector<const Folder*> set_aside = FoldersSetAside(tree, library);
  const std::unordered_set<const Folder*> hidden(set_aside.begin(), set_aside.end());
  std::vector<Folder*> folders;
  folders.reserve(static_cast<std::size_t>(tree.Count()));
  for (std::int32_t k = 0; k < tree.Children(); ++k)
    AppendFolders(folders, tree.ChildAt(k), hidden);
  return folders;
}

}  // namespace

bool SongSearch::IsHit(std::int32_t record, const clsMain& library) {
  const SongView song = library.Song(record);
  if (!song.IsPresent()) return false;
  Match& match = matches_[static_cast<std::size_t>(record)];
  if (match == Match::kUnknown)
    match =
        ToLower(song.Name()).find(last_looked_for_) != std::string::npos ? Match::kYes : Match::kNo;
  return match == Match::kYes;
}

SongSearch::Result SongSearch::EndSearch() {
  last_ = -1;
  first_run_ = true;
  looking_for_the_last_node_ = false;
  return {};
}

void SongSearch::LookFor(std::string_view text) { last_looked_for_ = ToLower(text); }

SongSearch::Result SongSearch::FindNext(std::string_view text, const FolderTree& tree,
                                        const Folder& selected, const clsMain& library) {
  LookFor(text);
  const std::vector<Folder*> folders = FoldersOf(tree, library);
  if (folders.empty()) return EndSearch();
  matches_.assign(static_cast<std::size_t>(library.UBoundOfMp3Array()) + 1, Match::kUnknown);
  // Folders may have been removed since the last step, so the saved indexes may be out of range.
  if (start_ >= folders.size() || current_ >= folders.size()) first_run_ = true;
  if (first_run_) {
    first_run_ = false;
    looking_for_the_last_node_ = false;
    const auto place = std::find(folders.begin(), folders.end(), &selected);
    start_ = current_ =
        place != folders.end() ? static_cast<std::size_t>(place - folders.begin()) : 0;
    last_ = -1;
  }
  for (;;) {
    Folder& folder = *folders[current_];
    const auto rows = static_cast<std::int32_t>(folder.Items().size());
    for (std::int32_t row = last_ + 1; row < rows; ++row)
      if (IsHit(folder.Items()[static_cast<std::size_t>(row)].SubItem(), library)) {
        last_ = row;
        return {&folder, row};
      }
    if (current_ == start_) {
      if (looking_for_the_last_node_) return EndSearch();
      looking_for_the_last_node_ = true;
    }
    current_ = (current_ + 1) % folders.size();
    last_ = -1;
  }
}

}  // namespace tallow

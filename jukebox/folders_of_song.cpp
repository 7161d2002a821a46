// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/folders_of_song.h"

#include <algorithm>
#include <unordered_set>

#include "jukebox/jukebox.h"
#include "jukebox/set_aside_folders.h"
#include "jukebox/special_folders.h"
#include "library/cls_main.h"

namespace tallow {
namespace {

/// Adds the folders from this one down that hold the song.
void AddFoldersOfSong(const Folder& folder, std::int32_t record,
                      const std::vector<const Folder*>& left_out, std::vector<FolderOfSong>& to) {
  if (std::find(left_out.begin(), left_out.end(), &folder) != left_out.end()) return;
  const auto& entries = folder.Items();
  const auto found = std::find_if(entries.begin(), entries.end(), [record](const SongEntry& entry) {
    return entry.SubItem() == record;
  });
  if (found != entries.end()) to.push_back({&folder, static_cast<int>(found - entries.begin())});
  for (std::int32_t k = 0; k < folder.Children(); ++k)
    AddFoldersOfSong(folder.ChildAt(k), record, left_out, to);
}

void AddSongsBelow(const Folder& folder, const clsMain& library,
                   std::unordered_set<std::int32_t>& seen, std::vector<std::int32_t>& to) {
  for (const SongEntry& entry : folder.Items()) {
    const std::int32_t song = entry.SubItem();
    if (library.Song(song).IsPresent() && seen.insert(song).second) to.push_back(song);
  }
  for (std::int32_t k = 0; k < folder.Children(); ++k)
    AddSongsBelow(folder.ChildAt(k), library, seen, to);
}

/// Whether a folder says nothing about its songs.
bool HoldsAnySong(const Folder& folder) {
  return IsAllSongs(folder) || (IsSpecialFolder(folder) && folder.Text() == "New");
}

}  // namespace

std::vector<FolderOfSong> FoldersOfSong(const Jukebox& jukebox, std::int32_t record,
                                        const clsMain& library) {
  const FolderTree& tree = jukebox.Nodes();
  const std::vector<const Folder*> left_out = FoldersSetAside(tree, library);
  std::vector<FolderOfSong> found;
  for (std::int32_t k = 0; k < tree.Children(); ++k)
    AddFoldersOfSong(tree.ChildAt(k), record, left_out, found);
  return found;
}

std::vector<std::int32_t> SongsBelow(const Folder& folder, const clsMain& library) {
  std::unordered_set<std::int32_t> seen;
  std::vector<std::int32_t> songs;
  AddSongsBelow(folder, library, seen, songs);
  return songs;
}

FolderOfSong FolderToShowSongIn(const Jukebox& jukebox, std::int32_t record,
                                const clsMain& library) {
  const std::vector<FolderOfSong> folders = FoldersOfSong(jukebox, record, library);
  FolderOfSong best;
  for (const FolderOfSong& found : folders) {
    if (found.folder == jukebox.selectednode()) return found;
    if (best.folder == nullptr || (HoldsAnySong(*best.folder) && !HoldsAnySong(*found.folder)))
      best = found;
  }
  return best;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/empty_folder_text.h"

#include "jukebox/folder_tree.h"
#include "jukebox/found_songs.h"
#include "jukebox/special_folders.h"

namespace tallow {

std::string_view EmptyFolderText(const Folder& folder) noexcept {
  if (IsOfHits(folder))
    return "No song has all these words in its title, artist, album, genre or file name.";
  if (!folder.Items().empty())
    return "The files of the songs in this folder are missing, or are left out in this style.";
  if (IsAllSongs(folder))
    return "All songs are filed here when they are found. To search for songs, choose "
           "Songs > Bring In New Songs.";
  if (!IsAutomaticFolder(folder) && folder.Children() > 0)
    return "This folder itself has no songs. Drag songs onto it in the tree, or copy songs in "
           "another folder and paste them here.";
  if (!IsAutomaticFolder(folder))
    return "This folder is empty. Drag songs onto it in the tree, or copy songs in another folder "
           "and paste them here.";
  if (folder.Level() == 0 && folder.Text() == "New")
    return "Songs are filed here when a search finds them.";
  if (folder.Level() == 0) return "Songs are filed by their tags, in the folders below this one.";
  return "Songs are filed here by their tags.";
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

class Folder;
class FolderTree;

/// The text of the automatic folder of albums.
inline constexpr std::string_view kAlbumFolder = "Album";

/// The folder of albums: the first "Album" at top level that is marked (Folder::Automatic). Null
/// when there is none; a folder "Album" of the user is not marked.
Folder* FindAlbumFolder(const FolderTree& tree) noexcept;

/// Whether a folder is one that the program fills: "All Songs", "Artist", "Genre", "Decades",
/// "Year", "New" or the marked "Album" at top level, or "20's" to "90's" or "00's" directly below
/// the special "Decades". Texts are compared exactly. If several siblings have the same text, only
/// the first is special, because songs are filed into the first. The others, and folders with these
/// texts elsewhere, are ordinary folders.
bool IsSpecialFolder(const Folder& folder) noexcept;

/// Whether a folder may be removed: true for all folders except the special ones.
inline bool OkToDelete(const Folder& folder) noexcept { return !IsSpecialFolder(folder); }

/// Whether a folder is the one that holds every song: the first "All Songs" at top level. Songs
/// cannot be cut from this folder.
bool IsAllSongs(const Folder& folder) noexcept;

/// Whether the program may file songs into a folder. True for special folders and for all folders
/// below them, such as those of artists, years and genres. Dragging songs out of such a folder
/// copies them.
bool IsAutomaticFolder(const Folder& folder) noexcept;

}  // namespace tallow

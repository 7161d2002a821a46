// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

class Folder;

/// Whether a folder is one that the program fills: "All Songs", "Artist", "Genre", "Decades",
/// "Year" or "New" at top level, or "20's" to "90's" or "00's" directly below the special
/// "Decades". Texts are compared exactly. If several siblings have the same text, only the first is
/// special, because songs are filed into the first. The others, and folders with these texts
/// elsewhere, are ordinary folders.
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

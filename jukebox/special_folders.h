// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

class Folder;

/// Whether a folder is one that the program fills itself: "All Songs", "Artist", "Genre", "Decades",
/// "Year" or "New" at top level, or "20's" to "90's" or "00's" directly below that "Decades". Texts are
/// compared exactly. Of several folders of one text side by side the first is special, as it is the one
/// that songs are filed into; the others, and the same texts elsewhere, are ordinary folders.
bool IsSpecialFolder(const Folder& folder) noexcept;

/// Whether a folder may be removed: every one but the special ones.
inline bool OkToDelete(const Folder& folder) noexcept { return !IsSpecialFolder(folder); }

/// Whether a folder is the one that holds every song: the first "All Songs" at top level. Songs cannot be
/// cut out of it.
bool IsAllSongs(const Folder& folder) noexcept;

/// Whether the program files songs into a folder or may do so: a special folder, and whatever lies below
/// one, such as the folders of artists, years and genres. Songs that are dragged out of it are copied.
bool IsAutomaticFolder(const Folder& folder) noexcept;

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

class Folder;

/// Whether a folder is one that the program fills itself: "All Songs", "Artist", "Genre", "Decades",
/// "Year" or "New" at top level, or "20's" to "90's" or "00's" directly below a folder "Decades". Texts
/// are compared exactly; the same texts elsewhere are ordinary folders.
bool IsSpecialFolder(const Folder& folder) noexcept;

/// Whether a folder may be removed: every one but the special ones.
inline bool OkToDelete(const Folder& folder) noexcept { return !IsSpecialFolder(folder); }

/// Whether a folder is the one that holds every song: "All Songs" at top level. Songs cannot be cut out
/// of it.
bool IsAllSongs(const Folder& folder) noexcept;

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Whether a folder is, or lies in, a folder that never contains songs: a recycle bin or snapshot
/// of any system that has used the disk, or the metadata that a file server stores beside files.
///
/// The names are compared ignoring case, at any depth; see also IsInRecycleBin.
bool HoldsNoSongs(std::string_view folder);

/// Whether searches skip the songs of a folder: HoldsNoSongs, or the path contains "incomplete" in
/// any case (unfinished downloads).
bool IsExcludedFolder(std::string_view folder);

/// Whether a search skips a folder with this name including its subfolders: snapshots, which
/// contain the whole disk many times. Recycle bins are walked, and their files are counted.
bool IsSkippedFolderName(std::string_view name);

/// Whether a folder is, or lies in, a folder that IsSkippedFolderName matches.
bool LiesInSkippedFolder(std::string_view folder);

/// Whether a file with this name and a song's extension can be a song. AppleDouble files
/// ("._name.mp3"), in which macOS stores a file's attributes on other file systems, cannot.
bool MayBeSong(std::string_view name) noexcept;

}  // namespace tallow

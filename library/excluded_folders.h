// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Whether a folder is, or lies in, one that holds no songs of its own: a recycle bin or a snapshot of this
/// system or of another one that the disk has been used with, or what a file server keeps beside files.
///
/// The names are compared without regard to case, at any depth; see also IsInRecycleBin.
bool HoldsNoSongs(std::string_view folder);

/// Whether songs of a folder are not added by searches: HoldsNoSongs, and folders whose path holds
/// "incomplete" in any case, where downloads lie that are not finished.
bool IsExcludedFolder(std::string_view folder);

/// Whether a search leaves out a folder with all below it, by the folder's own name: snapshots, which hold
/// the whole disk many times over. Recycle bins are walked, and their files counted.
bool IsSkippedFolderName(std::string_view name);

/// Whether a folder is, or lies in, one that a search leaves out.
bool LiesInSkippedFolder(std::string_view folder);

/// Whether a file of this name may be a song, where its extension says that it is one. AppleDouble files
/// ("._name.mp3"), in which macOS keeps a file's attributes on foreign disks, are none.
bool MayBeSong(std::string_view name) noexcept;

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace tallow {

class Folder;
class FolderTree;
class clsMain;

/// The folders that the switches set aside together with their songs: they are in the jukebox and
/// are saved, but the tree does not show them.
///
/// - The automatic "Album", without the switch `albums`.
/// - Folders below automatic folders in which, and below which, there are songs, all of them set
///   aside (SongView::IsSetAside).
///
/// Of a folder that is set aside, the folders below it are not returned. Unless
/// clsMain::HasNamesakes, there are none.
std::vector<const Folder*> FoldersSetAside(const FolderTree& tree, const clsMain& library);

}  // namespace tallow

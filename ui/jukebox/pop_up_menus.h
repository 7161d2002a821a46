// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QMenu;
class QWidget;

namespace tallow {

class Folder;

/// The panes of a jukebox window, numbered as the pop-up menus number them.
enum PopUpPane : int {
  kTreePane = 1,
  kListPane = 2,
};

/// The commands of the tree's pop-up menu, by number.
enum TreeCommand : int {
  kAddFolderToSelected = 4,
  kAddFolderToRoot = 5,
  kCutFolder = 6,
  kCopyFolder = 7,
  kPasteFolder = 8,
  kDeleteFolder = 9,
  kSortNodes = 10,
  kMoveToRoot = 11,
};

/// The commands of the list's pop-up menu, by number.
enum ListCommand : int {
  kPlayAllSongsInFolder = 1,
  kPlaySelectedSongs = 2,
  kCutSongs = 4,
  kCopySongs = 5,
  kPasteSongs = 6,
  kDeleteSongs = 7,
  kRankBest = 8,  ///< the first of six ranks
  kRankWorst = 13,
  kChangeBackgroundPicture = 14,
};

/// Creates the pop-up menu of the list, named "ListMenu". The data of each item is its command.
/// \param act runs a command
QMenu* MakeListMenu(QWidget* parent, const std::function<void(int command)>& act);

/// Creates the pop-up menu of the tree, named "TreeMenu".
QMenu* MakeTreeMenu(QWidget* parent, const std::function<void(int command)>& act);

/// Disables the items of the tree's pop-up menu that would have no effect.
/// \param folder the folder that the menu is opened on; null in the empty area of the tree
/// \param paste  whether the clipboard can be pasted there
void EnableTreeItems(QMenu& tree_menu, const Folder* folder, bool paste);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QMenu;
class QWidget;

namespace tallow {

class Folder;

/// The halves of a jukebox window, as its pop-up menus are numbered.
enum PopUpPane : int {
  kTreePane = 1,
  kListPane = 2,
};

/// The commands of the tree's pop-up menu, by their numbers.
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

/// The commands of the list's pop-up menu, by their numbers.
enum ListCommand : int {
  kPlayAllSongsInFolder = 1,
  kPlaySelectedSongs = 2,
  kCutSongs = 4,
  kCopySongs = 5,
  kPasteSongs = 6,
  kDeleteSongs = 7,
  kRankBest = 8,  ///< the first of six
  kRankWorst = 13,
  kChangeBackgroundPicture = 14,
};

/// Makes the pop-up menu of the list, named "ListMenu". The data of an item is its command.
/// \param act runs a command
QMenu* MakeListMenu(QWidget* parent, const std::function<void(int command)>& act);

/// Makes the pop-up menu of the tree, named "TreeMenu".
QMenu* MakeTreeMenu(QWidget* parent, const std::function<void(int command)>& act);

/// Greys those items of the tree's pop-up menu that could do nothing.
/// \param folder the folder that the menu is opened on; null beside the folders
/// \param paste  what is on the clipboard can go there
void EnableTreeItems(QMenu& tree_menu, const Folder* folder, bool paste);

}  // namespace tallow

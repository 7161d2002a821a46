// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "jukebox/ranking.h"

class QMenu;
class QWidget;

namespace tallow {

class Folder;
class PlayerModel;

/// The panes of a jukebox window, numbered as the pop-up menus number them.
enum PopUpPane : int {
  kTreePane = 1,
  kListPane = 2,
};

/// The commands of the tree's pop-up menu; the values are the numbers of its items.
enum class TreeCommand : int {
  kAddFolderToSelected = 4,
  kAddFolderToRoot = 5,
  kCutFolder = 6,
  kCopyFolder = 7,
  kPasteFolder = 8,
  kDeleteFolder = 9,
  kSortNodes = 10,
  kMoveToRoot = 11,
  kAddAlbumFolder = 12,  ///< offered only by OfferAlbumFolder
  kRename = 13,
  kPlayFolder = 14,
  kPlayFolderNext = 15,
  kAddFolderToQueue = 16,
  kFolderProperties = 17,
};

/// The commands of the list's pop-up menu; the values are the numbers of its items.
enum class ListCommand : int {
  kPlayAllSongsInFolder = 1,
  kPlaySelectedSongs = 2,
  kCutSongs = 4,
  kCopySongs = 5,
  kPasteSongs = 6,
  kDeleteSongs = 7,
  kRankBest = 8,  ///< the first item of the rank menu; see RankCommand for those in between
  kRankWorst = 13,
  kChangeBackgroundPicture = 14,
  kPlayFromHere = 15,
  kPlayNext = 16,
  kAddToQueue = 17,
  kNoRank = 18,
  kShowInFolder = 19,  ///< for hits of a search
  kProperties = 20,
  kColumns = 21,  ///< the menu of the columns
};

/// Returns the command of an item of the rank menu.
/// \param item 1 (best) to kRankItems (worst), or kNoRankItem
constexpr ListCommand RankCommand(int item) noexcept {
  if (item == kNoRankItem) return ListCommand::kNoRank;
  return ListCommand(static_cast<int>(ListCommand::kRankBest) + item - 1);
}

/// Returns the item of the rank menu, from 1, that a command belongs to; 0 for other commands.
constexpr int RankItemOf(ListCommand command) noexcept {
  if (command == ListCommand::kNoRank) return kNoRankItem;
  const bool is_rank = command >= ListCommand::kRankBest && command <= ListCommand::kRankWorst;
  return is_rank ? static_cast<int>(command) - static_cast<int>(ListCommand::kRankBest) + 1 : 0;
}

/// Returns the command that gives songs a rank.
/// \param rank kNeverRanked to kBestRank
constexpr ListCommand CommandOfRank(int rank) noexcept {
  return rank > kNeverRanked ? RankCommand(kBestRank + 1 - rank) : ListCommand::kNoRank;
}

/// Creates the pop-up menu of the list, named "ListMenu". The data of each item is its number.
/// \param act runs a command
QMenu* MakeListMenu(QWidget* parent, const std::function<void(ListCommand)>& act);

/// Adds the menu of the columns to the list's pop-up menu.
void AddColumnsItem(QMenu& list_menu, QMenu& columns);

/// Disables the items of the list's pop-up menu that the player cannot carry out, and "Paste" if it
/// would have no effect. The tooltip of an item that the player cannot carry out says why. Items
/// that need selected songs stay enabled, because they say that none is selected.
/// \param player null when there is none; no item is disabled for it then
/// \param paste  whether there is something to paste
void EnableListItems(QMenu& list_menu, const PlayerModel* player, bool paste);

/// Disables the items of the list's pop-up menu that hits of a search do not offer, or that only
/// they offer.
/// \param hits  whether the list shows the hits of a search
/// \param finds whether there can be hits; without them, "Show In Folder" is not shown
void EnableItemsForHits(QMenu& list_menu, bool hits, bool finds);

/// Like MakeListMenu, for the pop-up menu of the tree, named "TreeMenu".
QMenu* MakeTreeMenu(QWidget* parent, const std::function<void(TreeCommand)>& act);

/// Shows or hides the items of both pop-up menus that Switches::more_commands names.
void ShowMoreCommands(QMenu& list_menu, QMenu& tree_menu, bool on);

/// Adds or removes the item "Add Album Folder" of the tree's pop-up menu, before "Properties...".
void OfferAlbumFolder(QMenu& tree_menu, bool offers);

/// Disables the items of the tree's pop-up menu that would have no effect.
/// \param folder the folder that the menu is opened on; null in the empty area of the tree
/// \param player as for EnableListItems
/// \param paste  whether the clipboard has anything
void EnableTreeItems(QMenu& tree_menu, const Folder* folder, const PlayerModel* player, bool paste);

}  // namespace tallow

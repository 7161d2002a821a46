// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "jukebox/folder_tree.h"
#include "jukebox/list_positions.h"
#include "jukebox/rank_change.h"

namespace tallow {

// The kinds of change that a command can make to a tree of folders, or to the ranks of songs. Each
// holds what differs between the current state of the tree and the other one, and toggling
// exchanges the two states.

/// A folder that the change adds or removes.
struct FolderPresence {
  Folder* folder;
  Folder* parent;  ///< null for top level
  std::int32_t index;
  DetachedFolder detached;  ///< owns the folder while it is not in the tree
};

/// A folder that gets another parent or index. Holds those of the other state.
struct FolderMove {
  Folder* folder;
  Folder* parent;  ///< null for top level
  std::int32_t index;
};

/// A folder that gets another text. Holds that of the other state.
struct FolderRename {
  Folder* folder;
  std::string text;
};

/// Subfolders in another order. Folders that were appended later stay last.
struct FolderReorder {
  Folder* parent;  ///< null for top level
  Permutation order;
};

/// Songs that the change adds to a folder or removes from it.
struct SongPresence {
  Folder* folder;
  ElementToggle songs;
  std::vector<SongEntry> detached;  ///< the songs, while they are not in the folder
};

/// Songs of a folder in another order. As in a sort, the entries stay and the songs move.
struct SongReorder {
  Folder* folder;
  Permutation order;
};

using TreeChange = std::variant<FolderPresence, FolderMove, FolderRename, FolderReorder,
                                SongPresence, SongReorder, RankChange>;

/// Makes a change in the tree, or reverts it.
void Toggle(TreeChange& change, FolderTree& tree);

/// Adjusts a change after songs were removed from a folder without a command of the user.
///
/// \param pruned positions of the removed songs in the current state
/// \returns their positions in the other state
Positions Prune(TreeChange& change, const Folder& folder, Positions pruned);

/// Replaces old record numbers by new ones in the songs that the change owns.
void Renumber(TreeChange& change, const NewNumbers& numbers);

/// Returns the positions of those added songs that the folder also holds as another entry. The
/// songs must be in the folder.
Positions DuplicatesOf(const SongPresence& added);

/// Approximate memory used by a change, in bytes.
std::size_t BytesOf(const TreeChange& change);

}  // namespace tallow

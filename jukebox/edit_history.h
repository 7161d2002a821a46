// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "jukebox/folder_tree.h"

namespace tallow {

/// Undo and redo for a tree of folders: makes the user's changes and can revert them.
///
/// A step holds everything that one command changes between Begin and End. It is stored as a list
/// of differences, so its size depends on what the command changed, not on the size of the jukebox.
/// Applying a difference a second time reverts it, so one list serves both undo and redo.
///
/// The tree also changes without the user: filing appends songs and folders, and songs whose files
/// are gone are removed from the list shown. These changes are not steps, and steps stay valid.
/// Filed songs and folders come after every index that a step refers to. For removed songs the
/// caller calls SongsPruned, which adjusts the indexes in all steps.
///
/// A folder that a step removes from the tree stays in the step, at the same address. Steps can
/// therefore refer to folders by address: a folder is destroyed only with the step that owns it,
/// and all other steps that refer to the folder are destroyed before that.
class EditHistory {
 public:
  /// Number of steps that can always be undone, whatever memory they use. A step that sorts or
  /// removes all songs of a folder uses 4 to 16 bytes per song.
  static constexpr std::size_t kMinSteps = 100;
  /// Maximum number of steps.
  static constexpr std::size_t kMaxSteps = 1000;
  /// Maximum memory, in bytes, of all steps while there are more than kMinSteps.
  static constexpr std::size_t kMaxBytes = 64U << 20;

  /// \param tree must outlive the history
  explicit EditHistory(FolderTree& tree) : tree_(tree) {}
  EditHistory(const EditHistory&) = delete;
  EditHistory& operator=(const EditHistory&) = delete;

  /// Begin and End enclose the changes of one step. A step without changes is discarded. Steps do
  /// not nest.
  /// \param concerned the folder to show when the step is undone; null for the tree itself
  void Begin(const Folder* concerned);
  void End();

  /// Adds a new folder, or a copy made for this tree, to the tree.
  /// \param parent null for top level
  /// \param index  position among the new siblings, 0 to their number
  Folder& AddFolder(DetachedFolder folder, Folder* parent, std::int32_t index);
  void RemoveFolder(Folder& folder);
  /// \param parent null for top level; must not lie in the folder
  /// \param index  position among the new siblings after the folder has left its old position
  void MoveFolder(Folder& folder, Folder* parent, std::int32_t index);
  void RenameFolder(Folder& folder, std::string_view text);
  /// \param order see FolderTree::Reorder
  void ReorderFolders(Folder* parent, std::vector<std::int32_t> order);

  /// Appends songs to a folder.
  void AddSongs(Folder& folder, std::vector<SongEntry> entries);
  /// \param rows positions in the list, from 0, ascending
  void RemoveSongs(Folder& folder, std::vector<std::int32_t> rows);
  /// Records a reordering of a folder's songs that has already been done.
  /// \param order for each new position, the old position of the song there; both from 0
  void SongsReordered(Folder& folder, std::vector<std::int32_t> order);

  /// Call this after songs were removed from a folder without a command of the user.
  /// \param rows the positions the songs had, from 0, ascending
  void SongsPruned(const Folder& folder, std::vector<std::int32_t> rows);

  bool CanUndo() const noexcept { return !undo_.empty(); }
  bool CanRedo() const noexcept { return !redo_.empty(); }
  /// Undoes the latest step. Does nothing when there is none.
  /// \returns the folder to show; null for none
  Folder* Undo();
  /// Redoes the step that was undone last. Does nothing when there is none. Does not add songs that
  /// have been filed into the folder in the meantime.
  /// \returns the folder to show; null for none
  Folder* Redo();

  /// What a step did to the songs of a folder.
  struct SongChange {
    bool any = false;          ///< the set of songs or their order changed
    std::vector<int> brought;  ///< positions of the added songs, from 0, ascending
    int taken = -1;            ///< position of the first removed song, from 0; -1 for none
  };
  /// How the last undo or redo changed the songs of a folder.
  SongChange LastSongChange(const Folder& folder) const;

  /// Marks a step as one half of a move between two jukeboxes.
  struct Half {
    /// Number of the move, from 1, shared by exactly its two halves; 0 for no move.
    std::uint64_t pair = 0;
    bool takes = false;  ///< this half removes the songs or folder from its jukebox
  };
  /// Marks the latest step as one half of a move.
  void PairLastStep(Half half) { undo_.back().half = half; }
  /// The half that the next Undo or Redo would revert or repeat; pair is 0 when there is none.
  Half HalfToUndo() const noexcept { return undo_.empty() ? Half() : undo_.back().half; }
  Half HalfToRedo() const noexcept { return redo_.empty() ? Half() : redo_.back().half; }

  /// State of one half of a move.
  enum class HalfState { kForgotten, kDone, kUndone };
  HalfState StateOfHalf(std::uint64_t pair) const noexcept;

  /// Marks the current tree as the saved one.
  void MarkSaved() noexcept;
  /// Whether the user's changes since MarkSaved, or since construction, cancel out.
  bool IsAsSaved() const noexcept;

  /// Updates the record numbers of the songs that the steps own. The caller updates the songs in
  /// the tree.
  void Renumber(const NewNumbers& numbers);

  /// Drops all steps and marks the tree as saved.
  void Clear();

  /// Approximate memory used by the steps, in bytes.
  std::size_t Bytes() const noexcept { return bytes_; }
  std::size_t Steps() const noexcept { return undo_.size() + redo_.size(); }

 private:
  /// A folder that is in the tree either only before or only after the change.
  struct FolderPresence {
    Folder* folder;
    Folder* parent;
    std::int32_t index;
    DetachedFolder detached;  ///< owns the folder while it is not in the tree
  };
  /// A folder that the change moves. Holds the position on the other side of the change.
  struct FolderPlace {
    Folder* folder;
    Folder* parent;
    std::int32_t index;
  };
  struct FolderText {
    Folder* folder;
    std::string text;
  };
  struct FolderOrder {
    Folder* parent;
    std::vector<std::int32_t> order;
  };
  /// Songs that are in a folder either only before or only after the change.
  struct SongPresence {
    Folder* folder;
    std::vector<std::int32_t> rows;  ///< positions in the folder, from 0, ascending
    std::vector<SongEntry> entries;  ///< the songs, while they are not in the folder
    bool present;
  };
  struct SongOrder {
    Folder* folder;
    std::vector<std::int32_t> order;  ///< for each position after toggling, the position before
  };
  using Change =
      std::variant<FolderPresence, FolderPlace, FolderText, FolderOrder, SongPresence, SongOrder>;
  struct Step {
    Folder* concerned_before;  ///< null for none
    Folder* concerned;
    std::vector<Change> changes;
    std::size_t bytes = 0;
    Half half;
  };

  void Toggle(FolderPresence& change);
  void Toggle(FolderPlace& change);
  void Toggle(FolderText& change);
  void Toggle(FolderOrder& change);
  static void Toggle(SongPresence& change);
  static void Toggle(SongOrder& change);
  void ToggleAny(Change& change);
  void ToggleAll(Step& step, bool back);
  void DropDoubles(Step& step);
  void Keep(Change change);

  static void Renumber(Step& step, const NewNumbers& numbers);
  static void Carry(Change& change, const Folder& folder, std::vector<std::int32_t>& rows);
  static std::size_t BytesOf(const Step& step);
  void DropOldSteps();
  void DropRedo();

  static constexpr std::ptrdiff_t kNever = -1;

  FolderTree& tree_;
  Step open_{};
  std::deque<Step> undo_;   ///< latest step at the end
  std::vector<Step> redo_;  ///< next step to redo at the end
  bool last_was_undo_ = false;
  std::size_t bytes_ = 0;  ///< of undo_ and redo_
  /// Size of undo_ when the tree was saved; kNever when that state is out of reach.
  std::ptrdiff_t saved_ = 0;
};

}  // namespace tallow

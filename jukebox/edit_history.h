// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jukebox/folder_tree.h"
#include "jukebox/tree_changes.h"

namespace tallow {

/// Undo and redo for a tree of folders: makes the user's changes and can revert them.
///
/// A step holds everything that one command changes between Begin and End, as a list of changes
/// (TreeChange) that can be toggled. Its size depends on what the command changed, not on the size
/// of the jukebox.
///
/// Invariant: the changes of all steps, in the order in which they were made, link a sequence of
/// states of the tree,
///
///     state 0 <-> state 1 <-> ... <-> present state <-> ... <-> state n
///             undo_                                  redo_
///
/// where each change lies between two neighbouring states. A stored position is valid in the state
/// in which the song or folder is at that position; of the two positions that a reordering stores,
/// each is valid in one of the two states. Toggling the changes one by one, starting at the present
/// state, therefore always uses positions that are valid at that moment.
///
/// Some changes are not made by user commands. They are not undo steps; they apply to all states at
/// once and must keep stored positions valid:
/// - Filing appends songs and folders. They come after every position that is stored, so nothing
///   needs to be adjusted.
/// - Filing may then arrange what it has appended. If a step holds positions in that folder, the
///   arrangement becomes part of the two steps beside the present state: undoing the one, and
///   redoing the other, first restores the order in which the positions are valid.
/// - Songs whose files are gone are removed from the shown list. SongsPruned removes them from all
///   other states: starting at the present state, it converts their positions, change by change, to
///   those of the next state, see list_positions.h.
///
/// A folder that a step removes from the tree stays in the step, at the same address. Steps can
/// therefore refer to folders by address: a folder is destroyed only with the step that owns it,
/// and all other steps that refer to the folder are destroyed before that.
class EditHistory {
 public:
  /// Number of steps that can always be undone, whatever memory they use. A step that sorts or
  /// removes all songs of a folder uses 4 to 16 bytes per song. A step that moves songs inside a
  /// folder uses 4 bytes for each song from the first to the last one that it moves.
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
  /// \param folder_to_show when the step is undone or redone; null for none
  /// \param name what the step does, as the menu shows it after "Undo": "Move 3 Songs"
  void Begin(const Folder* folder_to_show, std::string_view name);
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
  void RemoveSongs(Folder& folder, Positions positions);
  /// Records a reordering of a folder's songs that has already been done. An order in which only
  /// entries of the same songs have changed places is ignored.
  /// \param order for each new position, the old position of the song there; both from 0
  void SongsReordered(Folder& folder, std::vector<std::int32_t> order);

  /// Reorders the songs of a folder. An order in which only entries of the same songs change places
  /// is ignored.
  /// \param order for each new position, the present position of the song there; both from 0
  /// \returns whether the order was not ignored
  bool ReorderSongs(Folder& folder, std::vector<std::int32_t> order);

  /// Exchanges the ranks of songs. A step that does nothing else leaves the jukebox as saved as it
  /// was, because ranks are stored with the library.
  void ChangeRanks(RankChange change);

  // Filing appends folders and songs without a step. A step that files songs records them with the
  // next two functions, first the folders.
  /// \param first index of the first appended subfolder
  void FoldersAppended(Folder& parent, std::int32_t first);
  /// \param first position of the first appended song
  void SongsAppended(Folder& folder, std::size_t first);

  // Reorders what filing has appended, as part of the open step or, without one, in all states. The
  // order has for each new position the present one; both from 0. An order that changes nothing is
  // ignored.
  void ArrangeFolders(Folder& parent, std::vector<std::int32_t> order);
  void ArrangeSongs(Folder& folder, std::vector<std::int32_t> order);

  /// Reverts the changes of the open step and discards the step.
  void Discard();

  /// Sets the folder to show when the open step is undone or redone; null for none.
  void Show(const Folder* folder);

  /// Call this after songs were removed from a folder without a command of the user.
  /// \param positions the positions the songs had
  void SongsPruned(const Folder& folder, Positions positions);

  bool CanUndo() const noexcept { return !undo_.empty(); }
  bool CanRedo() const noexcept { return !redo_.empty(); }
  /// What the step does that the next Undo or Redo would undo or redo; empty when there is none.
  std::string_view NameToUndo() const noexcept {
    return undo_.empty() ? std::string_view() : undo_.back().name;
  }
  std::string_view NameToRedo() const noexcept {
    return redo_.empty() ? std::string_view() : redo_.back().name;
  }
  /// Undoes the latest step. Does nothing when there is none.
  /// \returns the folder to show; null for none
  Folder* Undo();
  /// Redoes the step that was undone last. Does nothing when there is none. Does not add songs that
  /// have been filed into the folder in the meantime.
  /// \returns the folder to show; null for none
  Folder* Redo();

  /// What a step did to the songs of a folder.
  struct SongChange {
    bool any = false;           ///< the set of songs or their order changed
    std::vector<int> added;     ///< positions of the added songs, from 0, ascending
    int first_removed_at = -1;  ///< position of the first removed song, from 0; -1 for none
    /// Whether only the order changed.
    bool IsReorder() const noexcept { return any && added.empty() && first_removed_at < 0; }
  };
  /// How the last undo or redo changed the songs of a folder.
  SongChange LastSongChange(const Folder& folder) const;
  /// Where the last undo or redo has moved a song inside a folder, if it changed only the order
  /// there, see SongChange::IsReorder.
  /// \param position before the undo or redo, from 0
  std::size_t MovedByLast(const Folder& folder, std::size_t position) const;
  /// The songs whose ranks the last undo or redo changed: their record numbers.
  std::vector<std::int32_t> LastRankedSongs() const;

  /// Links the step of a move from one jukebox to another to the step in the other jukebox.
  struct MoveLink {
    /// Number of the move, from 1, which only its two steps have; 0 for a step without a link.
    std::uint64_t move = 0;
    bool is_source = false;  ///< this step removes the songs or the folder from its jukebox
  };
  /// Makes the latest step one of the two steps of a move.
  void LinkLastStep(MoveLink link) { undo_.back().link = link; }
  /// The link of the step that the next Undo or Redo would undo or redo; move is 0 when there is
  /// none.
  MoveLink LinkToUndo() const noexcept { return undo_.empty() ? MoveLink() : undo_.back().link; }
  MoveLink LinkToRedo() const noexcept { return redo_.empty() ? MoveLink() : redo_.back().link; }

  /// State of the step of a move; kNone when this history has no such step, or no longer.
  enum class LinkedStepState { kNone, kDone, kUndone };
  LinkedStepState StateOfLinkedStep(std::uint64_t move) const noexcept;

  /// Sets a callback that runs after each step that is made, undone or redone.
  void OnChange(std::function<void()> changed) { changed_ = std::move(changed); }

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
  struct Step {
    Folder* show_after_undo;  ///< null for none
    Folder* show_after_redo;
    std::string name;
    std::vector<TreeChange> changes;
    std::size_t bytes = 0;
    MoveLink link;
  };

  void Make(TreeChange change);
  template <typename Change>
  void Arrange(Change change, bool is_stored);
  template <typename Concerns>
  bool AnyChange(const Concerns& concerns) const;
  void ToggleAll(Step& step, bool undo);
  void RemoveSongsFiledMeanwhile(Step& redone);
  Folder* IfInTree(Folder* folder) const;

  static bool MovesSongs(const Folder& folder, const std::vector<std::int32_t>& order);
  static std::size_t BytesOf(const Step& step);
  void Changed() const {
    if (changed_) changed_();
  }
  static bool ChangesTree(const Step& step);
  const Step* LastStep() const;
  void DropOldSteps();
  void DropRedo();

  static constexpr std::ptrdiff_t kUnreachable = -1;

  FolderTree& tree_;
  Step open_{};             ///< the step between Begin and End
  bool is_open_ = false;    ///< between Begin and End
  std::deque<Step> undo_;   ///< latest step at the end
  std::vector<Step> redo_;  ///< next step to redo at the end
  bool last_was_undo_ = false;
  std::function<void()> changed_;  ///< may be empty
  std::size_t bytes_ = 0;          ///< sum over undo_ and redo_
  /// Size of undo_ when the tree was saved; kUnreachable when no undo or redo leads to that state.
  std::ptrdiff_t saved_at_ = 0;
};

}  // namespace tallow

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

/// Makes the user's changes to a tree of folders and can take them back.
///
/// A step is what one command changes, between Begin and End. It is kept as its differences, so a step
/// costs what it touched and not what the jukebox holds. Every difference undoes itself when it is
/// applied once more, so one list serves for both directions.
///
/// The tree also changes without the user: songs and folders are filed behind what is there, and songs
/// whose files are gone are taken out of the list on show. The steps do not hold these changes and stay
/// right all the same. What is filed is behind every place that a step names; of what is taken out the
/// history is told (SongsPruned), and it moves the places in all its steps.
///
/// A folder that a step has taken out of the tree lives on in the step, under its address. So folders can
/// be named by their addresses: one is only destroyed with the step that holds it, and every other step
/// that names it has gone before.
class EditHistory {
 public:
  /// How many steps can be taken back at least, however much they hold. One that sorts or takes out every
  /// song of a folder holds 4 to 16 bytes for each.
  static constexpr std::size_t kMinSteps = 100;
  /// How many can be at most.
  static constexpr std::size_t kMaxSteps = 1000;
  /// What steps beyond kMinSteps may hold, in bytes.
  static constexpr std::size_t kMaxBytes = 64U << 20;

  /// \param tree has to outlive the history
  explicit EditHistory(FolderTree& tree) : tree_(tree) {}
  EditHistory(const EditHistory&) = delete;
  EditHistory& operator=(const EditHistory&) = delete;

  /// Makes one step of the changes until End. A step without a change is none. Steps do not nest.
  /// \param concerned the folder to show when the step is undone; null for the tree itself
  void Begin(const Folder* concerned);
  void End();

  /// Puts a new folder, or a copy made for this tree, into the tree.
  /// \param parent null for top level
  /// \param index  its place among its new siblings, 0 to their number
  Folder& AddFolder(DetachedFolder folder, Folder* parent, std::int32_t index);
  void RemoveFolder(Folder& folder);
  /// \param parent null for top level; not in the folder
  /// \param index  its place among its new siblings once it has left its old place
  void MoveFolder(Folder& folder, Folder* parent, std::int32_t index);
  void RenameFolder(Folder& folder, std::string_view text);
  /// \param order see FolderTree::Reorder
  void ReorderFolders(Folder* parent, std::vector<std::int32_t> order);

  /// Adds songs behind those that a folder has.
  void AddSongs(Folder& folder, std::vector<SongEntry> entries);
  /// \param rows places in the list, from 0, rising
  void RemoveSongs(Folder& folder, std::vector<std::int32_t> rows);
  /// Keeps an order of a folder's songs that is there already.
  /// \param order for each place the one that its song came from
  void SongsReordered(Folder& folder, std::vector<std::int32_t> order);

  /// Songs have been taken out of a folder though the user did not ask for it.
  /// \param rows the places they had, from 0, rising
  void SongsPruned(const Folder& folder, std::vector<std::int32_t> rows);

  bool CanUndo() const noexcept { return !undo_.empty(); }
  bool CanRedo() const noexcept { return !redo_.empty(); }
  /// Takes back the latest step; nothing when there is none.
  /// \returns the folder to show; null for none
  Folder* Undo();
  /// Does again the step that was taken back last; nothing when there is none. Songs that have been filed
  /// into a folder meanwhile are not added to it a second time.
  /// \returns the folder to show; null for none
  Folder* Redo();

  /// What a step did to the songs of a folder.
  struct SongChange {
    bool any = false;          ///< to which songs there are, or to their order
    std::vector<int> brought;  ///< the places, from 0 and rising, of songs that came
    int taken = -1;            ///< the place of the first of the songs that went; -1 for none
  };
  /// What the step that was taken back or done again last did to the songs of a folder.
  SongChange LastSongChange(const Folder& folder) const;

  /// A step that is one half of a move between two jukeboxes.
  struct Half {
    std::uint64_t pair =
        0;               ///< the same number, from 1, for both halves and for no others; 0 for none
    bool takes = false;  ///< what moves leaves this jukebox
  };
  /// Makes the latest step one half of a move.
  void PairLastStep(Half half) { undo_.back().half = half; }
  /// The half that the next step to be taken back, or to be done again, is.
  Half HalfToUndo() const noexcept { return undo_.empty() ? Half() : undo_.back().half; }
  Half HalfToRedo() const noexcept { return redo_.empty() ? Half() : redo_.back().half; }

  /// Where a half of a pair is.
  enum class HalfState { kForgotten, kDone, kUndone };
  HalfState StateOfHalf(std::uint64_t pair) const noexcept;

  /// The tree now is the one that is saved.
  void MarkSaved() noexcept;
  /// Whether the user's changes since MarkSaved, or since the beginning, come to nothing.
  bool IsAsSaved() const noexcept;

  /// Lets the songs that steps hold be meant by the numbers that they have now. Those in the tree are the
  /// caller's.
  void Renumber(const NewNumbers& numbers);

  /// Forgets all steps. The tree counts as saved.
  void Clear();

  /// How many bytes the steps hold, about.
  std::size_t Bytes() const noexcept { return bytes_; }
  std::size_t Steps() const noexcept { return undo_.size() + redo_.size(); }

 private:
  /// A folder that is in the tree on one side of the change and not on the other.
  struct FolderPresence {
    Folder* folder;
    Folder* parent;
    std::int32_t index;
    DetachedFolder detached;  ///< while it is not in the tree
  };
  /// A folder that lies elsewhere on the other side.
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
  /// Songs that are in a folder on one side of the change and not on the other.
  struct SongPresence {
    Folder* folder;
    std::vector<std::int32_t> rows;  ///< where they are, or have been, rising
    std::vector<SongEntry> entries;  ///< while they are not in the folder
    bool present;
  };
  struct SongOrder {
    Folder* folder;
    std::vector<std::int32_t> order;  ///< for each place of the other side its place on this one
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
  std::deque<Step> undo_;   ///< the latest at the end
  std::vector<Step> redo_;  ///< the next at the end
  bool last_was_undo_ = false;
  std::size_t bytes_ = 0;  ///< of both
  std::ptrdiff_t saved_ =
      0;  ///< how many steps were done when the tree was saved; kNever when those
          ///< steps are gone
};

}  // namespace tallow

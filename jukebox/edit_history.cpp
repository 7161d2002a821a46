// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/edit_history.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace tallow {

void EditHistory::Begin(const Folder* folder_to_show, std::string_view name) {
  open_ = {};
  open_.name = name;
  is_open_ = true;
  Show(folder_to_show);
}

void EditHistory::Show(const Folder* folder) {
  open_.show_after_undo = open_.show_after_redo = const_cast<Folder*>(folder);
}

void EditHistory::Discard() {
  ToggleAll(open_, true);
  open_ = {};
  is_open_ = false;
}

void EditHistory::End() {
  is_open_ = false;
  if (open_.changes.empty()) return;
  DropRedo();
  open_.bytes = BytesOf(open_);
  bytes_ += open_.bytes;
  undo_.push_back(std::move(open_));
  open_ = {};
  DropOldSteps();
  Changed();
}

void EditHistory::DropRedo() {
  for (const Step& step : redo_) bytes_ -= step.bytes;
  // A state that differs only by ranks counts as saved as well.
  const bool is_saved = IsAsSaved();
  redo_.clear();
  if (saved_at_ > static_cast<std::ptrdiff_t>(undo_.size())) saved_at_ = kUnreachable;
  if (is_saved) MarkSaved();
}

void EditHistory::DropOldSteps() {
  while (undo_.size() > kMinSteps && (undo_.size() > kMaxSteps || bytes_ > kMaxBytes)) {
    bytes_ -= undo_.front().bytes;
    const bool stays_saved = saved_at_ == 0 && !ChangesTree(undo_.front());
    undo_.pop_front();
    if (saved_at_ != kUnreachable && !stays_saved) --saved_at_;
  }
}

void EditHistory::Make(TreeChange change) {
  Toggle(change, tree_);
  open_.changes.push_back(std::move(change));
}

Folder& EditHistory::AddFolder(DetachedFolder folder, Folder* parent, std::int32_t index) {
  Folder& added = *folder;
  Make(FolderPresence{&added, parent, index, std::move(folder)});
  open_.show_after_redo = &added;
  return added;
}

void EditHistory::RemoveFolder(Folder& folder) {
  open_.show_after_undo = &folder;
  Make(FolderPresence{&folder, folder.Parent(), folder.Index(), nullptr});
}

void EditHistory::MoveFolder(Folder& folder, Folder* parent, std::int32_t index) {
  Make(FolderMove{&folder, parent, index});
}

void EditHistory::RenameFolder(Folder& folder, std::string_view text) {
  Make(FolderRename{&folder, std::string(text)});
}

void EditHistory::ReorderFolders(Folder* parent, std::vector<std::int32_t> order) {
  Make(FolderReorder{parent, Permutation(std::move(order))});
}

void EditHistory::AddSongs(Folder& folder, std::vector<SongEntry> entries) {
  if (entries.empty()) return;
  Positions positions(entries.size());
  std::iota(positions.begin(), positions.end(), static_cast<std::int32_t>(folder.Items().size()));
  Make(SongPresence{&folder, ElementToggle(std::move(positions), false), std::move(entries)});
}

void EditHistory::RemoveSongs(Folder& folder, Positions positions) {
  if (positions.empty()) return;
  Make(SongPresence{&folder, ElementToggle(std::move(positions), true), {}});
}

/// Whether an order gives another song to any position. The answer is the same before and after
/// the songs are put in this order.
bool EditHistory::MovesSongs(const Folder& folder, const std::vector<std::int32_t>& order) {
  const auto& songs = folder.Items();
  for (std::size_t k = 0; k < order.size(); ++k)
    if (songs[static_cast<std::size_t>(order[k])].SubItem() != songs[k].SubItem()) return true;
  return false;
}

void EditHistory::SongsReordered(Folder& folder, std::vector<std::int32_t> order) {
  if (!MovesSongs(folder, order)) return;
  SongReorder change{&folder, Permutation(std::move(order))};
  change.order.Invert();
  open_.changes.emplace_back(std::move(change));
}

bool EditHistory::ReorderSongs(Folder& folder, std::vector<std::int32_t> order) {
  if (!MovesSongs(folder, order)) return false;
  Make(SongReorder{&folder, Permutation(std::move(order))});
  return true;
}

void EditHistory::ChangeRanks(RankChange change) {
  if (!change.IsEmpty()) Make(std::move(change));
}

void EditHistory::FoldersAppended(Folder& parent, std::int32_t first) {
  for (std::int32_t k = first; k < parent.Children(); ++k)
    open_.changes.emplace_back(FolderPresence{&parent.ChildAt(k), &parent, k, nullptr});
}

void EditHistory::SongsAppended(Folder& folder, std::size_t first) {
  if (first >= folder.Items().size()) return;
  Positions positions(folder.Items().size() - first);
  std::iota(positions.begin(), positions.end(), static_cast<std::int32_t>(first));
  open_.changes.emplace_back(SongPresence{&folder, ElementToggle(std::move(positions), true), {}});
}

template <typename Concerns>
bool EditHistory::AnyChange(const Concerns& concerns) const {
  const auto any = [&](const Step& step) {
    return std::any_of(step.changes.begin(), step.changes.end(), concerns);
  };
  return std::any_of(undo_.begin(), undo_.end(), any) ||
         std::any_of(redo_.begin(), redo_.end(), any);
}

template <typename Change>
void EditHistory::Arrange(Change change, bool is_stored) {
  TreeChange toggled(std::move(change));
  Toggle(toggled, tree_);
  if (is_open_) {
    open_.changes.push_back(std::move(toggled));
    return;
  }
  if (!is_stored) return;
  const auto append = [&](Step& step) {
    const TreeChange& added = step.changes.emplace_back(std::get<Change>(toggled));
    const std::size_t bytes = tallow::BytesOf(added);
    step.bytes += bytes;
    bytes_ += bytes;
  };
  if (!undo_.empty()) append(undo_.back());
  if (redo_.empty()) return;
  append(redo_.back());
  // It comes before the changes of the step.
  auto& changes = redo_.back().changes;
  std::rotate(changes.begin(), changes.end() - 1, changes.end());
}

void EditHistory::ArrangeFolders(Folder& parent, std::vector<std::int32_t> order) {
  if (std::is_sorted(order.begin(), order.end())) return;
  const bool is_stored = AnyChange([&](const TreeChange& change) {
    if (const auto* const presence = std::get_if<FolderPresence>(&change))
      return presence->parent == &parent;
    if (const auto* const reorder = std::get_if<FolderReorder>(&change))
      return reorder->parent == &parent;
    // A move stores only one of its two parents.
    return std::holds_alternative<FolderMove>(change);
  });
  Arrange(FolderReorder{&parent, Permutation(std::move(order))}, is_stored);
}

void EditHistory::ArrangeSongs(Folder& folder, std::vector<std::int32_t> order) {
  if (std::is_sorted(order.begin(), order.end())) return;
  const bool is_stored = AnyChange([&](const TreeChange& change) {
    if (const auto* const presence = std::get_if<SongPresence>(&change))
      return presence->folder == &folder;
    const auto* const reorder = std::get_if<SongReorder>(&change);
    return reorder != nullptr && reorder->folder == &folder;
  });
  Arrange(SongReorder{&folder, Permutation(std::move(order))}, is_stored);
}

void EditHistory::ToggleAll(Step& step, bool undo) {
  const auto toggle = [&] {
    if (undo)
      for (auto change = step.changes.rbegin(); change != step.changes.rend(); ++change)
        Toggle(*change, tree_);
    else
      for (TreeChange& change : step.changes) Toggle(change, tree_);
  };
  const bool only_reorders = std::all_of(
      step.changes.begin(), step.changes.end(),
      [](const TreeChange& change) { return std::holds_alternative<FolderReorder>(change); });
  if (only_reorders)
    tree_.ReorderMany(toggle);
  else
    toggle();
}

/// Returns the step that was last undone or redone; null for none.
const EditHistory::Step* EditHistory::LastStep() const {
  if (last_was_undo_ ? redo_.empty() : undo_.empty()) return nullptr;
  return last_was_undo_ ? &redo_.back() : &undo_.back();
}

std::vector<std::int32_t> EditHistory::LastRankedSongs() const {
  std::vector<std::int32_t> songs;
  const Step* const step = LastStep();
  if (step == nullptr) return songs;
  for (const TreeChange& change : step->changes)
    if (const auto* const ranks = std::get_if<RankChange>(&change)) {
      const std::vector<std::int32_t> ranked = ranks->Songs();
      songs.insert(songs.end(), ranked.begin(), ranked.end());
    }
  return songs;
}

EditHistory::SongChange EditHistory::LastSongChange(const Folder& folder) const {
  SongChange result;
  const Step* const step = LastStep();
  if (step == nullptr) return result;
  for (const TreeChange& change : step->changes) {
    if (const auto* const reorder = std::get_if<SongReorder>(&change))
      result.any = result.any || reorder->folder == &folder;
    const auto* const presence = std::get_if<SongPresence>(&change);
    if (presence == nullptr || presence->folder != &folder) continue;
    result.any = true;
    const Positions& positions = presence->songs.At();
    if (presence->songs.InList())
      result.added.assign(positions.begin(), positions.end());
    else if (!positions.empty())
      result.first_removed_at = positions.front();
  }
  return result;
}

std::size_t EditHistory::MovedByLast(const Folder& folder, std::size_t position) const {
  const Step* const step = LastStep();
  if (step == nullptr) return position;
  const auto follow = [&](const TreeChange& change) {
    const auto* const reorder = std::get_if<SongReorder>(&change);
    // After a step, its orders are those that revert it.
    if (reorder != nullptr && reorder->folder == &folder)
      position = reorder->order.SourceOf(position);
  };
  if (last_was_undo_)
    std::for_each(step->changes.rbegin(), step->changes.rend(), follow);
  else
    std::for_each(step->changes.begin(), step->changes.end(), follow);
  return position;
}

EditHistory::LinkedStepState EditHistory::StateOfLinkedStep(std::uint64_t move) const noexcept {
  const auto is_of_move = [move](const Step& step) { return step.link.move == move; };
  if (std::any_of(undo_.begin(), undo_.end(), is_of_move)) return LinkedStepState::kDone;
  if (std::any_of(redo_.begin(), redo_.end(), is_of_move)) return LinkedStepState::kUndone;
  return LinkedStepState::kNone;
}

void EditHistory::RemoveSongsFiledMeanwhile(Step& redone) {
  for (TreeChange& change : redone.changes) {
    const auto* const presence = std::get_if<SongPresence>(&change);
    if (presence == nullptr || !presence->songs.InList()) continue;
    Positions duplicates = DuplicatesOf(*presence);
    if (duplicates.empty()) continue;
    RemoveAt(presence->folder->Items(), duplicates);
    SongsPruned(*presence->folder, std::move(duplicates));
  }
}

Folder* EditHistory::IfInTree(Folder* folder) const {
  return folder != nullptr && tree_.Contains(*folder) ? folder : nullptr;
}

Folder* EditHistory::Undo() {
  if (undo_.empty()) return nullptr;
  Step step = std::move(undo_.back());
  undo_.pop_back();
  ToggleAll(step, true);
  redo_.push_back(std::move(step));
  last_was_undo_ = true;
  Changed();
  return IfInTree(redo_.back().show_after_undo);
}

Folder* EditHistory::Redo() {
  if (redo_.empty()) return nullptr;
  Step step = std::move(redo_.back());
  redo_.pop_back();
  ToggleAll(step, false);
  undo_.push_back(std::move(step));
  RemoveSongsFiledMeanwhile(undo_.back());
  last_was_undo_ = false;
  Changed();
  return IfInTree(undo_.back().show_after_redo);
}

void EditHistory::SongsPruned(const Folder& folder, Positions positions) {
  if (positions.empty()) return;
  Positions earlier = positions;
  for (auto step = undo_.rbegin(); step != undo_.rend(); ++step)
    for (auto change = step->changes.rbegin(); change != step->changes.rend(); ++change)
      earlier = Prune(*change, folder, std::move(earlier));
  Positions later = std::move(positions);
  for (auto step = redo_.rbegin(); step != redo_.rend(); ++step)
    for (TreeChange& change : step->changes) later = Prune(change, folder, std::move(later));
}

void EditHistory::Renumber(const NewNumbers& numbers) {
  const auto renumber = [&numbers](Step& step) {
    for (TreeChange& change : step.changes) tallow::Renumber(change, numbers);
  };
  std::for_each(undo_.begin(), undo_.end(), renumber);
  std::for_each(redo_.begin(), redo_.end(), renumber);
}

void EditHistory::MarkSaved() noexcept { saved_at_ = static_cast<std::ptrdiff_t>(undo_.size()); }

/// Whether a step changes folders or songs, and not only ranks.
bool EditHistory::ChangesTree(const Step& step) {
  return !std::all_of(step.changes.begin(), step.changes.end(), [](const TreeChange& change) {
    return std::holds_alternative<RankChange>(change);
  });
}

bool EditHistory::IsAsSaved() const noexcept {
  if (saved_at_ == kUnreachable) return false;
  const auto now = static_cast<std::ptrdiff_t>(undo_.size());
  // The steps between the saved state and the present one.
  if (saved_at_ <= now) return std::none_of(undo_.begin() + saved_at_, undo_.end(), ChangesTree);
  return std::none_of(redo_.end() - (saved_at_ - now), redo_.end(), ChangesTree);
}

void EditHistory::Clear() {
  DropRedo();
  undo_.clear();
  bytes_ = 0;
  saved_at_ = 0;
}

std::size_t EditHistory::BytesOf(const Step& step) {
  std::size_t bytes = sizeof step + step.name.size();
  for (const TreeChange& change : step.changes) bytes += tallow::BytesOf(change);
  return bytes;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/edit_history.h"

#include <algorithm>
#include <numeric>
#include <unordered_set>
#include <utility>

namespace tallow {
namespace {

using Rows = std::vector<std::int32_t>;

/// Removes the entries at the given positions from a list and returns them.
std::vector<SongEntry> TakeOut(std::vector<SongEntry>& entries, const Rows& rows) {
  std::vector<SongEntry> taken;
  taken.reserve(rows.size());
  auto next = rows.begin();
  std::size_t kept = 0;
  for (std::size_t k = 0; k < entries.size(); ++k) {
    if (next != rows.end() && static_cast<std::size_t>(*next) == k) {
      taken.push_back(entries[k]);
      // Position 0: an entry that is not shown has its record number as text.
      taken.back().LabelPosition(0);
      ++next;
    } else {
      entries[kept++] = entries[k];
    }
  }
  entries.resize(kept);
  return taken;
}

/// Inserts entries into a list so that each gets its given position.
void PutIn(std::vector<SongEntry>& entries, const Rows& rows, const std::vector<SongEntry>& added) {
  std::size_t from = entries.size();
  entries.resize(entries.size() + added.size());
  std::size_t next = added.size();
  for (std::size_t k = entries.size(); k-- > 0 && next > 0;) {
    if (from == 0 || static_cast<std::size_t>(rows[next - 1]) >= k)
      entries[k] = added[--next];
    else
      entries[k] = entries[--from];
  }
}

Rows Inverse(const Rows& order) {
  Rows inverse(order.size());
  for (std::size_t k = 0; k < order.size(); ++k)
    inverse[static_cast<std::size_t>(order[k])] = static_cast<std::int32_t>(k);
  return inverse;
}

/// Counts the elements of an ascending list that are less than a number.
std::int32_t CountBelow(const Rows& rows, std::int32_t row) {
  return static_cast<std::int32_t>(std::lower_bound(rows.begin(), rows.end(), row) - rows.begin());
}

/// Adjusts positions after the entries at other positions were removed.
void CloseUp(Rows& rows, const Rows& removed) {
  for (std::int32_t& row : rows) row -= CountBelow(removed, row);
}

}  // namespace

void EditHistory::Begin(const Folder* concerned) {
  open_ = {};
  open_.concerned = open_.concerned_before = const_cast<Folder*>(concerned);
}

void EditHistory::End() {
  if (open_.changes.empty()) return;
  DropRedo();
  open_.bytes = BytesOf(open_);
  bytes_ += open_.bytes;
  undo_.push_back(std::move(open_));
  open_ = {};
  DropOldSteps();
}

void EditHistory::DropRedo() {
  for (const Step& step : redo_) bytes_ -= step.bytes;
  redo_.clear();
  if (saved_ > static_cast<std::ptrdiff_t>(undo_.size())) saved_ = kNever;
}

void EditHistory::DropOldSteps() {
  while (undo_.size() > kMinSteps && (undo_.size() > kMaxSteps || bytes_ > kMaxBytes)) {
    bytes_ -= undo_.front().bytes;
    undo_.pop_front();
    if (saved_ != kNever) --saved_;
  }
}

void EditHistory::Keep(Change change) { open_.changes.push_back(std::move(change)); }

Folder& EditHistory::AddFolder(DetachedFolder folder, Folder* parent, std::int32_t index) {
  Folder& added = *folder;
  FolderPresence change{&added, parent, index, std::move(folder)};
  Toggle(change);
  Keep(std::move(change));
  open_.concerned = &added;
  return added;
}

void EditHistory::RemoveFolder(Folder& folder) {
  FolderPresence change{&folder, folder.Parent(), folder.Index(), nullptr};
  open_.concerned_before = &folder;
  Toggle(change);
  Keep(std::move(change));
}

void EditHistory::MoveFolder(Folder& folder, Folder* parent, std::int32_t index) {
  FolderPlace change{&folder, parent, index};
  Toggle(change);
  Keep(std::move(change));
}

void EditHistory::RenameFolder(Folder& folder, std::string_view text) {
  FolderText change{&folder, std::string(text)};
  Toggle(change);
  Keep(std::move(change));
}

void EditHistory::ReorderFolders(Folder* parent, std::vector<std::int32_t> order) {
  FolderOrder change{parent, std::move(order)};
  Toggle(change);
  Keep(std::move(change));
}

void EditHistory::AddSongs(Folder& folder, std::vector<SongEntry> entries) {
  if (entries.empty()) return;
  Rows rows(entries.size());
  std::iota(rows.begin(), rows.end(), static_cast<std::int32_t>(folder.Items().size()));
  SongPresence change{&folder, std::move(rows), std::move(entries), false};
  Toggle(change);
  Keep(std::move(change));
}

void EditHistory::RemoveSongs(Folder& folder, std::vector<std::int32_t> rows) {
  if (rows.empty()) return;
  SongPresence change{&folder, std::move(rows), {}, true};
  Toggle(change);
  Keep(std::move(change));
}

void EditHistory::SongsReordered(Folder& folder, std::vector<std::int32_t> order) {
  if (std::is_sorted(order.begin(), order.end())) return;
  Keep(SongOrder{&folder, Inverse(order)});
}

void EditHistory::Toggle(FolderPresence& change) {
  if (change.detached == nullptr) {
    change.detached = tree_.Take(*change.folder);
    return;
  }
  // There should never be fewer siblings than before, but an index past the end would be undefined
  // behaviour.
  const std::int32_t siblings =
      change.parent != nullptr ? change.parent->Children() : tree_.Children();
  tree_.Put(std::move(change.detached), change.parent, std::min(change.index, siblings));
}

void EditHistory::Toggle(FolderPlace& change) {
  Folder* const parent = change.folder->Parent();
  const std::int32_t index = change.folder->Index();
  DetachedFolder folder = tree_.Take(*change.folder);
  const std::int32_t siblings =
      change.parent != nullptr ? change.parent->Children() : tree_.Children();
  tree_.Put(std::move(folder), change.parent, std::min(change.index, siblings));
  change.parent = parent;
  change.index = index;
}

void EditHistory::Toggle(FolderText& change) {
  std::string text = change.folder->Text();
  tree_.Rename(*change.folder, change.text);
  change.text = std::move(text);
}

void EditHistory::Toggle(FolderOrder& change) {
  const std::int32_t siblings =
      change.parent != nullptr ? change.parent->Children() : tree_.Children();
  Rows order = change.order;
  // Folders that were filed since then stay last.
  for (auto k = static_cast<std::int32_t>(order.size()); k < siblings; ++k) order.push_back(k);
  tree_.Reorder(change.parent, order);
  change.order = Inverse(change.order);
}

void EditHistory::Toggle(SongPresence& change) {
  std::vector<SongEntry>& entries = change.folder->Items();
  if (change.present) {
    change.entries = TakeOut(entries, change.rows);
  } else {
    PutIn(entries, change.rows, change.entries);
    std::vector<SongEntry>().swap(change.entries);
  }
  change.present = !change.present;
}

void EditHistory::Toggle(SongOrder& change) {
  std::vector<SongEntry>& entries = change.folder->Items();
  // As in a sort, the entries stay and the songs move. The icons move with the songs until the
  // folder is labelled again.
  std::vector<std::pair<std::int32_t, std::int32_t>> songs(change.order.size());
  for (std::size_t k = 0; k < songs.size(); ++k) {
    const SongEntry& from = entries[static_cast<std::size_t>(change.order[k])];
    songs[k] = {from.SubItem(), from.Icon()};
  }
  for (std::size_t k = 0; k < songs.size(); ++k) {
    entries[k].SubItem(songs[k].first);
    entries[k].Icon(songs[k].second);
  }
  change.order = Inverse(change.order);
}

void EditHistory::ToggleAny(Change& change) {
  std::visit([this](auto& any) { this->Toggle(any); }, change);
}

void EditHistory::ToggleAll(Step& step, bool back) {
  const auto toggle = [&] {
    if (back) std::reverse(step.changes.begin(), step.changes.end());
    for (Change& change : step.changes) ToggleAny(change);
    if (back) std::reverse(step.changes.begin(), step.changes.end());
  };
  const bool only_reorders =
      std::all_of(step.changes.begin(), step.changes.end(),
                  [](const Change& change) { return std::holds_alternative<FolderOrder>(change); });
  if (only_reorders)
    tree_.ReorderMany(toggle);
  else
    toggle();
}

EditHistory::SongChange EditHistory::LastSongChange(const Folder& folder) const {
  SongChange result;
  if (last_was_undo_ ? redo_.empty() : undo_.empty()) return result;
  const Step& step = last_was_undo_ ? redo_.back() : undo_.back();
  for (const Change& change : step.changes) {
    if (const auto* const order = std::get_if<SongOrder>(&change))
      result.any = result.any || order->folder == &folder;
    const auto* const songs = std::get_if<SongPresence>(&change);
    if (songs == nullptr || songs->folder != &folder) continue;
    result.any = true;
    if (songs->present)
      result.brought.assign(songs->rows.begin(), songs->rows.end());
    else if (!songs->rows.empty())
      result.taken = songs->rows.front();
  }
  return result;
}

EditHistory::HalfState EditHistory::StateOfHalf(std::uint64_t pair) const noexcept {
  const auto is_half = [pair](const Step& step) { return step.half.pair == pair; };
  if (std::any_of(undo_.begin(), undo_.end(), is_half)) return HalfState::kDone;
  if (std::any_of(redo_.begin(), redo_.end(), is_half)) return HalfState::kUndone;
  return HalfState::kForgotten;
}

void EditHistory::DropDoubles(Step& step) {
  for (Change& change : step.changes) {
    auto* const songs = std::get_if<SongPresence>(&change);
    if (songs == nullptr || !songs->present) continue;
    std::vector<SongEntry>& entries = songs->folder->Items();
    std::unordered_set<std::int32_t> others;
    auto next = songs->rows.begin();
    for (std::size_t k = 0; k < entries.size(); ++k)
      if (next != songs->rows.end() && static_cast<std::size_t>(*next) == k)
        ++next;
      else
        others.insert(entries[k].SubItem());
    Rows doubles;
    for (const std::int32_t row : songs->rows)
      if (others.contains(entries[static_cast<std::size_t>(row)].SubItem())) doubles.push_back(row);
    if (doubles.empty()) continue;
    TakeOut(entries, doubles);
    SongsPruned(*songs->folder, std::move(doubles));
  }
}

Folder* EditHistory::Undo() {
  if (undo_.empty()) return nullptr;
  Step step = std::move(undo_.back());
  undo_.pop_back();
  ToggleAll(step, true);
  redo_.push_back(std::move(step));
  last_was_undo_ = true;
  Folder* const concerned = redo_.back().concerned_before;
  return concerned != nullptr && tree_.Contains(*concerned) ? concerned : nullptr;
}

Folder* EditHistory::Redo() {
  if (redo_.empty()) return nullptr;
  Step step = std::move(redo_.back());
  redo_.pop_back();
  ToggleAll(step, false);
  undo_.push_back(std::move(step));
  DropDoubles(undo_.back());
  last_was_undo_ = false;
  Folder* const concerned = undo_.back().concerned;
  return concerned != nullptr && tree_.Contains(*concerned) ? concerned : nullptr;
}

void EditHistory::Carry(Change& change, const Folder& folder, Rows& rows) {
  if (auto* const songs = std::get_if<SongPresence>(&change)) {
    if (songs->folder != &folder) return;
    if (songs->present) {
      // Removed songs that this change added are gone for good. The others were in the folder
      // before this change, too.
      Rows before;
      Rows brought;
      for (const std::int32_t row : rows)
        (std::binary_search(songs->rows.begin(), songs->rows.end(), row) ? brought : before)
            .push_back(row);
      Rows left;
      std::set_difference(songs->rows.begin(), songs->rows.end(), brought.begin(), brought.end(),
                          std::back_inserter(left));
      CloseUp(before, songs->rows);
      CloseUp(left, rows);
      songs->rows = std::move(left);
      rows = std::move(before);
    } else {
      // Shift each position past the songs that this change removed.
      std::size_t out = 0;
      for (std::int32_t& row : rows) {
        while (out < songs->rows.size() && songs->rows[out] <= row + static_cast<std::int32_t>(out))
          ++out;
        row += static_cast<std::int32_t>(out);
      }
      CloseUp(songs->rows, rows);
    }
  } else if (auto* const order = std::get_if<SongOrder>(&change)) {
    if (order->folder != &folder) return;
    Rows left;
    Rows others;
    std::vector<char> gone(order->order.size());
    for (const std::int32_t row : rows)
      if (static_cast<std::size_t>(row) < gone.size())
        gone[static_cast<std::size_t>(row)] = 1;
      else
        others.push_back(row);
    Rows other_side;
    for (std::size_t k = 0; k < order->order.size(); ++k)
      if (gone[static_cast<std::size_t>(order->order[k])])
        other_side.push_back(static_cast<std::int32_t>(k));
      else
        left.push_back(order->order[k]);
    CloseUp(left, rows);
    order->order = std::move(left);
    rows = std::move(other_side);
    rows.insert(rows.end(), others.begin(), others.end());
  }
}

void EditHistory::SongsPruned(const Folder& folder, std::vector<std::int32_t> rows) {
  if (rows.empty()) return;
  Rows carried = rows;
  for (auto step = undo_.rbegin(); step != undo_.rend(); ++step)
    for (auto change = step->changes.rbegin(); change != step->changes.rend(); ++change)
      Carry(*change, folder, carried);
  carried = std::move(rows);
  for (auto step = redo_.rbegin(); step != redo_.rend(); ++step)
    for (Change& change : step->changes) Carry(change, folder, carried);
}

void EditHistory::Renumber(Step& step, const NewNumbers& numbers) {
  for (Change& change : step.changes) {
    if (auto* const songs = std::get_if<SongPresence>(&change))
      tallow::Renumber(songs->entries, numbers);
    else if (auto* const presence = std::get_if<FolderPresence>(&change))
      if (presence->detached != nullptr) tallow::Renumber(*presence->detached, numbers);
  }
}

void EditHistory::Renumber(const NewNumbers& numbers) {
  for (Step& step : undo_) Renumber(step, numbers);
  for (Step& step : redo_) Renumber(step, numbers);
}

void EditHistory::MarkSaved() noexcept { saved_ = static_cast<std::ptrdiff_t>(undo_.size()); }

bool EditHistory::IsAsSaved() const noexcept {
  return saved_ == static_cast<std::ptrdiff_t>(undo_.size());
}

void EditHistory::Clear() {
  DropRedo();
  undo_.clear();
  bytes_ = 0;
  saved_ = 0;
}

namespace {

std::size_t BytesOfFolder(const Folder& folder) {
  std::size_t bytes = sizeof folder + folder.Items().capacity() * sizeof(SongEntry);
  for (std::int32_t k = 0; k < folder.Children(); ++k) bytes += BytesOfFolder(folder.ChildAt(k));
  return bytes;
}

struct ChangeBytes {
  template <typename Change>
  std::size_t operator()(const Change& change) const {
    if constexpr (requires { change.detached; })
      // Also count a folder that is in the tree now: toggling the change would make this step its
      // owner.
      return BytesOfFolder(*change.folder);
    else if constexpr (requires { change.rows; })
      return change.rows.size() * (sizeof(std::int32_t) + sizeof(SongEntry));
    else if constexpr (requires { change.order; })
      return change.order.size() * sizeof(std::int32_t);
    else if constexpr (requires { change.text; })
      return change.text.size();
    else
      return 0;
  }
};

}  // namespace

std::size_t EditHistory::BytesOf(const Step& step) {
  std::size_t bytes = sizeof step;
  for (const Change& change : step.changes)
    bytes += sizeof change + std::visit(ChangeBytes{}, change);
  return bytes;
}

}  // namespace tallow

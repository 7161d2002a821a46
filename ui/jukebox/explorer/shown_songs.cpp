// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/shown_songs.h"

#include <algorithm>
#include <unordered_set>

#include <QItemSelectionModel>
#include <QScrollBar>

#include "jukebox/jukebox.h"
#include "library/cls_main.h"
#include "ui/jukebox/song_list_model.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

/// Counts the entries of each song on the way through a folder.
class EntryCounts {
 public:
  explicit EntryCounts(const clsMain& library)
      : counts_(static_cast<std::size_t>(library.UBoundOfMp3Array()) + 1) {}

  /// Counts an entry of a song.
  /// \returns how many were counted before; 0 for a song that the library does not have
  int Next(std::int32_t record) {
    const auto index = static_cast<std::size_t>(record);
    return record < 0 || index >= counts_.size() ? 0 : counts_[index]++;
  }

 private:
  std::vector<int> counts_;  ///< by record number
};

/// Identifies an entry of a folder.
std::uint64_t KeyOf(const ShownSongs::Entry& entry) {
  return std::uint64_t{static_cast<std::uint32_t>(entry.record)} << 32U |
         static_cast<std::uint32_t>(entry.earlier);
}

}  // namespace

ShownSongs::Entry ShownSongs::EntryAt(const Folder& folder, int index) {
  const auto& items = folder.Items();
  const std::int32_t record = items.at(static_cast<std::size_t>(index)).SubItem();
  const auto earlier =
      std::count_if(items.begin(), items.begin() + index,
                    [record](const SongEntry& entry) { return entry.SubItem() == record; });
  return {record, static_cast<int>(earlier)};
}

void ShownSongs::Refill() {
  if (jukebox_.ListFolder() == nullptr) return;
  keeps_scroll_position_ = true;
  jukebox_.ListRefilled(library_);
  keeps_scroll_position_ = false;
}

void ShownSongs::ShowHits(const std::vector<std::int32_t>& songs) {
  if (!jukebox_.ShowsHits()) before_hits_ = CurrentPlace();
  jukebox_.ShowHits(songs, library_);
}

void ShownSongs::HideHits() {
  if (!jukebox_.ShowsHits()) return;
  jukebox_.HideHits(library_);
  GoTo(before_hits_);
}

void ShownSongs::Renumber(const NewNumbers& numbers) {
  const auto renumber = [&numbers](Place::Song& song) {
    if (const auto found = numbers.find(song.entry.record); found != numbers.end())
      song.entry.record = found->second;
  };
  std::ranges::for_each(before_hits_.selected, renumber);
  renumber(before_hits_.current);
}

void ShownSongs::FillList() {
  QScrollBar& bar = *view_.verticalScrollBar();
  QScrollBar& sideways = *view_.horizontalScrollBar();
  const int position = keeps_scroll_position_ ? bar.value() : 0;
  const int left = sideways.value();
  model_.Refill();
  view_.FitColumns();
  bar.setValue(position);
  sideways.setValue(left);
}

std::vector<int> ShownSongs::Selected() const {
  // Reads the selection by ranges, because checking each row is slow for many rows.
  std::vector<int> rows;
  for (const QItemSelectionRange& range : view_.selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  for (int& row : rows) row = model_.PlaceOf(row);
  return rows;
}

int ShownSongs::Chosen() const {
  const QItemSelectionModel& selection = *view_.selectionModel();
  if (selection.isSelected(selection.currentIndex()))
    return model_.PlaceOf(selection.currentIndex().row());
  const std::vector<int> selected = Selected();
  return selected.empty() ? -1 : selected.front();
}

int ShownSongs::Select(Entry entry) {
  const Folder* const folder = jukebox_.ListFolder();
  if (folder == nullptr) return -1;
  for (int row = 0; row < model_.rowCount(); ++row) {
    const int index = model_.PlaceOf(row);
    const SongEntry& song = folder->Items()[static_cast<std::size_t>(index)];
    if (song.SubItem() != entry.record || entry.earlier-- > 0) continue;
    view_.SelectRows(row, row);
    return index;
  }
  return -1;
}

bool ShownSongs::Select(const std::vector<int>& indexes) {
  std::vector<int> rows;
  for (const int index : indexes)
    if (const int row = model_.RowAt(index); model_.PlaceOf(row) == index) rows.push_back(row);
  if (!rows.empty()) view_.SelectRows(rows);
  return !rows.empty();
}

void ShownSongs::SelectNear(int index) {
  const int last = model_.rowCount() - 1;
  const int row = std::min(model_.RowAt(index), last);
  if (last >= 0) view_.SelectRows(row, row);
}

void ShownSongs::SongsAdded(const Folder& to, std::size_t before) {
  if (&to != jukebox_.ListFolder()) return;
  Refill();
  const int first = model_.RowAt(static_cast<int>(before));
  if (first < model_.rowCount()) view_.SelectRows(first, model_.rowCount() - 1);
}

void ShownSongs::SongsTaken(int first) {
  Refill();
  SelectNear(first);
}

int ShownSongs::Beside(int index, bool above) const {
  return model_.PlaceOf(model_.RowAt(index) + (above ? -1 : 1));
}

int ShownSongs::IndexAt(int row) const {
  const Folder* const folder = jukebox_.selectednode();
  if (folder == nullptr) return 0;
  return row < model_.rowCount() ? model_.PlaceOf(row) : static_cast<int>(folder->Items().size());
}

void ShownSongs::EnsureVisible(int index) { view_.scrollTo(model_.index(model_.RowAt(index), 0)); }

QRect ShownSongs::RectOf(int index) const {
  const QRect rect = view_.visualRect(model_.index(model_.RowAt(index), model_.NamingColumn()));
  return {view_.viewport()->mapToGlobal(rect.topLeft()), rect.size()};
}

ShownSongs::Place ShownSongs::CurrentPlace() const {
  const Folder* const folder = jukebox_.ListFolder();
  if (folder == nullptr) return {};
  Place place{.folder = folder->Key(), .scrolled = view_.verticalScrollBar()->value()};
  for (const int index : Selected()) place.selected.push_back({.index = index});
  place.current.index = model_.PlaceOf(view_.currentIndex().row());
  ReadEntries(*folder, place);
  return place;
}

ShownSongs::Place ShownSongs::PlaceInFolder() const {
  return jukebox_.ShowsHits() ? before_hits_ : CurrentPlace();
}

void ShownSongs::ReadEntries(const Folder& folder, Place& place) const {
  const auto& items = folder.Items();
  EntryCounts counts(library_);
  auto next = place.selected.begin();
  for (std::size_t k = 0; k < items.size(); ++k) {
    const auto index = static_cast<int>(k);
    // Nothing to read behind the last song of the state.
    if (next == place.selected.end() && index > place.current.index) return;
    const std::int32_t record = items[k].SubItem();
    const Entry entry{.record = record, .earlier = counts.Next(record)};
    if (next != place.selected.end() && next->index == index) (next++)->entry = entry;
    if (place.current.index == index) place.current.entry = entry;
  }
}

void ShownSongs::Move(Place& place, const std::function<std::size_t(std::size_t)>& moved_to) const {
  const Folder* const folder = jukebox_.selectednode();
  if (folder == nullptr || folder->Key() != place.folder) return;
  const auto move = [&](Place::Song& song) {
    if (song.index >= 0)
      song.index = static_cast<int>(moved_to(static_cast<std::size_t>(song.index)));
  };
  std::ranges::for_each(place.selected, move);
  move(place.current);
  std::ranges::sort(place.selected, {}, &Place::Song::index);
  ReadEntries(*folder, place);
}

std::vector<int> ShownSongs::RowsOf(const std::vector<Place::Song>& songs,
                                    const Folder& folder) const {
  const auto& items = folder.Items();
  std::vector<int> rows;
  for (const auto& [index, entry] : songs) {
    const int row = model_.RowAt(index);
    if (index < 0 || model_.PlaceOf(row) != index ||
        items[static_cast<std::size_t>(index)].SubItem() != entry.record)
      break;
    rows.push_back(row);
  }
  if (rows.size() == songs.size()) return rows;
  rows.clear();
  std::unordered_set<std::uint64_t> wanted;
  for (const auto& [index, entry] : songs)
    if (index >= 0) wanted.insert(KeyOf(entry));
  if (wanted.empty()) return rows;
  EntryCounts counts(library_);
  for (std::size_t k = 0; k < items.size() && !wanted.empty(); ++k) {
    const std::int32_t record = items[k].SubItem();
    if (wanted.erase(KeyOf({.record = record, .earlier = counts.Next(record)})) == 0) continue;
    const int row = model_.RowAt(static_cast<int>(k));
    if (model_.PlaceOf(row) == static_cast<int>(k)) rows.push_back(row);
  }
  return rows;
}

void ShownSongs::GoTo(const Place& place) {
  const Folder* const folder = jukebox_.ListFolder();
  if (folder == nullptr || folder->Key() != place.folder) return;
  const std::vector<int> selected = RowsOf(place.selected, *folder);
  const std::vector<int> current = RowsOf({place.current}, *folder);
  QItemSelectionModel& selection = *view_.selectionModel();
  // In two steps, because the cost of replacing a selection grows with the product of the numbers
  // of ranges of both selections.
  selection.clearSelection();
  selection.setCurrentIndex(current.empty() ? QModelIndex() : model_.index(current.front(), 0),
                            QItemSelectionModel::NoUpdate);
  selection.select(view_.RangesOf(selected), QItemSelectionModel::Select);
  view_.verticalScrollBar()->setValue(place.scrolled);
}

void ShownSongs::Follow(const Place& place) {
  // Refills the list first; otherwise the view extends the selection from the last clicked row.
  model_.Refill();
  GoTo(place);
  if (!place.selected.empty()) view_.scrollTo(view_.currentIndex());
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/shown_songs.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include <QItemSelectionModel>
#include <QScrollBar>

#include "app/play_commands.h"
#include "jukebox/jukebox.h"
#include "ui/jukebox/song_list_model.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {

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
  std::vector<int> indexes = Selected();
  Place place{.folder = folder->Key(),
              .selected = SongsOf(*folder, indexes),
              .indexes = std::move(indexes),
              .scrolled = view_.verticalScrollBar()->value()};
  const std::vector<std::int32_t> current =
      SongsOf(*folder, {model_.PlaceOf(view_.currentIndex().row())});
  if (!current.empty()) place.current = current.front();
  return place;
}

std::int32_t ShownSongs::RecordIn(const Folder& folder, int row) const {
  return folder.Items()[static_cast<std::size_t>(model_.PlaceOf(row))].SubItem();
}

std::vector<int> ShownSongs::RowsOf(const Place& place, const Folder& folder) const {
  std::vector<int> rows;
  for (std::size_t k = 0; k < place.selected.size(); ++k) {
    const int row = model_.RowAt(place.indexes[k]);
    if (model_.PlaceOf(row) != place.indexes[k] || RecordIn(folder, row) != place.selected[k])
      break;
    rows.push_back(row);
  }
  if (rows.size() == place.selected.size()) return rows;
  rows.clear();
  std::unordered_map<std::int32_t, int> wanted;
  for (const std::int32_t record : place.selected) ++wanted[record];
  for (int row = 0; row < model_.rowCount(); ++row) {
    const auto found = wanted.find(RecordIn(folder, row));
    if (found != wanted.end() && found->second-- > 0) rows.push_back(row);
  }
  return rows;
}

void ShownSongs::GoTo(const Place& place) {
  const Folder* const folder = jukebox_.ListFolder();
  if (folder == nullptr || folder->Key() != place.folder) return;
  const std::vector<int> selected = RowsOf(place, *folder);
  QModelIndex current;
  // The current song is one of the selected ones, if it can be.
  for (const int row : selected)
    if (!current.isValid() && RecordIn(*folder, row) == place.current)
      current = model_.index(row, 0);
  for (int row = 0; row < model_.rowCount() && !current.isValid(); ++row)
    if (RecordIn(*folder, row) == place.current) current = model_.index(row, 0);
  QItemSelectionModel& selection = *view_.selectionModel();
  // In two steps, because the cost of replacing a selection grows with the product of the numbers
  // of ranges of both selections.
  selection.clearSelection();
  selection.setCurrentIndex(current, QItemSelectionModel::NoUpdate);
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

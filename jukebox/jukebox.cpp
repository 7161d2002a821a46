// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox.h"

#include <cstddef>
#include <unordered_set>
#include <utility>

#include "jukebox/sorting.h"
#include "library/cls_main.h"

namespace tallow {

std::string_view FileNameOf(const SongEntry& entry, const clsMain& library) {
  return library.Song(entry.SubItem()).Name();
}

std::string EntryText(const SongEntry& entry, const clsMain& library) {
  if (entry.LabelPosition() == 0) return std::to_string(entry.SubItem());
  return (std::to_string(entry.LabelPosition()) + ".  ").append(FileNameOf(entry, library));
}

bool Jukebox::Load(const std::string& path, const clsMain& library,
                   const ResolveConfusedSongs& ask) {
  const auto loaded = file_.Load(path, library, ask);
  if (loaded == nullptr) return false;
  Replace(*loaded);
  return true;
}

bool Jukebox::LoadUnsaved(std::string_view bytes, const std::string& file, const clsMain& library,
                          const ResolveConfusedSongs& ask) {
  const auto loaded = file_.LoadUnsaved(bytes, file, library, ask);
  if (loaded == nullptr) return false;
  Replace(*loaded);
  was_marked_dirty_ = true;
  return true;
}

void Jukebox::Replace(LoadedJukebox& loaded) {
  found_.Hide();
  display_.ForgetFolder();
  order_.Reset();
  history_.Clear();
  tree_.Swap(loaded.folders);
  display_.ColumnHeaders(std::move(loaded.columns));
  display_.HeadersChanged();
  display_.ListChanged();
  if (changed_) changed_();
}

void Jukebox::Renumber(const NewNumbers& numbers) {
  const std::uint64_t before = ContentHash(tree_);
  for (std::int32_t k = 0; k < tree_.Children(); ++k) tallow::Renumber(tree_.ChildAt(k), numbers);
  found_.Renumber(numbers);
  history_.Renumber(numbers);
  file_.Content().Renumbered(before, ContentHash(tree_));
  display_.Renumbered(numbers);
}

void Jukebox::IsFormDirty(bool dirty) noexcept {
  was_marked_dirty_ = dirty;
  if (!dirty) history_.MarkSaved();
  if (changed_) changed_();
}

void Jukebox::OnChange(std::function<void()> changed) {
  changed_ = changed;
  history_.OnChange(std::move(changed));
}

Jukebox::StepResult Jukebox::Undo() {
  return history_.CanUndo() ? AfterStep(history_.Undo()) : StepResult{};
}

Jukebox::StepResult Jukebox::Redo() {
  return history_.CanRedo() ? AfterStep(history_.Redo()) : StepResult{};
}

Jukebox::StepResult Jukebox::AfterStep(Folder* concerned) {
  HideRemovedFolder();
  const Folder* const shown = selectednode();
  return {.done = true,
          .concerned = concerned,
          .list_changed = shown != nullptr && history_.LastSongChange(*shown).any,
          .ranked = history_.LastRankedSongs()};
}

void Jukebox::ResetSort() {
  display_.NameColumnHeader(kNameHeader);
  order_.Reset();
}

void Jukebox::HideRemovedFolder() {
  if (selectednode() == nullptr || tree_.Contains(*selectednode())) return;
  display_.ShowFolder(nullptr);
  display_.ListChanged();
}

void Jukebox::LabelSongs(const clsMain& library) {
  Folder& shown = *ListFolder();
  std::vector<std::int32_t> pruned = RefreshFolderList(shown, library);
  if (!ShowsHits()) history_.SongsPruned(shown, std::move(pruned));
}

void Jukebox::ShowFolder(Folder& folder, const clsMain& library, std::int64_t& folder_changes) {
  ++folder_changes;
  found_.Hide();
  display_.ShowFolder(&folder);
  // Fill the list first: a header change makes views read the rows.
  ListRefilled(library);
  ResetSort();
}

void Jukebox::ShowHits(const std::vector<std::int32_t>& songs, const clsMain& library) {
  if (!ShowsHits()) {
    order_before_hits_ = order_;
    header_before_hits_ = ColumnHeaders().empty() ? std::string() : ColumnHeaders().front();
  }
  found_.Show(songs);
  // A search finds no songs that LabelSongs would remove.
  std::int32_t position = 0;
  for (SongEntry& entry : ListFolder()->Items()) {
    entry.LabelPosition(++position);
    entry.Icon(library.Song(entry.SubItem()).Rank());
  }
  // Fill the list first, as ShowFolder does.
  display_.ListChanged();
  ResetSort();
}

std::vector<std::string> Jukebox::HeadersOfFolder() const {
  std::vector<std::string> headers = ColumnHeaders();
  if (ShowsHits() && !headers.empty()) headers.front() = header_before_hits_;
  return headers;
}

void Jukebox::HideHits(const clsMain& library) {
  if (!ShowsHits()) return;
  found_.Hide();
  if (selectednode() != nullptr)
    ListRefilled(library);
  else
    display_.ListChanged();
  order_ = order_before_hits_;
  display_.NameColumnHeader(header_before_hits_);
}

void Jukebox::ListRefilled(const clsMain& library) {
  if (ListFolder() == nullptr) return;
  LabelSongs(library);
  display_.ListChanged();
}

void Jukebox::RanksChanged(const clsMain& library, const std::vector<std::int32_t>& songs) {
  Folder* const shown = ListFolder();
  if (shown == nullptr) return;
  const std::unordered_set<std::int32_t> ranked(songs.begin(), songs.end());
  for (SongEntry& entry : shown->Items()) {
    if (!ranked.contains(entry.SubItem())) continue;
    if (const SongView song = library.Song(entry.SubItem()); song.Exists()) entry.Icon(song.Rank());
  }
  PicturesChanged();
}

void Jukebox::ColumnClick(const clsMain& library) {
  Folder* const shown = ListFolder();
  if (shown == nullptr) return;
  std::string_view header;
  try {
    header = order_.SortByNext(*shown, library, ShowsHits() ? found_.History() : history_);
  } catch (...) {
    ListRefilled(library);
    throw;
  }
  Reordered(library, header);
}

void Jukebox::SortByColumn(const clsMain& library, const ColumnKeys& keys, bool descending) {
  Folder* const shown = ListFolder();
  if (shown == nullptr) return;
  order_.SortBy(*shown, library, ShowsHits() ? found_.History() : history_, keys, descending);
  Reordered(library, kNameHeader);
}

void Jukebox::Reordered(const clsMain& library, std::string_view header) {
  const Folder& shown = *ListFolder();
  const std::size_t before = shown.Items().size();
  LabelSongs(library);
  display_.NameColumnHeader(header);
  if (shown.Items().size() == before)
    display_.LabelsChanged();
  else
    display_.ListChanged();
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/explorer_edits.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "jukebox/found_songs.h"
#include "jukebox/jukebox.h"
#include "jukebox/special_folders.h"
#include "ui/jukebox/explorer/shown_songs.h"
#include "ui/jukebox/folder_tree_view.h"

namespace tallow {

ExplorerEdits::ExplorerEdits(Jukebox& jukebox, JukeboxClipboard& clipboard, FolderTreeView& tree,
                             ShownSongs& songs)
    : jukebox_(jukebox), edits_(jukebox, clipboard), tree_(tree), songs_(songs) {}

Folder* ExplorerEdits::FolderOfKey(std::uint32_t key) const {
  if (jukebox_.ShowsHits() && jukebox_.ListFolder()->Key() == key) return jukebox_.ListFolder();
  return key != 0 ? jukebox_.Nodes().FindKey(key) : nullptr;
}

bool ExplorerEdits::MayCut(const Folder& folder, bool songs) {
  BeforeCutEvent event{folder, songs};
  emit BeforeCut(event);
  return !event.cancel;
}

void ExplorerEdits::ReportProblem(JukeboxEdits::Result result) {
  if (result == JukeboxEdits::Result::kTooDeep)
    emit Problem({tr("Folders can be nested at most %1 levels deep. Choose a higher folder.")
                      .arg(kMaxLevel)});
  if (result == JukeboxEdits::Result::kNeedsFolder)
    emit Problem({tr("Songs go into a folder. Select a folder and paste again.")});
  if (result == JukeboxEdits::Result::kAlreadyThere)
    emit Problem({tr("The folder already has these songs.")});
}

void ExplorerEdits::SortNodes(Folder* above) {
  if (!edits_.SortNodes(above)) emit Problem({tr("The folders are sorted already.")});
}

void ExplorerEdits::CutSongs(std::string_view verb) {
  Folder* const folder = jukebox_.selectednode();
  const std::vector<int> rows = songs_.Selected();
  if (jukebox_.ShowsHits() || folder == nullptr || rows.empty() || !MayCut(*folder, true)) return;
  edits_.CutSongs(*folder, rows, verb);
  songs_.SongsTaken(rows.front());
}

void ExplorerEdits::CopySongs() {
  if (const Folder* const folder = jukebox_.ListFolder())
    edits_.CopySongs(*folder, songs_.Selected());
}

void ExplorerEdits::CutFolder(Folder& folder) {
  if (!MayCut(folder, false)) return;
  SelectNeighbour(folder);
  edits_.CutFolder(folder);
}

void ExplorerEdits::DeleteFolder(Folder& folder) {
  SelectNeighbour(folder);
  edits_.DeleteFolder(folder);
}

void ExplorerEdits::SelectNeighbour(const Folder& folder) {
  // Otherwise the tree itself selects a folder, perhaps one that is about to be removed.
  const Folder* const shown = jukebox_.selectednode();
  const Folder* const beside = FolderToShowAfterRemoval(folder);
  if (shown != nullptr && beside != nullptr && folder.Holds(*shown)) tree_.SelectFolder(*beside);
}

void ExplorerEdits::Paste(Folder* into) {
  const std::int32_t folders = jukebox_.Nodes().Count();
  const std::size_t songs = into != nullptr ? into->Items().size() : 0;
  const JukeboxEdits::Result result = edits_.Paste(into);
  ReportProblem(result);
  if (result != JukeboxEdits::Result::kDone) return;
  if (jukebox_.Nodes().Count() == folders)
    songs_.SongsAdded(*into, songs);
  else if (into != nullptr)
    tree_.ExpandFolder(*into);
}

void ExplorerEdits::AddFolder(Folder* parent) {
  Folder* const folder = edits_.AddFolder(parent);
  if (folder == nullptr) return ReportProblem(JukeboxEdits::Result::kTooDeep);
  tree_.SelectFolder(*folder);
  tree_.EditText(*folder);
}

void ExplorerEdits::AddFolderOf(std::string_view text, const std::vector<SongEntry>& songs) {
  const Folder& folder = edits_.AddFolderOf(text, songs);
  tree_.SelectFolder(folder);
  tree_.EditText(folder);
}

bool ExplorerEdits::Rename(Folder& folder, std::string_view text) {
  const std::int32_t index = folder.Index();
  const bool renamed = edits_.Rename(folder, text);
  if (folder.Index() != index) tree_.ScrollToFolder(folder);
  return renamed;
}

void ExplorerEdits::MoveToRoot(Folder& folder) {
  if (folder.Level() > 0) DropFolder(*this, folder, nullptr, false);
}

void ExplorerEdits::AddSongs(Folder& to, const std::vector<SongEntry>& songs) {
  const std::size_t before = to.Items().size();
  if (edits_.AddSongs(to, songs) == JukeboxEdits::Result::kDone) songs_.SongsAdded(to, before);
}

void ExplorerEdits::DropSongs(ExplorerEdits& source, Folder& from, const std::vector<int>& rows,
                              Folder& to, bool copy) {
  // Songs stay in an automatic folder when they are dragged; only a cut removes them. Hits of a
  // search can only be copied.
  if (IsAutomaticFolder(from) || IsOfHits(from)) copy = true;
  if (!copy && !source.MayCut(from, true)) return;
  const std::size_t before = to.Items().size();
  edits_.DropSongs(source.edits_, from, rows, to, copy);
  if (to.Items().size() > before) songs_.SongsAdded(to, before);
  if (!copy && &from == source.jukebox_.ListFolder()) source.songs_.SongsTaken(rows.front());
}

void ExplorerEdits::MoveSongsTo(const std::vector<int>& rows, int before) {
  Folder* const folder = jukebox_.selectednode();
  if (folder == nullptr || jukebox_.ShowsHits()) return;
  ShownSongs::Place place = songs_.CurrentPlace();
  FollowMove(std::move(place), edits_.MoveSongsTo(*folder, rows, before));
}

void ExplorerEdits::MoveSongsByOne(bool up) {
  Folder* const folder = jukebox_.selectednode();
  std::vector<int> rows = songs_.Selected();
  if (folder == nullptr || jukebox_.ShowsHits() || rows.empty()) return;
  if (!up) std::reverse(rows.begin(), rows.end());
  std::vector<int> neighbours;
  for (const int row : rows) neighbours.push_back(songs_.Beside(row, up));
  if (std::find(neighbours.begin(), neighbours.end(), -1) != neighbours.end()) return;
  ShownSongs::Place place = songs_.CurrentPlace();
  FollowMove(std::move(place), edits_.MoveSongsByOne(*folder, rows, neighbours));
}

void ExplorerEdits::FollowMove(ShownSongs::Place place, const JukeboxEdits::SongMove& move) {
  if (move.moved_to.size() == 0) return;
  songs_.Move(place, [&](std::size_t index) { return move.moved_to.SourceOf(index); });
  if (move.is_step) {
    songs_.Refill();
    // The songs are no longer in the order that the header names.
    jukebox_.ResetSort();
  }
  songs_.Follow(place);
}

void ExplorerEdits::DropFolder(ExplorerEdits& source, Folder& folder, Folder* to, bool copy) {
  if (!copy && !source.MayCut(folder, false)) return;
  if (!FolderTree::FitsBelow(to, folder)) return ReportProblem(JukeboxEdits::Result::kTooDeep);
  const Folder* const shown = jukebox_.selectednode();
  if (&source != this && !copy) source.SelectNeighbour(folder);
  const bool moves_shown = &source == this && !copy && shown != nullptr && folder.Holds(*shown);
  ReportProblem(edits_.DropFolder(source.edits_, folder, to, copy));
  if (to != nullptr) tree_.ExpandFolder(*to);
  // The tree lost the selection during the move.
  if (moves_shown) tree_.SelectFolder(*shown);
}

}  // namespace tallow

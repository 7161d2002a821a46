// SPDX-License-Identifier: GPL-3.0-or-later
// The editing, drag and drop functions of PVExplorer.
#include <algorithm>

#include <QDrag>
#include <QDropEvent>
#include <QItemSelectionModel>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

#include "jukebox/special_folders.h"
#include "library/cls_main.h"
#include "ui/jukebox/explorer_drag.h"
#include "ui/jukebox/folder_tree_model.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_model.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

/// Draws the picture at the pointer during a drag: a short text.
QPixmap PictureOfDrag(const QString& text, const QWidget& of) {
  constexpr int kPadding = 6;
  const QSize size =
      of.fontMetrics().size(Qt::TextSingleLine, text) + QSize(2 * kPadding, kPadding);
  QPixmap picture(size * of.devicePixelRatio());
  picture.setDevicePixelRatio(of.devicePixelRatio());
  picture.fill(of.palette().color(QPalette::Highlight));
  QPainter painter(&picture);
  painter.setFont(of.font());
  painter.setPen(of.palette().color(QPalette::HighlightedText));
  painter.drawText(QRect(QPoint(), size), Qt::AlignCenter, text);
  return picture;
}

/// Draws an arrow cursor without a copy or link symbol.
QPixmap PlainCursor() {
  QPixmap cursor(16, 20);
  cursor.fill(Qt::transparent);
  QPainter painter(&cursor);
  painter.setPen(Qt::white);
  painter.setBrush(Qt::black);
  painter.drawPolygon(QPolygon({{0, 0}, {0, 15}, {4, 11}, {7, 18}, {9, 17}, {6, 10}, {11, 10}}));
  return cursor;
}

}  // namespace

bool PVExplorer::MayCut(const Folder& folder, bool songs) {
  BeforeCutEvent event{folder, songs};
  emit BeforeCut(event);
  return !event.cancel;
}

void PVExplorer::RefillList() {
  if (selectednode() == nullptr) return;
  keep_place_ = true;
  jukebox_.ListRefilled(library_);
  keep_place_ = false;
}

void PVExplorer::SongsAdded(const Folder& to, std::size_t before) {
  if (&to != selectednode()) return;
  RefillList();
  const int first = songs_->RowAt(static_cast<int>(before));
  if (first < songs_->rowCount()) list_->SelectRows(first, songs_->rowCount() - 1);
}

void PVExplorer::Tell(JukeboxEdits::Result result) {
  if (result == JukeboxEdits::Result::kTooDeep)
    emit Problem({tr("Folders can be nested at most %1 levels deep. Choose a higher folder.")
                      .arg(kMaxLevel)});
  if (result == JukeboxEdits::Result::kNeedsFolder)
    emit Problem(
        {tr("Songs go into a folder. Click the folder that they are for, and paste again.")});
}

void PVExplorer::CutSongs() {
  Folder* const folder = selectednode();
  const std::vector<int> rows = SelectedRows();
  if (folder == nullptr || rows.empty() || !MayCut(*folder, true)) return;
  edits_.CutSongs(*folder, rows);
  SongsTaken(rows.front());
}

void PVExplorer::SongsTaken(int first) {
  RefillList();
  SelectNear(first);
}

void PVExplorer::SelectNear(int row) {
  // Selects the song after the removed songs.
  const int last = songs_->rowCount() - 1;
  const int next = std::min(songs_->RowAt(row), last);
  if (last >= 0) list_->SelectRows(next, next);
}

void PVExplorer::CopySongs() {
  if (const Folder* const folder = selectednode()) edits_.CopySongs(*folder, SelectedRows());
}

void PVExplorer::CutFolder(Folder& folder) {
  if (!MayCut(folder, false)) return;
  SelectNeighbour(folder);
  edits_.CutFolder(folder);
}

void PVExplorer::DeleteFolder(Folder& folder) {
  SelectNeighbour(folder);
  edits_.DeleteFolder(folder);
}

void PVExplorer::SelectNeighbour(const Folder& folder) {
  // Otherwise the tree itself selects a folder, perhaps one that is about to be removed.
  const Folder* const shown = selectednode();
  const Folder* const beside = FolderToShowAfterRemoval(folder);
  if (shown != nullptr && beside != nullptr && folder.Holds(*shown)) Select(*beside);
}

void PVExplorer::Paste(Folder* into) {
  const std::int32_t folders = jukebox_.Nodes().Count();
  const std::size_t songs = into != nullptr ? into->Items().size() : 0;
  const JukeboxEdits::Result result = edits_.Paste(into);
  Tell(result);
  if (result != JukeboxEdits::Result::kDone) return;
  if (jukebox_.Nodes().Count() == folders)
    SongsAdded(*into, songs);
  else if (into != nullptr)
    tree_->expand(folders_->IndexOf(*into));
}

void PVExplorer::AddFolder(Folder* parent) {
  Folder* const folder = edits_.AddFolder(parent);
  if (folder == nullptr) return Tell(JukeboxEdits::Result::kTooDeep);
  Select(*folder);
  EditText(*folder);
}

void PVExplorer::MoveToRoot(Folder& folder) {
  if (folder.Level() > 0) TakeDrop(*this, folder, false, {}, nullptr, false);
}

void PVExplorer::SortNodes(Folder* above) { edits_.SortNodes(above); }

void PVExplorer::AddSongs(Folder& to, const std::vector<SongEntry>& songs) {
  const std::size_t before = to.Items().size();
  if (edits_.AddSongs(to, songs) == JukeboxEdits::Result::kDone) SongsAdded(to, before);
}

void PVExplorer::Undo() {
  const EditHistory::Half half = jukebox_.History().HalfToUndo();
  const Place before = CurrentPlace();
  AfterStep(jukebox_.Undo(), before);
  if (half.pair != 0) emit LinkedStepDone(half, true);
}

void PVExplorer::Redo() {
  const EditHistory::Half half = jukebox_.History().HalfToRedo();
  const Place before = CurrentPlace();
  AfterStep(jukebox_.Redo(), before);
  if (half.pair != 0) emit LinkedStepDone(half, false);
}

bool PVExplorer::StepHalf(std::uint64_t pair, bool back) {
  const EditHistory& history = jukebox_.History();
  if ((back ? history.HalfToUndo() : history.HalfToRedo()).pair != pair) return false;
  const Place before = CurrentPlace();
  AfterStep(back ? jukebox_.Undo() : jukebox_.Redo(), before);
  return true;
}

void PVExplorer::AfterStep(const Jukebox::StepResult& result, const Place& before) {
  if (!result.done) return;
  if (result.list_changed) {
    RefillList();
    jukebox_.ResetSort();
  }
  bool other_folder = true;
  if (result.concerned != nullptr && result.concerned != selectednode())
    Select(*result.concerned);
  else if (selectednode() == nullptr && jukebox_.Nodes().Children() > 0)
    Select(jukebox_.Nodes().ChildAt(0));
  else
    other_folder = false;
  if (selectednode() == nullptr) return;
  // Read after the list was refilled, which removes songs whose files are gone from the list and
  // from the step.
  const EditHistory::SongChange change = jukebox_.History().LastSongChange(*selectednode());
  std::vector<int> brought;
  for (const int place : change.brought)
    if (const int row = songs_->RowAt(place); songs_->PlaceOf(row) == place) brought.push_back(row);
  if (!brought.empty()) {
    list_->SelectRows(brought);
  } else if (change.taken >= 0) {
    SelectNear(change.taken);
  } else if (change.any && !other_folder) {
    // A sort was undone or redone: the entries hold different songs now.
    FollowSongs(before);
  }
}

bool PVExplorer::Save(const std::string& path) {
  CommitEditing();
  return jukebox_.Save(path, library_);
}

void PVExplorer::CommitEditing() { tree_->CommitEditing(); }

std::unique_ptr<ExplorerDrag> PVExplorer::SongsToDrag() {
  Folder* const folder = selectednode();
  std::vector<int> rows = SelectedRows();
  if (folder == nullptr || rows.empty()) return nullptr;
  QByteArray files;
  for (const int row : rows) {
    const SongView song = library_.Song(folder->Items()[static_cast<std::size_t>(row)].SubItem());
    if (song.Exists()) files += UriOfPath(song.Path()) + "\r\n";
  }
  auto drag = std::make_unique<ExplorerDrag>(*this, *folder, true, std::move(rows));
  drag->setData(QStringLiteral("text/uri-list"), files);
  return drag;
}

std::unique_ptr<ExplorerDrag> PVExplorer::FolderToDrag() {
  const QModelIndex index = tree_->currentIndex();
  if (!index.isValid()) return nullptr;
  return std::make_unique<ExplorerDrag>(*this, *FolderTreeModel::FolderOf(index), false,
                                        std::vector<int>());
}

void PVExplorer::SetUpDragging() {
  const auto start = [](QWidget* from, std::unique_ptr<ExplorerDrag> carried,
                        Qt::DropActions actions) {
    if (carried == nullptr) return;
    auto* const drag = new QDrag(from);
    drag->setPixmap(PictureOfDrag(carried->Description(), *from));
    drag->setDragCursor(PlainCursor(), Qt::LinkAction);
    drag->setMimeData(carried.release());
    drag->exec(actions);
  };
  // Other programs are offered only a copy of songs, because a move would remove the files. Inside
  // the program, LinkAction therefore means a move.
  connect(list_, &SongListView::DragStarted, this,
          [=, this] { start(list_, SongsToDrag(), Qt::CopyAction | Qt::LinkAction); });
  connect(tree_, &FolderTreeView::DragStarted, this,
          [=, this] { start(tree_, FolderToDrag(), Qt::CopyAction | Qt::MoveAction); });
  connect(tree_, &FolderTreeView::DragsOver, this,
          [this](QDropEvent* event, Folder* to) { DragOver(*event, to); });
  connect(tree_, &FolderTreeView::Dropped, this,
          [this](QDropEvent* event, Folder* to) { Drop(*event, to); });
  // A drop on the list goes to the folder on show.
  connect(list_, &SongListView::DragsOver, this, [this](QDropEvent* event) {
    if (selectednode() != nullptr) DragOver(*event, selectednode());
  });
  connect(list_, &SongListView::Dropped, this, [this](QDropEvent* event) {
    if (selectednode() != nullptr) Drop(*event, selectednode());
  });
}

bool PVExplorer::CanDrop(const ExplorerDrag& drag, const Folder* to, bool copy) const {
  if (drag.Source() == nullptr) return false;
  if (drag.IsSongs()) return to != nullptr && to != &drag.From();
  return drag.Source() != this || JukeboxEdits::CanDropFolder(drag.From(), to, copy);
}

void PVExplorer::DragOver(QDropEvent& event, Folder* to) {
  const bool copy = event.modifiers().testFlag(Qt::ControlModifier);
  bool takes = false;
  if (const auto* const drag = qobject_cast<const ExplorerDrag*>(event.mimeData())) {
    takes = CanDrop(*drag, to, copy);
    // drag->From() is certain to exist only if CanDrop accepts the drag.
    const bool copies = copy || (takes && drag->IsSongs() && IsAutomaticFolder(drag->From()));
    event.setDropAction(copies            ? Qt::CopyAction
                        : drag->IsSongs() ? Qt::LinkAction
                                          : Qt::MoveAction);
  } else {
    takes = to != nullptr && !DraggedFiles(*event.mimeData()).empty();
    event.setDropAction(Qt::CopyAction);
  }
  event.setAccepted(takes);
}

void PVExplorer::Drop(QDropEvent& event, Folder* to) {
  DragOver(event, to);
  if (!event.isAccepted()) return;
  const bool copy = event.modifiers().testFlag(Qt::ControlModifier);
  // The drop is handled after the drag has ended, because the drag grabs the mouse, here or in
  // another program, and message boxes could not be used. Folders may be deleted meanwhile, so they
  // are looked up again by key.
  const std::uint32_t to_key = to != nullptr ? to->Key() : 0;
  if (const auto* const drag = qobject_cast<const ExplorerDrag*>(event.mimeData())) {
    QTimer::singleShot(
        0, this,
        [this, source = QPointer<PVExplorer>(drag->Source()), from_key = drag->From().Key(),
         songs = drag->IsSongs(), rows = drag->Rows(), to_key, copy] {
          Folder* const from = source != nullptr ? source->FolderOfKey(from_key) : nullptr;
          Folder* const to = FolderOfKey(to_key);
          if (from != nullptr && (to != nullptr || to_key == 0))
            TakeDrop(*source, *from, songs, rows, to, copy);
        });
    return;
  }
  QTimer::singleShot(0, this, [this, files = DraggedFiles(*event.mimeData()), to_key] {
    if (Folder* const to = FolderOfKey(to_key)) emit FilesDropped(files, to);
  });
}

Folder* PVExplorer::FolderOfKey(std::uint32_t key) const {
  return key != 0 ? jukebox_.Nodes().FindKey(key) : nullptr;
}

void PVExplorer::TakeDrop(PVExplorer& source, Folder& from, bool songs,
                          const std::vector<int>& rows, Folder* to, bool copy) {
  // Songs stay in an automatic folder when they are dragged; only a cut removes them.
  if (songs && IsAutomaticFolder(from)) copy = true;
  if (!copy && !source.MayCut(from, songs)) return;
  if (songs) {
    const std::size_t before = to->Items().size();
    edits_.DropSongs(source.edits_, from, rows, *to, copy);
    if (to->Items().size() > before) SongsAdded(*to, before);
    if (!copy && &from == source.selectednode()) source.SongsTaken(rows.front());
  } else if (!FolderTree::FitsBelow(to, from)) {
    Tell(JukeboxEdits::Result::kTooDeep);
  } else {
    const Folder* const shown = selectednode();
    if (&source != this && !copy) source.SelectNeighbour(from);
    const bool moves_shown = &source == this && !copy && shown != nullptr && from.Holds(*shown);
    Tell(edits_.DropFolder(source.edits_, from, to, copy));
    if (to != nullptr) tree_->expand(folders_->IndexOf(*to));
    // The tree lost the selection during the move.
    if (moves_shown) Select(*shown);
  }
}

}  // namespace tallow

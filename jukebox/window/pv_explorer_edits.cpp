// SPDX-License-Identifier: GPL-3.0-or-later
// What the explorer control changes, and what is dragged out of it and dropped on it.
#include <algorithm>

#include <QDrag>
#include <QDropEvent>
#include <QFile>
#include <QScrollBar>
#include <QTimer>
#include <QUrl>

#include "jukebox/special_folders.h"
#include "jukebox/window/explorer_drag.h"
#include "jukebox/window/folder_tree_model.h"
#include "jukebox/window/folder_tree_view.h"
#include "jukebox/window/pv_explorer.h"
#include "jukebox/window/song_list_view.h"
#include "library/cls_main.h"

namespace tallow {

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
  const int rows = list_->model()->rowCount();
  if (rows > static_cast<int>(before)) list_->SelectRows(static_cast<int>(before), rows - 1);
}

void PVExplorer::Tell(JukeboxEdits::Result result) {
  if (result == JukeboxEdits::Result::kTooDeep)
    emit Problem(tr("Folders may lie at most %1 deep. Put this one further up.").arg(kMostLevel));
}

void PVExplorer::CutSongs() {
  Folder* const folder = selectednode();
  const std::vector<int> rows = SelectedRows();
  if (folder == nullptr || rows.empty() || !MayCut(*folder, true)) return;
  edits_.CutSongs(*folder, rows);
  RefillList();
  // What came next takes the selection.
  const int left = list_->model()->rowCount();
  const int next = std::min(rows.front(), left - 1);
  if (left > 0) list_->SelectRows(next, next);
}

void PVExplorer::CopySongs() {
  if (const Folder* const folder = selectednode()) edits_.CopySongs(*folder, SelectedRows());
}

void PVExplorer::CutFolder(Folder& folder) {
  if (!MayCut(folder, false)) return;
  edits_.CopyFolder(folder);
  DeleteFolder(folder);
}

void PVExplorer::DeleteFolder(Folder& folder) {
  // The tree would choose another one itself, and perhaps one that goes as well.
  const Folder* const shown = selectednode();
  const Folder* const beside = FolderBeside(folder);
  if (shown != nullptr && beside != nullptr && folder.Holds(*shown)) Select(*beside);
  edits_.DeleteFolder(folder);
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

void PVExplorer::SortNodes(Folder* above) { edits_.SortNodes(above); }

void PVExplorer::AddSongs(Folder& to, const std::vector<SongEntry>& songs) {
  const std::size_t before = to.Items().size();
  if (edits_.AddSongs(to, songs) == JukeboxEdits::Result::kDone) SongsAdded(to, before);
}

void PVExplorer::Undo() { ShowConcerned(jukebox_.Undo()); }

void PVExplorer::Redo() { ShowConcerned(jukebox_.Redo()); }

void PVExplorer::ShowConcerned(Folder* folder) {
  if (folder != nullptr && folder != selectednode())
    Select(*folder);
  else if (selectednode() != nullptr)
    RefillList();
  else if (jukebox_.Nodes().Children() > 0)
    Select(jukebox_.Nodes().ChildAt(0));
}

std::unique_ptr<ExplorerDrag> PVExplorer::SongsToDrag() {
  Folder* const folder = selectednode();
  std::vector<int> rows = SelectedRows();
  if (folder == nullptr || rows.empty()) return nullptr;
  QList<QUrl> files;
  for (const int row : rows) {
    const std::int32_t record = folder->Items()[static_cast<std::size_t>(row)].SubItem();
    if (record < 1 || record > library_.UBoundOfMp3Array()) continue;
    std::string path(library_.Mp3Info(kFileLocation, record));
    path += library_.Mp3Info(kFileName, record);
    files.append(QUrl::fromLocalFile(QFile::decodeName(path.c_str())));
  }
  auto drag = std::make_unique<ExplorerDrag>(*this, *folder, true, std::move(rows));
  drag->setUrls(files);
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
    drag->setMimeData(carried.release());
    drag->exec(actions);
  };
  // To another program songs are only ever copied: it would take the files away. Whether they move
  // between folders is decided where they are dropped.
  connect(list_, &SongListView::DragWanted, this,
          [=, this] { start(list_, SongsToDrag(), Qt::CopyAction); });
  connect(tree_, &FolderTreeView::DragWanted, this,
          [=, this] { start(tree_, FolderToDrag(), Qt::CopyAction | Qt::MoveAction); });
  connect(tree_, &FolderTreeView::DragsOver, this,
          [this](QDropEvent* event, Folder* to) { DragOver(*event, to); });
  connect(tree_, &FolderTreeView::Drops, this,
          [this](QDropEvent* event, Folder* to) { Drop(*event, to); });
  // What is dropped on the list is for the folder that it shows.
  connect(list_, &SongListView::DragsOver, this, [this](QDropEvent* event) {
    if (selectednode() != nullptr) DragOver(*event, selectednode());
  });
  connect(list_, &SongListView::Drops, this, [this](QDropEvent* event) {
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
    event.setDropAction(copy || drag->IsSongs() ? Qt::CopyAction : Qt::MoveAction);
  } else {
    takes = to != nullptr && !DraggedFiles(*event.mimeData()).isEmpty();
    event.setDropAction(Qt::CopyAction);
  }
  event.setAccepted(takes);
}

void PVExplorer::Drop(QDropEvent& event, Folder* to) {
  DragOver(event, to);
  if (!event.isAccepted()) return;
  const bool copy = event.modifiers().testFlag(Qt::ControlModifier);
  // Messages have to wait until the drag is over: it holds the mouse, here or in another program.
  if (const auto* const drag = qobject_cast<const ExplorerDrag*>(event.mimeData())) {
    QTimer::singleShot(0, this,
                       [this, source = QPointer<PVExplorer>(drag->Source()), from = &drag->From(),
                        songs = drag->IsSongs(), rows = drag->Rows(), to, copy] {
                         if (source != nullptr) TakeDrop(*source, *from, songs, rows, to, copy);
                       });
    return;
  }
  QTimer::singleShot(0, this, [this, files = DraggedFiles(*event.mimeData()), to] {
    emit FilesDropped(files, to);
  });
}

void PVExplorer::TakeDrop(PVExplorer& source, Folder& from, bool songs,
                          const std::vector<int>& rows, Folder* to, bool copy) {
  if (songs && IsAllSongs(from)) copy = true;
  if (!copy && !source.MayCut(from, songs)) return;
  if (songs) {
    edits_.DropSongs(source.edits_, from, rows, *to, copy);
  } else {
    // What is on show there goes away.
    const Folder* const shown = source.selectednode();
    const Folder* const beside = FolderBeside(from);
    const bool leaves = &source != this && !copy;
    if (leaves && shown != nullptr && beside != nullptr && from.Holds(*shown))
      source.Select(*beside);
    Tell(edits_.DropFolder(source.edits_, from, to, copy));
    if (to != nullptr) tree_->expand(folders_->IndexOf(*to));
  }
  RefillList();
  if (&source != this) source.RefillList();
}

}  // namespace tallow

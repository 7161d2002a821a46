// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/explorer_dragging.h"

#include <cstdint>
#include <utility>

#include <QDrag>
#include <QDropEvent>
#include <QPainter>
#include <QPointer>
#include <QTimer>

#include "jukebox/found_songs.h"
#include "jukebox/jukebox.h"
#include "jukebox/special_folders.h"
#include "library/cls_main.h"
#include "ui/jukebox/drop_line.h"
#include "ui/jukebox/explorer/explorer_edits.h"
#include "ui/jukebox/explorer/shown_songs.h"
#include "ui/jukebox/explorer_drag.h"
#include "ui/jukebox/folder_tree_model.h"
#include "ui/jukebox/folder_tree_view.h"
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

/// Runs a drag until the user drops it.
/// \param data null for nothing to drag
void RunDrag(QWidget& from, std::unique_ptr<ExplorerDrag> data, Qt::DropActions actions) {
  if (data == nullptr) return;
  auto* const drag = new QDrag(&from);
  drag->setPixmap(PictureOfDrag(data->Description(), from));
  drag->setDragCursor(PlainCursor(), Qt::LinkAction);
  drag->setMimeData(data.release());
  drag->exec(actions);
}

}  // namespace

ExplorerDragging::ExplorerDragging(const Jukebox& jukebox, const clsMain& library,
                                   FolderTreeView& tree, SongListView& list,
                                   const ShownSongs& songs, ExplorerEdits& edits)
    : jukebox_(jukebox),
      library_(library),
      tree_(tree),
      songs_(songs),
      drop_line_(new DropLine(list)),
      edits_(edits) {
  connect(&list, &SongListView::DragStarted, this,
          [this, &list] { RunDrag(list, SongsToDrag(), Qt::CopyAction | Qt::LinkAction); });
  connect(&tree, &FolderTreeView::DragStarted, this,
          [this, &tree] { RunDrag(tree, FolderToDrag(), Qt::CopyAction | Qt::MoveAction); });
  connect(&tree, &FolderTreeView::DragsOver, this,
          [this](QDropEvent* event, Folder* to) { DragOver(*event, to); });
  connect(&tree, &FolderTreeView::Dropped, this,
          [this](QDropEvent* event, Folder* to) { Drop(*event, to); });
  // A drop on the list goes to the folder on show, but nothing can be added to hits of a search.
  connect(&list, &SongListView::DragsOver, this, [this](QDropEvent* event) {
    jukebox_.ShowsHits() ? event->ignore() : DragOverList(*event);
  });
  connect(&list, &SongListView::Dropped, this, [this](QDropEvent* event) {
    jukebox_.ShowsHits() ? event->ignore() : DropOnList(*event);
  });
}

std::unique_ptr<ExplorerDrag> ExplorerDragging::SongsToDrag() const {
  Folder* const folder = jukebox_.ListFolder();
  std::vector<int> rows = songs_.Selected();
  if (folder == nullptr || rows.empty()) return nullptr;
  QByteArray files;
  for (const int row : rows) {
    const SongView song = library_.Song(folder->Items()[static_cast<std::size_t>(row)].SubItem());
    if (song.Exists()) files += UriOfPath(song.Path()) + "\r\n";
  }
  auto drag = std::make_unique<ExplorerDrag>(edits_, *folder, true, std::move(rows));
  drag->setData(QStringLiteral("text/uri-list"), files);
  return drag;
}

std::unique_ptr<ExplorerDrag> ExplorerDragging::FolderToDrag() const {
  const QModelIndex index = tree_.currentIndex();
  if (!index.isValid()) return nullptr;
  return std::make_unique<ExplorerDrag>(edits_, *FolderTreeModel::FolderOf(index), false,
                                        std::vector<int>());
}

bool ExplorerDragging::CanDrop(const ExplorerDrag& drag, const Folder* to, bool copy) const {
  if (drag.Source() == nullptr) return false;
  if (drag.IsSongs()) return to != nullptr && to != &drag.From();
  return drag.Source() != &edits_ || JukeboxEdits::CanDropFolder(drag.From(), to, copy);
}

void ExplorerDragging::DragOver(QDropEvent& event, const Folder* to) const {
  const bool copy = event.modifiers().testFlag(Qt::ControlModifier);
  bool accepts = false;
  if (const auto* const drag = qobject_cast<const ExplorerDrag*>(event.mimeData())) {
    accepts = CanDrop(*drag, to, copy);
    // drag->From() is certain to exist only if CanDrop accepts the drag.
    const bool copies = copy || (accepts && drag->IsSongs() &&
                                 (IsAutomaticFolder(drag->From()) || IsOfHits(drag->From())));
    event.setDropAction(copies            ? Qt::CopyAction
                        : drag->IsSongs() ? Qt::LinkAction
                                          : Qt::MoveAction);
  } else {
    accepts = to != nullptr && !DraggedFiles(*event.mimeData()).empty();
    event.setDropAction(Qt::CopyAction);
  }
  event.setAccepted(accepts);
}

bool ExplorerDragging::MovesInList(const QDropEvent& event) const {
  const auto* const drag = qobject_cast<const ExplorerDrag*>(event.mimeData());
  return moves_in_list_ && drag != nullptr && drag->Source() == &edits_ && drag->IsSongs() &&
         &drag->From() == jukebox_.selectednode() &&
         !event.modifiers().testFlag(Qt::ControlModifier);
}

void ExplorerDragging::DragOverList(QDropEvent& event) {
  if (MovesInList(event)) {
    drop_line_->ShowAt(event.position().toPoint());
    event.setDropAction(Qt::LinkAction);
    return event.accept();
  }
  drop_line_->Hide();
  // A drop on the list goes to the folder on show.
  if (const Folder* const to = jukebox_.selectednode()) DragOver(event, to);
}

void ExplorerDragging::DropOnList(QDropEvent& event) {
  if (!MovesInList(event)) {
    if (const Folder* const to = jukebox_.selectednode()) Drop(event, to);
    return;
  }
  event.setDropAction(Qt::LinkAction);
  event.accept();
  const auto& drag = *qobject_cast<const ExplorerDrag*>(event.mimeData());
  const int before = songs_.IndexAt(drop_line_->RowAt(event.position().toPoint()));
  // After the drag has ended, as in Drop. Another folder may be shown by then.
  QTimer::singleShot(0, this, [this, key = drag.From().Key(), rows = drag.Rows(), before] {
    const Folder* const shown = jukebox_.selectednode();
    if (shown != nullptr && shown->Key() == key) edits_.MoveSongsTo(rows, before);
  });
}

void ExplorerDragging::Drop(QDropEvent& event, const Folder* to) {
  DragOver(event, to);
  if (!event.isAccepted()) return;
  const bool copy = event.modifiers().testFlag(Qt::ControlModifier);
  // The drag grabs the mouse (in this program or another), so message boxes would be unusable. The
  // drop is therefore handled after the drag has ended. Folders may be deleted meanwhile, so they
  // are looked up again by key.
  const std::uint32_t to_key = to != nullptr ? to->Key() : 0;
  if (const auto* const drag = qobject_cast<const ExplorerDrag*>(event.mimeData())) {
    QTimer::singleShot(
        0, this,
        [this, source = QPointer<ExplorerEdits>(drag->Source()), from_key = drag->From().Key(),
         songs = drag->IsSongs(), rows = drag->Rows(), to_key, copy] {
          Folder* const from = source != nullptr ? source->FolderOfKey(from_key) : nullptr;
          Folder* const to = edits_.FolderOfKey(to_key);
          if (from == nullptr || (to == nullptr && to_key != 0)) return;
          if (songs)
            edits_.DropSongs(*source, *from, rows, *to, copy);
          else
            edits_.DropFolder(*source, *from, to, copy);
        });
    return;
  }
  QTimer::singleShot(0, this, [this, files = DraggedFiles(*event.mimeData()), to_key] {
    if (Folder* const to = edits_.FolderOfKey(to_key)) emit FilesDropped(files, to);
  });
}

}  // namespace tallow

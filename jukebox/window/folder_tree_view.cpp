// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/window/folder_tree_view.h"

#include <QDropEvent>
#include <QPainter>
#include <QScrollBar>

#include "jukebox/window/folder_tree_model.h"

namespace tallow {
namespace {

/// While something is dragged over the tree, in ms.
constexpr int kTick = 100;
/// How long the pointer has to rest on a folder to open it, in ticks.
constexpr int kTicksToOpen = 8;
/// How close to an edge the tree scrolls, in pixels.
constexpr int kEdge = 20;

}  // namespace

FolderTreeView::FolderTreeView(QWidget* parent) : QTreeView(parent) {
  setDragEnabled(true);
  setAcceptDrops(true);
  setDropIndicatorShown(false);
  hover_.setInterval(kTick);
  connect(&hover_, &QTimer::timeout, this, &FolderTreeView::Hover);
}

Folder* FolderTreeView::FolderAt(const QPoint& place) const {
  const QModelIndex index = indexAt(place);
  return index.isValid() ? FolderTreeModel::FolderOf(index) : nullptr;
}

void FolderTreeView::startDrag(Qt::DropActions /*actions*/) { emit DragWanted(); }

void FolderTreeView::dragEnterEvent(QDragEnterEvent* event) {
  hover_.start();
  DragTo(event);
  // Beside the first folder there may be one that takes it.
  event->accept();
}

void FolderTreeView::dragMoveEvent(QDragMoveEvent* event) { DragTo(event); }

void FolderTreeView::DragTo(QDropEvent* event) {
  pointer_ = event->position().toPoint();
  const QModelIndex index = indexAt(pointer_);
  emit DragsOver(event, FolderAt(pointer_));
  if (target_ != index) ticks_ = 0;
  target_ = event->isAccepted() ? index : QModelIndex();
  viewport()->update();
}

void FolderTreeView::dragLeaveEvent(QDragLeaveEvent* /*event*/) { EndDrag(); }

void FolderTreeView::dropEvent(QDropEvent* event) {
  Folder* const folder = FolderAt(event->position().toPoint());
  EndDrag();
  emit Drops(event, folder);
}

void FolderTreeView::EndDrag() {
  hover_.stop();
  target_ = QModelIndex();
  viewport()->update();
}

void FolderTreeView::Hover() {
  QScrollBar& bar = *verticalScrollBar();
  if (pointer_.y() < kEdge) bar.setValue(bar.value() - bar.singleStep());
  if (pointer_.y() > viewport()->height() - kEdge) bar.setValue(bar.value() + bar.singleStep());
  if (target_.isValid() && ++ticks_ == kTicksToOpen) expand(target_);
}

void FolderTreeView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  QTreeView::drawRow(painter, option, index);
  if (target_ != index) return;
  painter->save();
  painter->setPen(QPen(palette().color(QPalette::Highlight), 2));
  painter->drawRect(visualRect(index).adjusted(1, 1, -1, -1));
  painter->restore();
}

}  // namespace tallow

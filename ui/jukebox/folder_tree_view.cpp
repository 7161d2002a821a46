// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/folder_tree_view.h"

#include <QDropEvent>
#include <QFocusEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include "ui/jukebox/folder_tree_model.h"

namespace tallow {
namespace {

/// Interval of the timer that runs during a drag over the tree, in ms.
constexpr int kTick = 100;
/// How long the pointer must hover over a folder to expand it, in ticks.
constexpr int kTicksToOpen = 8;
/// Distance from the edge within which the tree scrolls, in pixels.
constexpr int kEdge = 20;

constexpr auto kRenameByKey = QAbstractItemView::EditTriggers(QAbstractItemView::EditKeyPressed);
constexpr auto kRenameByKeyOrClick = kRenameByKey | QAbstractItemView::SelectedClicked;

}  // namespace

FolderTreeView::FolderTreeView(FolderTreeModel& folders, QWidget* parent)
    : QTreeView(parent), folders_(folders) {
  setObjectName(QStringLiteral("TreeView"));
  setAccessibleName(tr("Folders"));
  setAccessibleDescription(tr("The songs of the chosen folder are in the list on the right"));
  setModel(&folders);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setEditTriggers(kRenameByKeyOrClick);
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

void FolderTreeView::SelectFolder(const Folder& folder) {
  setCurrentIndex(folders_.IndexOf(folder));
  ScrollToFolder(folder);
}

void FolderTreeView::MarkCurrent(bool marks) {
  if (marks == selectionModel()->hasSelection()) return;
  folders_.SetShown(marks && currentIndex().isValid() ? FolderTreeModel::FolderOf(currentIndex())
                                                      : nullptr);
  if (marks)
    selectionModel()->select(currentIndex(), QItemSelectionModel::ClearAndSelect);
  else
    selectionModel()->clearSelection();
}

void FolderTreeView::ScrollToFolder(const Folder& folder) { scrollTo(folders_.IndexOf(folder)); }

void FolderTreeView::ExpandFolder(const Folder& folder) { expand(folders_.IndexOf(folder)); }

void FolderTreeView::EditText(const Folder& folder) { edit(folders_.IndexOf(folder)); }

void FolderTreeView::focusInEvent(QFocusEvent* event) {
  // Qt sends this event before the mouse press that causes it.
  came_by_click_ = event->reason() == Qt::MouseFocusReason;
  QTreeView::focusInEvent(event);
}

void FolderTreeView::mousePressEvent(QMouseEvent* event) {
  setEditTriggers(came_by_click_ ? kRenameByKey : kRenameByKeyOrClick);
  came_by_click_ = false;
  QTreeView::mousePressEvent(event);
}

void FolderTreeView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) QTreeView::mouseDoubleClickEvent(event);
}

void FolderTreeView::startDrag(Qt::DropActions /*actions*/) { emit DragStarted(); }

void FolderTreeView::dragEnterEvent(QDragEnterEvent* event) {
  hover_.start();
  DragTo(event);
  // Accepts the drag even if this folder rejects it, because another folder may accept it.
  event->accept();
}

void FolderTreeView::dragMoveEvent(QDragMoveEvent* event) { DragTo(event); }

void FolderTreeView::DragTo(QDropEvent* event) {
  pointer_ = event->position().toPoint();
  emit DragsOver(event, FolderAt(pointer_));
  accepts_drag_ = event->isAccepted();
  FrameTarget();
}

void FolderTreeView::FrameTarget() {
  const QModelIndex index = indexAt(pointer_);
  if (hovered_ != index) hover_ticks_ = 0;
  hovered_ = index;
  viewport()->update();
}

void FolderTreeView::dragLeaveEvent(QDragLeaveEvent* /*event*/) { EndDrag(); }

void FolderTreeView::dropEvent(QDropEvent* event) {
  Folder* const folder = FolderAt(event->position().toPoint());
  EndDrag();
  emit Dropped(event, folder);
}

void FolderTreeView::EndDrag() {
  hover_.stop();
  hovered_ = QModelIndex();
  viewport()->update();
}

void FolderTreeView::Hover() {
  QScrollBar& bar = *verticalScrollBar();
  const int before = bar.value();
  if (pointer_.y() < kEdge) bar.setValue(before - bar.singleStep());
  if (pointer_.y() > viewport()->height() - kEdge) bar.setValue(before + bar.singleStep());
  if (bar.value() != before) {
    // After scrolling, the pointer is over another folder; whether that folder accepts the drag is
    // checked on drop.
    accepts_drag_ = accepts_drag_ && indexAt(pointer_).isValid();
    FrameTarget();
  }
  // Expands also a folder that rejects the drag, because a subfolder may accept it.
  if (hovered_.isValid() && ++hover_ticks_ == kTicksToOpen) expand(hovered_);
}

void FolderTreeView::CommitEditing() {
  QWidget* const editor = state() == EditingState ? indexWidget(currentIndex()) : nullptr;
  if (editor == nullptr) return;
  commitData(editor);
  closeEditor(editor, QAbstractItemDelegate::NoHint);
}

QItemSelectionModel::SelectionFlags FolderTreeView::selectionCommand(const QModelIndex& index,
                                                                     const QEvent* event) const {
  if (!index.isValid()) return QItemSelectionModel::NoUpdate;
  return QTreeView::selectionCommand(index, event);
}

void FolderTreeView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  QTreeView::drawRow(painter, option, index);
  if (!accepts_drag_ || hovered_ != index) return;
  painter->save();
  painter->setPen(QPen(palette().color(QPalette::Highlight), 2));
  painter->drawRect(visualRect(index).adjusted(1, 1, -1, -1));
  painter->restore();
}

}  // namespace tallow

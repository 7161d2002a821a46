// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <QPersistentModelIndex>
#include <QTimer>
#include <QTreeView>

namespace tallow {

class Folder;

/// The tree half of the explorer control: folders can be dragged, and songs, folders and files dropped on
/// them. While something is dragged over it, the folder under the pointer is framed and opens after a
/// while, and the tree scrolls at its edges.
class FolderTreeView : public QTreeView {
  Q_OBJECT

 public:
  explicit FolderTreeView(QWidget* parent);

  /// Takes over the text of a folder that is being changed, if there is one, and ends that.
  void CommitEditing();

  /// The folder at a place of the viewport; null where there is none.
  Folder* FolderAt(const QPoint& place) const;

 signals:
  /// The current folder is being dragged. Whoever starts the drag does it before returning.
  void DragWanted();
  /// Something is dragged over a folder, or dropped on it; to be accepted or ignored.
  /// \param folder null beside the folders
  void DragsOver(QDropEvent* event, tallow::Folder* folder);
  void Drops(QDropEvent* event, tallow::Folder* folder);

 protected:
  void startDrag(Qt::DropActions actions) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  /// A click beside the folders leaves the selection as it is.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

 private:
  void DragTo(QDropEvent* event);
  void FrameTarget();
  void Hover();
  void EndDrag();

  QPersistentModelIndex under_;  ///< the pointer
  bool takes_ = false;           ///< what is under the pointer takes what is dragged, and is framed
  QPoint pointer_;               ///< of what is dragged over the tree
  int ticks_ = 0;                ///< of the timer, over the same folder
  QTimer hover_;
};

}  // namespace tallow

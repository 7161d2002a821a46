// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <QPersistentModelIndex>
#include <QTimer>
#include <QTreeView>

namespace tallow {

class Folder;
class FolderTreeModel;

/// The tree pane of the explorer control. Folders can be dragged; songs, folders and files can be
/// dropped on folders. During a drag over the tree, the folder under the pointer is framed and is
/// expanded after a delay, and the tree scrolls near its edges. A folder is renamed with F2, or
/// with a click on the current folder, unless that click only moves the focus to the tree.
class FolderTreeView : public QTreeView {
  Q_OBJECT

 public:
  /// \param folders must outlive the view
  FolderTreeView(FolderTreeModel& folders, QWidget* parent);

  /// Makes a folder current, like a click on it, and scrolls to it.
  void SelectFolder(const Folder& folder);
  /// Marks the current folder as the one whose songs are in the list, or marks none.
  void MarkCurrent(bool marks);
  void ScrollToFolder(const Folder& folder);
  void ExpandFolder(const Folder& folder);
  /// Starts the renaming of a folder by the user.
  void EditText(const Folder& folder);
  /// If a folder is being renamed, applies the typed text and closes the editor.
  void CommitEditing();

  /// Returns the folder at a position in the viewport; null if no folder is there.
  Folder* FolderAt(const QPoint& place) const;

 signals:
  /// The user has started to drag the current folder. The receiver runs the drag before it returns.
  void DragStarted();
  /// The user drags something over a folder, or drops something on it. The receiver accepts or
  /// ignores the event.
  /// \param folder null in the empty area of the tree
  void DragsOver(QDropEvent* event, tallow::Folder* folder);
  void Dropped(QDropEvent* event, tallow::Folder* folder);

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  /// A double-click of another button than the left has no effect.
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void startDrag(Qt::DropActions actions) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  /// A click in the empty area of the tree keeps the selection.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

 private:
  void DragTo(QDropEvent* event);
  void FrameTarget();
  void Hover();
  void EndDrag();

  FolderTreeModel& folders_;
  bool came_by_click_ = false;     ///< whether a click has just moved the focus to the tree
  QPersistentModelIndex hovered_;  ///< the row under the pointer during a drag
  bool accepts_drag_ = false;      ///< whether that row accepts the drag; such a row is framed
  QPoint pointer_;                 ///< position of the pointer during a drag
  int hover_ticks_ = 0;            ///< timer ticks since the pointer entered the row
  QTimer hover_;
};

}  // namespace tallow

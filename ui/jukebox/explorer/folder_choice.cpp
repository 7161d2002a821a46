// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/folder_choice.h"

#include <utility>

#include <QFocusEvent>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMouseEvent>

#include "ui/jukebox/folder_tree_model.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

/// Returns whether the focus was moved with the keyboard.
bool IsByKey(const QFocusEvent& event) {
  return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason ||
         event.reason() == Qt::ShortcutFocusReason;
}

/// Returns whether a key moves from folder to folder.
bool MovesInTree(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      return true;
    default:
      return false;
  }
}

}  // namespace

FolderChoice::FolderChoice(FolderTreeModel& model, FolderTreeView& tree, SongListView& list)
    : model_(model), tree_(tree), list_(list) {
  tree.installEventFilter(this);
  tree.viewport()->installEventFilter(this);
  list.installEventFilter(this);
  connect(tree.selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) {
            if (!current.isValid()) return;
            emitted_ = true;
            SetInEmptyArea(false);
            Folder* const folder = FolderTreeModel::FolderOf(current);
            model_.SetShown(folder);
            emit NodeClick(folder);
          });
  connect(&tree, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (!emitted_) emit NodeClick(FolderTreeModel::FolderOf(index));
  });
}

bool FolderChoice::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      // A click that changes the selection emits NodeClick immediately; a click on the folder on
      // show emits NodeClick on release.
      if (watched == tree_.viewport()) {
        emitted_ = false;
        const auto& click = *static_cast<QMouseEvent*>(event);
        SetInEmptyArea(tree_.FolderAt(click.position().toPoint()) == nullptr);
      }
      break;
    case QEvent::KeyPress:
      if (watched == &tree_ && MovesInTree(*static_cast<QKeyEvent*>(event))) SetInEmptyArea(false);
      break;
    case QEvent::FocusIn:
      if (watched == &list_ || (watched == &tree_ && IsByKey(*static_cast<QFocusEvent*>(event))))
        SetInEmptyArea(false);
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

void FolderChoice::SetInEmptyArea(bool in_empty_area) {
  if (std::exchange(in_empty_area_, in_empty_area) != in_empty_area) emit EmptyAreaChanged();
}

}  // namespace tallow

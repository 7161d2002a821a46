// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/pop_up_requests.h"

#include <algorithm>

#include <QContextMenuEvent>

#include "ui/jukebox/folder_tree_model.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

/// Horizontal offset in a row of a menu that was opened with the keyboard, in average characters.
constexpr int kMenuInset = 16;

}  // namespace

PopUpRequests::PopUpRequests(FolderTreeView& tree, SongListView& list) : tree_(tree), list_(list) {
  for (QWidget* const widget : {static_cast<QWidget*>(&tree), tree.viewport(),
                                static_cast<QWidget*>(&list), list.viewport()})
    widget->installEventFilter(this);
}

bool PopUpRequests::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ContextMenu) return QObject::eventFilter(watched, event);
  const bool in_list = watched == &list_ || watched == list_.viewport();
  Request(*static_cast<QContextMenuEvent*>(event), in_list ? kListPane : kTreePane);
  return true;
}

void PopUpRequests::Request(const QContextMenuEvent& event, PopUpPane pane) {
  if (event.reason() == QContextMenuEvent::Keyboard) return RequestAtCurrentRow(pane);
  const QPoint position = event.globalPos();
  if (pane == kListPane)
    emit ListPopUp(position);
  else
    emit TreePopUp(tree_.FolderAt(tree_.viewport()->mapFromGlobal(position)), position);
}

void PopUpRequests::RequestAtCurrentRow(PopUpPane pane) {
  QAbstractItemView& view = pane == kListPane ? static_cast<QAbstractItemView&>(list_) : tree_;
  const QModelIndex index = view.currentIndex();
  if (index.isValid()) view.scrollTo(index);
  const QRect row = index.isValid() ? view.visualRect(index) : QRect();
  // Opens the menu near the beginning of the text, because a row may be as wide as the window.
  const int inside = kMenuInset * view.fontMetrics().averageCharWidth();
  const QPoint place(row.x() + std::min(row.width() / 2, inside), row.center().y());
  const QPoint position = view.viewport()->mapToGlobal(index.isValid() ? place : QPoint());
  if (pane == kListPane)
    emit ListPopUp(position);
  else
    emit TreePopUp(index.isValid() ? FolderTreeModel::FolderOf(index) : nullptr, position);
}

}  // namespace tallow

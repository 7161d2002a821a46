// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/pane_focus.h"

#include <QApplication>
#include <QEvent>

#include "ui/jukebox/explorer/folder_choice.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/pop_up_menus.h"
#include "ui/jukebox/song_list_view.h"
#include "ui/support/muted_highlight.h"

namespace tallow {

PaneFocus::PaneFocus(const QWidget& control, FolderTreeView& tree, SongListView& list,
                     const FolderChoice& choice)
    : control_(control), tree_(tree), list_(list), choice_(choice) {
  tree.installEventFilter(this);
  list.installEventFilter(this);
  connect(&choice, &FolderChoice::EmptyAreaChanged, this, &PaneFocus::ShowFocus);
  ShowFocus();
}

bool PaneFocus::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::FocusIn:
      // Hiding a widget moves the focus to the next widget, which is no user action.
      if (control_.isVisible()) emit FocusChanged(watched == &list_ ? kListPane : kTreePane);
      [[fallthrough]];
    case QEvent::FocusOut:
      // Queued, because the view must handle the focus event first.
      QMetaObject::invokeMethod(this, &PaneFocus::ShowFocus, Qt::QueuedConnection);
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

void PaneFocus::ShowFocus() {
  for (QAbstractItemView* const view :
       {static_cast<QAbstractItemView*>(&tree_), static_cast<QAbstractItemView*>(&list_)}) {
    QPalette colors = control_.palette();
    const QWidget* const focus = QApplication::focusWidget();
    const bool has_focus = focus != nullptr && (focus == view || view->isAncestorOf(focus));
    const bool other_has_focus = focus != nullptr && !has_focus && control_.isAncestorOf(focus);
    // A window in the background uses the muted colour as well, because some desktops show such a
    // selection as black on white.
    const QColor muted = MutedHighlight(colors);
    colors.setColor(QPalette::Inactive, QPalette::Highlight, muted);
    colors.setColor(QPalette::Inactive, QPalette::HighlightedText,
                    colors.color(QPalette::Active, QPalette::HighlightedText));
    if (other_has_focus || (view == &tree_ && choice_.IsInEmptyArea()))
      colors.setColor(QPalette::Active, QPalette::Highlight, muted);
    view->setPalette(colors);
  }
}

}  // namespace tallow

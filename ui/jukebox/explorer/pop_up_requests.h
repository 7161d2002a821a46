// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include "ui/jukebox/pop_up_menus.h"

class QContextMenuEvent;

namespace tallow {

class Folder;
class FolderTreeView;
class SongListView;

/// The user's requests for the pop-up menus of the panes: finds out what a menu acts on, and where
/// it opens.
class PopUpRequests : public QObject {
  Q_OBJECT

 public:
  /// \param tree, list must outlive this object
  PopUpRequests(FolderTreeView& tree, SongListView& list);

  /// Requests a pane's menu by the keyboard: for the current row, which is scrolled into view.
  void RequestAtCurrentRow(PopUpPane pane);

 signals:
  /// \param position in screen coordinates
  void ListPopUp(const QPoint& position);
  /// \param folder the folder that the menu acts on; null for none
  void TreePopUp(tallow::Folder* folder, const QPoint& position);

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void Request(const QContextMenuEvent& event, PopUpPane pane);

  FolderTreeView& tree_;
  SongListView& list_;
};

}  // namespace tallow

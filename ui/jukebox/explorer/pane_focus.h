// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

namespace tallow {

class FolderChoice;
class FolderTreeView;
class SongListView;

/// Reports which pane of the explorer control has the keyboard focus. Draws the selection of the
/// other pane in a muted colour, and that of the tree also while its empty area is chosen.
class PaneFocus : public QObject {
  Q_OBJECT

 public:
  /// \param control the control that holds the panes
  PaneFocus(const QWidget& control, FolderTreeView& tree, SongListView& list,
            const FolderChoice& choice);

 signals:
  /// A pane has received the focus.
  /// \param pane see PopUpPane
  void FocusChanged(int pane);

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void ShowFocus();

  const QWidget& control_;
  FolderTreeView& tree_;
  SongListView& list_;
  const FolderChoice& choice_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include <QSplitter>

#include "jukebox/jukebox.h"

class QKeyEvent;
class QTableView;
class QTreeView;

namespace tallow {

class FolderTreeModel;
class SongListModel;

/// The explorer control: a jukebox's folders on the left, the songs of the folder on show on the
/// right.
///
/// It shows a Jukebox and tells what the user does; what that means is the jukebox window's
/// business.
class PVExplorer : public QSplitter, private JukeboxView {
  Q_OBJECT

 public:
  /// \param jukebox, library have to outlive the control
  PVExplorer(Jukebox& jukebox, const clsMain& library, QWidget* parent);
  ~PVExplorer() override;

  /// Selects a folder in the tree, as a click on it does.
  void Select(const Folder& folder);
  /// Opens all folders of the tree.
  void ExpandAll();
  /// Opens the folders that are marked as open, and closes the others.
  void ExpandMarked();

  /// The places of the selected songs in the list, from 0, in list order.
  std::vector<int> SelectedRows() const;

 signals:
  /// A folder was clicked, or reached with the keyboard.
  void NodeClick(tallow::Folder* folder);
  /// A header of the list was clicked.
  void ColumnClick();
  void CaptionChanged(const QString& caption);
  /// A song was opened: double-clicked, or entered with the keyboard.
  /// \param row its place in the list, from 0
  void ItemOpened(int row);
  /// The list's pop-up menu is wanted.
  /// \param position where, on the screen
  void ListPopUp(const QPoint& position);

 private:
  void CaptionChanged() override;
  void ListChanged() override;
  void LabelsChanged() override;
  void HeadersChanged() override;

  bool eventFilter(QObject* watched, QEvent* event) override;
  void SetUpTree();
  void SetUpList();
  bool ListKeyPressed(const QKeyEvent& key);

  Jukebox& jukebox_;
  FolderTreeModel* folders_;
  SongListModel* songs_;
  QTreeView* tree_;
  QTableView* list_;
  bool told_ = false;  ///< a folder has been told since a mouse button was last pressed
};

}  // namespace tallow

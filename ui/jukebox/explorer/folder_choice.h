// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace tallow {

class Folder;
class FolderTreeModel;
class FolderTreeView;
class SongListView;

/// What the user has chosen in the tree: a folder, or the empty area below the folders, where
/// commands act on the top level.
///
/// The choice of the empty area ends when the user chooses a folder, moves in the tree with the
/// keyboard, or moves the focus to the list or, with the keyboard, to the tree. It stays when the
/// tree only regains the focus, because a menu closes or the window is activated.
class FolderChoice : public QObject {
  Q_OBJECT

 public:
  /// \param model, tree, list must outlive this object
  FolderChoice(FolderTreeModel& model, FolderTreeView& tree, SongListView& list);

  /// Whether the last click in the tree hit its empty area.
  bool IsInEmptyArea() const noexcept { return in_empty_area_; }

 signals:
  /// The user clicked a folder, or moved to it with the keyboard.
  void NodeClick(tallow::Folder* folder);
  /// IsInEmptyArea has changed.
  void EmptyAreaChanged();

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void SetInEmptyArea(bool in_empty_area);

  FolderTreeModel& model_;
  FolderTreeView& tree_;
  SongListView& list_;
  bool in_empty_area_ = false;
  bool emitted_ = false;  ///< whether NodeClick was emitted since the last mouse press
};

}  // namespace tallow

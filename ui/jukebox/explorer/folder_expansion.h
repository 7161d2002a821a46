// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace tallow {

class Folder;
class FolderTree;
class FolderTreeModel;
class FolderTreeView;

/// Which folders of the tree are expanded. Folders are marked as open while they are expanded, so
/// that a jukebox file keeps it, and so that a folder that is added again, for example by undo, is
/// expanded as it was before.
class FolderExpansion : public QObject {
  Q_OBJECT

 public:
  /// \param tree, model, view must outlive this object
  FolderExpansion(FolderTree& tree, FolderTreeModel& model, FolderTreeView& view);

  void ExpandAll();
  /// Expands the folders that are marked as open and collapses the others.
  void ExpandMarked();

 private:
  /// Expands a folder and the folders below it, if they are marked as open.
  void ExpandMarkedIn(const Folder& folder);

  FolderTree& tree_;
  FolderTreeModel& model_;
  FolderTreeView& view_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPersistentModelIndex>

namespace tallow {

class FolderTree;
class FolderTreeModel;
class FolderTreeView;
class clsMain;

/// Hides the rows of the folders that the switches set aside, see FoldersSetAside.
class HiddenFolders {
 public:
  /// The parameters must outlive this object.
  HiddenFolders(const FolderTree& tree, const clsMain& library, const FolderTreeModel& model,
                FolderTreeView& view)
      : tree_(tree), library_(library), model_(model), view_(view) {}

  /// Hides and shows rows as the library and the folders are now. If the current folder is hidden,
  /// the folder above it becomes current, or the first one.
  void Update();

 private:
  void LeaveHiddenFolder();

  const FolderTree& tree_;
  const clsMain& library_;
  const FolderTreeModel& model_;
  FolderTreeView& view_;
  QList<QPersistentModelIndex> hidden_;
};

}  // namespace tallow

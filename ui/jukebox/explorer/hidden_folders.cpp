// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/hidden_folders.h"

#include <vector>

#include "jukebox/set_aside_folders.h"
#include "ui/jukebox/folder_tree_model.h"
#include "ui/jukebox/folder_tree_view.h"

namespace tallow {

void HiddenFolders::Update() {
  const std::vector<const Folder*> folders = FoldersSetAside(tree_, library_);
  if (folders.empty() && hidden_.isEmpty()) return;
  for (const QPersistentModelIndex& index : hidden_)
    if (index.isValid()) view_.setRowHidden(index.row(), index.parent(), false);
  hidden_.clear();
  for (const Folder* const folder : folders) {
    const QModelIndex index = model_.IndexOf(*folder);
    view_.setRowHidden(index.row(), index.parent(), true);
    hidden_.append(index);
  }
  LeaveHiddenFolder();
}

void HiddenFolders::LeaveHiddenFolder() {
  for (QModelIndex index = view_.currentIndex(); index.isValid(); index = index.parent()) {
    if (!view_.isRowHidden(index.row(), index.parent())) continue;
    const QModelIndex above = index.parent();
    view_.setCurrentIndex(above.isValid() ? above : model_.index(0, 0));
    return;
  }
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/folder_expansion.h"

#include <cstdint>

#include "jukebox/folder_tree.h"
#include "ui/jukebox/folder_tree_model.h"
#include "ui/jukebox/folder_tree_view.h"

namespace tallow {
namespace {

template <typename Act>
void ForEachFolder(Folder& folder, const Act& act) {
  act(folder);
  for (std::int32_t k = 0; k < folder.Children(); ++k) ForEachFolder(folder.ChildAt(k), act);
}

template <typename Act>
void ForEachFolder(FolderTree& tree, const Act& act) {
  for (std::int32_t k = 0; k < tree.Children(); ++k) ForEachFolder(tree.ChildAt(k), act);
}

}  // namespace

FolderExpansion::FolderExpansion(FolderTree& tree, FolderTreeModel& model, FolderTreeView& view)
    : tree_(tree), model_(model), view_(view) {
  connect(&model, &QAbstractItemModel::rowsInserted, this,
          [this](const QModelIndex& parent, int first, int last) {
            for (int row = first; row <= last; ++row)
              ExpandMarkedIn(*FolderTreeModel::FolderOf(model_.index(row, 0, parent)));
          });
  connect(&view, &QTreeView::expanded, this,
          [](const QModelIndex& index) { FolderTreeModel::FolderOf(index)->Open(true); });
  connect(&view, &QTreeView::collapsed, this,
          [](const QModelIndex& index) { FolderTreeModel::FolderOf(index)->Open(false); });
}

void FolderExpansion::ExpandMarkedIn(const Folder& folder) {
  for (std::int32_t k = 0; k < folder.Children(); ++k) ExpandMarkedIn(folder.ChildAt(k));
  if (folder.Open()) view_.ExpandFolder(folder);
}

void FolderExpansion::ExpandAll() {
  ForEachFolder(tree_, [](Folder& folder) { folder.Open(true); });
  view_.expandAll();
}

void FolderExpansion::ExpandMarked() {
  ForEachFolder(
      tree_, [this](Folder& folder) { view_.setExpanded(model_.IndexOf(folder), folder.Open()); });
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/folder_tree_model.h"

#include <utility>

#include "jukebox/special_folders.h"
#include "ui/support/display_text.h"
#include "ui/support/frame_pictures.h"

namespace tallow {

FolderTreeModel::FolderTreeModel(FolderTree& tree, QObject* parent)
    : QAbstractItemModel(parent), tree_(tree) {
  images_[kClosedFolder] = FramePicture("folder-closed");
  images_[kOpenFolder] = FramePicture("folder-open");
  tree_.SetObserver(this);
}

FolderTreeModel::~FolderTreeModel() { tree_.SetObserver(nullptr); }

Folder* FolderTreeModel::FolderOf(const QModelIndex& index) {
  return static_cast<Folder*>(index.internalPointer());
}

QModelIndex FolderTreeModel::IndexOf(const Folder& folder) const {
  return createIndex(folder.Index(), 0, const_cast<Folder*>(&folder));
}

void FolderTreeModel::SetShown(const Folder* folder) {
  const Folder* const before = shown_;
  shown_ = folder;
  for (const Folder* const changed : {before, shown_})
    if (changed != nullptr)
      emit dataChanged(IndexOf(*changed), IndexOf(*changed), {Qt::DecorationRole});
}

QModelIndex FolderTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return IndexOf(parent.isValid() ? FolderOf(parent)->ChildAt(row) : tree_.ChildAt(row));
}

QModelIndex FolderTreeModel::parent(const QModelIndex& index) const {
  const Folder* const above = index.isValid() ? FolderOf(index)->Parent() : nullptr;
  return above != nullptr ? IndexOf(*above) : QModelIndex();
}

int FolderTreeModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? FolderOf(parent)->Children() : tree_.Children();
}

int FolderTreeModel::columnCount(const QModelIndex& /*parent*/) const { return 1; }

QVariant FolderTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Folder& folder = *FolderOf(index);
  if (role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole)
    return DisplayText(folder.Text());
  if (role == Qt::DecorationRole)
    return images_[(&folder == shown_ ? folder.SelectedImage() : folder.Image()) == kOpenFolder];
  return {};
}

bool FolderTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !index.isValid() || !rename_) return false;
  Folder& folder = *FolderOf(index);
  // The displayed text may differ from the stored bytes; if the user has not edited it, the stored
  // text is kept.
  if (value.toString() == DisplayText(folder.Text())) return true;
  return rename_(folder, value.toString().toStdString());
}

Qt::ItemFlags FolderTreeModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags flags =
      Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
  return IsSpecialFolder(*FolderOf(index)) ? flags : flags | Qt::ItemIsEditable;
}

void FolderTreeModel::SetRename(std::function<bool(Folder&, const std::string&)> rename) {
  rename_ = std::move(rename);
}

void FolderTreeModel::BeforeAdd(const Folder* parent, std::int32_t index) {
  beginInsertRows(parent != nullptr ? IndexOf(*parent) : QModelIndex(), index, index);
}

void FolderTreeModel::AfterAdd() { endInsertRows(); }

void FolderTreeModel::BeforeRemove(const Folder& folder) {
  if (shown_ != nullptr && folder.Holds(*shown_)) shown_ = nullptr;
  beginRemoveRows(parent(IndexOf(folder)), folder.Index(), folder.Index());
}

void FolderTreeModel::AfterRemove() { endRemoveRows(); }

void FolderTreeModel::Renamed(const Folder& folder) {
  emit dataChanged(IndexOf(folder), IndexOf(folder), {Qt::DisplayRole});
}

void FolderTreeModel::BeforeReset() {
  beginResetModel();
  shown_ = nullptr;
}

void FolderTreeModel::AfterReset() { endResetModel(); }

void FolderTreeModel::BeforeReorder(const Folder* above) {
  const QModelIndex parent_index = above != nullptr ? IndexOf(*above) : QModelIndex();
  emit layoutAboutToBeChanged({parent_index});
  reordered_.clear();
  reordered_folders_.clear();
  for (const QModelIndex& held : persistentIndexList())
    if (held.isValid() && FolderOf(held)->Parent() == above) {
      reordered_.append(held);
      reordered_folders_.append(FolderOf(held));
    }
}

void FolderTreeModel::BeforeReorderAll() {
  emit layoutAboutToBeChanged();
  reordered_ = persistentIndexList();
  reordered_folders_.clear();
  for (const QModelIndex& held : reordered_) reordered_folders_.append(FolderOf(held));
}

void FolderTreeModel::AfterReorderAll() { AfterReorder(); }

void FolderTreeModel::AfterReorder() {
  QModelIndexList now;
  for (const Folder* const folder : reordered_folders_) now.append(IndexOf(*folder));
  changePersistentIndexList(reordered_, now);
  emit layoutChanged();
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include <QAbstractItemModel>
#include <QIcon>

#include "jukebox/folder_tree.h"

namespace tallow {

/// Item model of a jukebox's folders for a tree view. An index points to its folder.
class FolderTreeModel : public QAbstractItemModel, private FolderTreeObserver {
  Q_OBJECT

 public:
  /// \param tree must outlive the model
  FolderTreeModel(FolderTree& tree, QObject* parent);
  ~FolderTreeModel() override;

  static Folder* FolderOf(const QModelIndex& index);
  QModelIndex IndexOf(const Folder& folder) const;
  /// Sets the folder that is drawn with the open-folder icon; null for none.
  void SetShown(const Folder* folder);
  /// Sets the callback that renames a folder to the text that the user has typed; the callback
  /// returns whether the folder now has that text.
  void SetRename(std::function<bool(Folder&, const std::string&)> rename);

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  void BeforeAdd(const Folder* parent, std::int32_t index) override;
  void AfterAdd() override;
  void BeforeRemove(const Folder& folder) override;
  void AfterRemove() override;
  void Renamed(const Folder& folder) override;
  void BeforeReset() override;
  void AfterReset() override;
  void BeforeReorder(const Folder* parent) override;
  void AfterReorder() override;
  void BeforeReorderAll() override;
  void AfterReorderAll() override;

  FolderTree& tree_;
  std::function<bool(Folder&, const std::string&)> rename_;
  const Folder* shown_ = nullptr;
  QModelIndexList reordered_;  ///< persistent indexes of the folders that are being reordered
  QList<const Folder*> reordered_folders_;  ///< the folders of reordered_
  QIcon images_[2];                         ///< indexed by FolderImage
};

}  // namespace tallow

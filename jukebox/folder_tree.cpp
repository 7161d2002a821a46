// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/folder_tree.h"

#include <algorithm>

namespace tallow {

Folder* Folder::Next() const noexcept {
  const Folder& above = parent_ != nullptr ? *parent_ : *tree_->root_;
  const auto next = static_cast<std::size_t>(index_) + 1;
  return next < above.children_.size() ? above.children_[next].get() : nullptr;
}

FolderTree::FolderTree() : root_(new Folder) {}
FolderTree::~FolderTree() = default;

Folder& FolderTree::AddChild(Folder* parent, std::string_view text, std::int32_t image,
                             std::int32_t selected_image) {
  Folder& above = parent != nullptr ? *parent : *root_;
  std::unique_ptr<Folder> folder(new Folder);
  folder->key_ = ++last_key_;
  folder->image_ = image;
  folder->selected_image_ = selected_image;
  folder->level_ = parent != nullptr ? parent->level_ + 1 : 0;
  folder->index_ = above.Children();
  folder->parent_ = parent;
  folder->tree_ = this;
  folder->text_ = text;
  if (observer_ != nullptr) observer_->BeforeAdd(parent, folder->index_);
  above.children_.push_back(std::move(folder));
  ++count_;
  if (observer_ != nullptr) observer_->AfterAdd();
  return *above.children_.back();
}

Folder* FolderTree::Find(std::string_view text, const Folder* below) const noexcept {
  const auto& siblings = (below != nullptr ? *below : *root_).children_;
  const auto found = std::find_if(siblings.begin(), siblings.end(),
                                  [&](const auto& folder) { return folder->text_ == text; });
  return found == siblings.end() ? nullptr : found->get();
}

}  // namespace tallow

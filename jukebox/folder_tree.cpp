// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/folder_tree.h"

#include <algorithm>
#include <utility>

namespace tallow {

void Renumber(std::vector<SongEntry>& entries, const NewNumbers& numbers) {
  for (SongEntry& entry : entries)
    if (const auto found = numbers.find(entry.SubItem()); found != numbers.end())
      entry.SubItem(found->second);
}

void Renumber(Folder& folder, const NewNumbers& numbers) {
  Renumber(folder.Items(), numbers);
  for (std::int32_t k = 0; k < folder.Children(); ++k) Renumber(folder.ChildAt(k), numbers);
}

Folder* Folder::Sibling(std::int32_t index) const noexcept {
  const Folder& above = parent_ != nullptr ? *parent_ : *tree_->root_;
  const auto place = static_cast<std::size_t>(index);
  return index >= 0 && place < above.children_.size() ? above.children_[place].get() : nullptr;
}

Folder* Folder::Next() const noexcept { return Sibling(index_ + 1); }
Folder* Folder::Previous() const noexcept { return Sibling(index_ - 1); }

bool Folder::Holds(const Folder& folder) const noexcept {
  for (const Folder* above = &folder; above != nullptr; above = above->parent_)
    if (above == this) return true;
  return false;
}

std::int32_t Folder::Height() const noexcept {
  std::int32_t height = 0;
  for (const auto& child : children_) height = std::max(height, child->Height() + 1);
  return height;
}

std::int32_t Folder::CountAll() const noexcept {
  std::int32_t count = 1;
  for (const auto& child : children_) count += child->CountAll();
  return count;
}

FolderTree::FolderTree(std::uint32_t last_key) : root_(new Folder), last_key_(last_key) {}
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

DetachedFolder FolderTree::NewFolder(std::string_view text) {
  DetachedFolder folder(new Folder);
  folder->key_ = ++last_key_;
  folder->text_ = text;
  folder->tree_ = this;
  return folder;
}

DetachedFolder FolderTree::Take(Folder& folder) {
  if (observer_ != nullptr) observer_->BeforeRemove(folder);
  auto& siblings = Siblings(folder.parent_).children_;
  const auto place = siblings.begin() + folder.index_;
  DetachedFolder taken = std::move(*place);
  siblings.erase(place);
  for (auto k = static_cast<std::size_t>(taken->index_); k < siblings.size(); ++k)
    siblings[k]->index_ = static_cast<std::int32_t>(k);
  count_ -= taken->CountAll();
  taken->parent_ = nullptr;
  if (observer_ != nullptr) observer_->AfterRemove();
  return taken;
}

void FolderTree::Attach(Folder& folder, Folder* parent) {
  folder.tree_ = this;
  folder.parent_ = parent;
  folder.level_ = parent != nullptr ? parent->level_ + 1 : 0;
  for (const auto& child : folder.children_) Attach(*child, &folder);
}

Folder& FolderTree::Put(DetachedFolder folder, Folder* parent, std::int32_t index) {
  if (observer_ != nullptr) observer_->BeforeAdd(parent, index);
  auto& siblings = Siblings(parent).children_;
  Folder& put = *folder;
  Attach(put, parent);
  siblings.insert(siblings.begin() + index, std::move(folder));
  for (auto k = static_cast<std::size_t>(index); k < siblings.size(); ++k)
    siblings[k]->index_ = static_cast<std::int32_t>(k);
  count_ += put.CountAll();
  if (observer_ != nullptr) observer_->AfterAdd();
  return put;
}

DetachedFolder FolderTree::CopyBelow(const Folder& folder) {
  DetachedFolder copy(new Folder);
  copy->key_ = ++last_key_;
  copy->image_ = folder.image_;
  copy->selected_image_ = folder.selected_image_;
  copy->open_ = folder.open_;
  copy->index_ = folder.index_;
  copy->text_ = folder.text_;
  copy->items_ = folder.items_;
  // A copy is not shown, so its entries have no labels.
  for (SongEntry& entry : copy->items_) entry.LabelPosition(0);
  for (const auto& child : folder.children_) copy->children_.push_back(CopyBelow(*child));
  return copy;
}

DetachedFolder FolderTree::Copy(const Folder& folder) { return CopyBelow(folder); }

void FolderTree::Swap(FolderTree& other) {
  if (observer_ != nullptr) observer_->BeforeReset();
  std::swap(root_, other.root_);
  std::swap(last_key_, other.last_key_);
  std::swap(count_, other.count_);
  for (FolderTree* const tree : {this, &other})
    for (const auto& folder : tree->root_->children_) tree->Attach(*folder, nullptr);
  if (observer_ != nullptr) observer_->AfterReset();
}

void FolderTree::Rename(Folder& folder, std::string_view text) {
  folder.text_ = text;
  if (observer_ != nullptr) observer_->Renamed(folder);
}

void FolderTree::Reorder(Folder* parent, const std::vector<std::int32_t>& order) {
  if (observer_ != nullptr) observer_->BeforeReorder(parent);
  auto& siblings = Siblings(parent).children_;
  std::vector<std::unique_ptr<Folder>> reordered;
  reordered.reserve(siblings.size());
  for (const std::int32_t place : order) {
    reordered.push_back(std::move(siblings.at(static_cast<std::size_t>(place))));
    reordered.back()->index_ = static_cast<std::int32_t>(reordered.size()) - 1;
  }
  siblings = std::move(reordered);
  if (observer_ != nullptr) observer_->AfterReorder();
}

bool FolderTree::FitsBelow(const Folder* parent, const Folder& folder) noexcept {
  const std::int32_t level = parent != nullptr ? parent->level_ + 1 : 0;
  return level + folder.Height() <= kMaxLevel;
}

bool FolderTree::Contains(const Folder& folder) const noexcept {
  const Folder* top = &folder;
  while (top->parent_ != nullptr) top = top->parent_;
  return top->index_ < Children() && &ChildAt(top->index_) == top;
}

namespace {

Folder* FindKeyBelow(const Folder& folder, std::uint32_t key) noexcept {
  for (std::int32_t k = 0; k < folder.Children(); ++k) {
    Folder& child = folder.ChildAt(k);
    if (child.Key() == key) return &child;
    if (Folder* const found = FindKeyBelow(child, key)) return found;
  }
  return nullptr;
}

}  // namespace

Folder* FolderTree::FindKey(std::uint32_t key) const noexcept { return FindKeyBelow(*root_, key); }

Folder* FolderTree::Find(std::string_view text, const Folder* below) const noexcept {
  const auto& siblings = (below != nullptr ? *below : *root_).children_;
  const auto found = std::find_if(siblings.begin(), siblings.end(),
                                  [&](const auto& folder) { return folder->text_ == text; });
  return found == siblings.end() ? nullptr : found->get();
}

namespace {

/// A 64-bit hash in which every input bit can change every bit of the result. The constants are
/// those of the SplitMix64 finalizer.
class Digest {
 public:
  void Add(std::uint64_t value) noexcept {
    state_ += value + 0x9E3779B97F4A7C15U;
    state_ = (state_ ^ (state_ >> 30)) * 0xBF58476D1CE4E5B9U;
    state_ = (state_ ^ (state_ >> 27)) * 0x94D049BB133111EBU;
    state_ ^= state_ >> 31;
  }
  void Add(const Folder& folder) {
    Add(folder.Text().size());
    for (const char c : folder.Text()) Add(static_cast<unsigned char>(c));
    Add(folder.Items().size());
    for (const SongEntry& entry : folder.Items()) Add(static_cast<std::uint32_t>(entry.SubItem()));
    if (folder.Automatic()) Add(kAutomatic);
    Add(static_cast<std::uint32_t>(folder.Children()));
    for (std::int32_t k = 0; k < folder.Children(); ++k) Add(folder.ChildAt(k));
  }
  std::uint64_t Value() const noexcept { return state_; }

 private:
  /// Stands for the mark of a folder; no number of songs or folders is that large.
  static constexpr std::uint64_t kAutomatic = ~std::uint64_t{0};

  std::uint64_t state_ = 0;
};

}  // namespace

std::uint64_t ContentHash(const FolderTree& tree) {
  Digest digest;
  for (std::int32_t k = 0; k < tree.Children(); ++k) digest.Add(tree.ChildAt(k));
  return digest.Value();
}

}  // namespace tallow

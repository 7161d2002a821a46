// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tallow {

class FolderTree;

/// A song in a folder of a jukebox. It occupies eight bytes, because a jukebox holds each song in
/// about six folders and there may be a million songs.
///
/// The text of an entry is made when the entry is displayed. Initially the text is the record
/// number. After the folder has been labelled, the text is the position that the entry had at that
/// time, a full stop, two blanks and the file name.
class SongEntry {
 public:
  SongEntry() = default;
  /// \param record the song's record number
  /// \param icon   the number of the rank picture
  SongEntry(std::int32_t record, std::int32_t icon) : record_(record) { Icon(icon); }

  /// The record number, the entry's only reference to the song.
  std::int32_t SubItem() const noexcept { return record_; }
  /// Replaces the song of the entry. The icon and the position in the label stay; the label shows
  /// the name of the new song.
  void SubItem(std::int32_t record) noexcept { record_ = record; }

  /// The number of the rank picture, 0 to 255; other values are clamped.
  std::int32_t Icon() const noexcept { return icon_; }
  void Icon(std::int32_t icon) noexcept {
    icon_ = static_cast<std::uint8_t>(icon < 0 ? 0 : icon > kMaxIcon ? kMaxIcon : icon);
  }

  /// The position, from 1, that the label shows; 0 when the text is the record number.
  std::int32_t LabelPosition() const noexcept { return static_cast<std::int32_t>(label_); }
  /// \param position 1 to 16,777,215; 0 makes the text the record number again
  void LabelPosition(std::int32_t position) noexcept {
    label_ = static_cast<std::uint32_t>(position) & kMaxLabel;
  }

 private:
  static constexpr std::int32_t kMaxIcon = 0xFF;
  static constexpr std::uint32_t kMaxLabel = 0xFFFFFF;

  std::int32_t record_ = 0;
  std::uint32_t label_ : 24 = 0;
  std::uint32_t icon_ : 8 = 0;
};
static_assert(sizeof(SongEntry) == 8);

/// Maps old record numbers of songs to new ones.
using NewNumbers = std::unordered_map<std::int32_t, std::int32_t>;

/// Replaces old record numbers in the entries by the new ones.
void Renumber(std::vector<SongEntry>& entries, const NewNumbers& numbers);

/// The pictures of a folder, as indexes of the tree's images.
enum FolderImage : std::int32_t {
  kClosedFolder = 0,
  kOpenFolder = 1,
};

/// A folder of a jukebox: a text, subfolders and songs, both in the user's order.
class Folder {
 public:
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  /// Unique in its tree, unlike the text; never 0 and never reused.
  std::uint32_t Key() const noexcept { return key_; }
  const std::string& Text() const noexcept { return text_; }
  /// The picture while the folder is not selected, see FolderImage.
  std::int32_t Image() const noexcept { return image_; }
  /// The picture while the folder is selected.
  std::int32_t SelectedImage() const noexcept { return selected_image_; }

  /// Whether the folder is expanded in the tree view.
  bool Open() const noexcept { return open_; }
  void Open(bool open) noexcept { open_ = open; }

  /// Whether the folder is marked as one that the program fills although its text alone does not
  /// say so, see FindAlbumFolder. A copy of a folder is not marked.
  bool Automatic() const noexcept { return automatic_; }
  void Automatic(bool automatic) noexcept { automatic_ = automatic; }

  /// Whether the given folder is this folder or lies below it on any level.
  bool Holds(const Folder& folder) const noexcept;
  /// Number of levels below this folder; 0 without subfolders.
  std::int32_t Height() const noexcept;
  /// Number of folders in this subtree, including this folder.
  std::int32_t CountAll() const noexcept;

  /// Depth of the folder; 0 at top level.
  std::int32_t Level() const noexcept { return level_; }
  /// The parent folder; null at top level.
  Folder* Parent() const noexcept { return parent_; }
  /// Number of direct subfolders.
  std::int32_t Children() const noexcept { return static_cast<std::int32_t>(children_.size()); }
  /// A direct subfolder; index from 0.
  Folder& ChildAt(std::int32_t index) const {
    return *children_.at(static_cast<std::size_t>(index));
  }
  /// The first direct subfolder; null when there is none.
  Folder* Child() const noexcept { return children_.empty() ? nullptr : children_.front().get(); }
  /// The next sibling; null for the last.
  Folder* Next() const noexcept;
  /// The previous sibling; null for the first.
  Folder* Previous() const noexcept;
  /// The folder's index among its siblings, from 0.
  std::int32_t Index() const noexcept { return index_; }

  /// The folder's songs, in order.
  std::vector<SongEntry>& Items() noexcept { return items_; }
  const std::vector<SongEntry>& Items() const noexcept { return items_; }

 private:
  friend class FolderTree;
  Folder() = default;
  Folder* Sibling(std::int32_t index) const noexcept;

  std::uint32_t key_ = 0;
  std::int32_t image_ = kClosedFolder;
  std::int32_t selected_image_ = kOpenFolder;
  bool open_ = false;
  bool automatic_ = false;
  std::int32_t level_ = 0;
  std::int32_t index_ = 0;
  Folder* parent_ = nullptr;
  FolderTree* tree_ = nullptr;
  std::string text_;
  std::vector<std::unique_ptr<Folder>> children_;
  std::vector<SongEntry> items_;
};

/// Callbacks for changes of a tree, to keep a view up to date.
class FolderTreeObserver {
 public:
  virtual ~FolderTreeObserver() = default;
  /// \param parent null at top level
  /// \param index  the new folder's index among its siblings, from 0
  virtual void BeforeAdd(const Folder* parent, std::int32_t index) = 0;
  virtual void AfterAdd() = 0;
  /// \param folder will be removed together with everything below it
  virtual void BeforeRemove(const Folder& folder) = 0;
  virtual void AfterRemove() = 0;
  virtual void Renamed(const Folder& folder) = 0;
  /// Called when the whole content of the tree is replaced.
  virtual void BeforeReset() = 0;
  virtual void AfterReset() = 0;
  /// Called when the subfolders of one folder are reordered. The folders keep their addresses.
  /// \param parent null at top level
  virtual void BeforeReorder(const Folder* parent) = 0;
  virtual void AfterReorder() = 0;
  /// Called when folders on all levels may be reordered. Between these two calls no single reorder
  /// is reported.
  virtual void BeforeReorderAll() = 0;
  virtual void AfterReorderAll() = 0;
};

/// The deepest level of a folder; top level is level 0. The limit bounds the depth of a tree that
/// is read from a jukebox file, and applies to all trees.
inline constexpr std::int32_t kMaxLevel = 1000;

/// Calls Renumber for the songs of a folder and of all folders below it.
void Renumber(Folder& folder, const NewNumbers& numbers);

/// A folder, with everything below it, that is in no tree.
using DetachedFolder = std::unique_ptr<Folder>;

/// The folders of one jukebox.
///
/// Cost: appending a folder is O(1). Any other insertion, removal or move is linear in the number
/// of siblings.
class FolderTree {
 public:
  /// \param last_key the folders get the keys after this one
  explicit FolderTree(std::uint32_t last_key = 0);
  FolderTree(const FolderTree&) = delete;
  FolderTree& operator=(const FolderTree&) = delete;
  ~FolderTree();

  /// Appends a folder to the subfolders of its parent.
  ///
  /// \param parent         null for a top-level folder
  /// \param image          picture of the folder, see FolderImage
  /// \param selected_image picture of the folder while it is selected
  Folder& AddChild(Folder* parent, std::string_view text, std::int32_t image = kClosedFolder,
                   std::int32_t selected_image = kOpenFolder);

  /// Creates a folder with a key of this tree, not yet in the tree.
  DetachedFolder NewFolder(std::string_view text);

  /// Removes a folder, with everything below it, from the tree and returns ownership of it.
  DetachedFolder Take(Folder& folder);

  /// Inserts a folder that Take removed from this tree, or that NewFolder or Copy made for it.
  ///
  /// \param parent null for top level
  /// \param index  index among the new siblings, 0 to their number
  Folder& Put(DetachedFolder folder, Folder* parent, std::int32_t index);

  /// Copies a folder, of this or another tree, with everything below it. The copy gets keys of this
  /// tree.
  DetachedFolder Copy(const Folder& folder);

  /// Exchanges all folders with another tree. Notifies only the observer of this tree.
  void Swap(FolderTree& other);

  void Rename(Folder& folder, std::string_view text);

  /// Reorders the subfolders of a folder, or the top-level folders.
  ///
  /// \param order the present indexes, each once, in the new order
  void Reorder(Folder* parent, const std::vector<std::int32_t>& order);

  /// Reorders the subfolders of many folders at once. Views process this faster than single
  /// reorders.
  /// \param act calls Reorder and changes nothing else
  template <typename Act>
  void ReorderMany(const Act& act) {
    if (observer_ != nullptr) observer_->BeforeReorderAll();
    FolderTreeObserver* const observer = std::exchange(observer_, nullptr);
    act();
    observer_ = observer;
    if (observer_ != nullptr) observer_->AfterReorderAll();
  }

  /// Returns the folder with a key; null when there is none. Cost: O(folders).
  Folder* FindKey(std::uint32_t key) const noexcept;

  /// Whether a folder can be put below a parent without exceeding kMaxLevel.
  /// \param parent null for top level
  static bool FitsBelow(const Folder* parent, const Folder& folder) noexcept;

  /// Returns the first folder with exactly this text at top level, or directly below a folder; null
  /// when there is none.
  Folder* Find(std::string_view text, const Folder* below = nullptr) const noexcept;

  /// Number of top-level folders.
  std::int32_t Children() const noexcept { return root_->Children(); }
  /// A top-level folder; index from 0.
  Folder& ChildAt(std::int32_t index) const { return root_->ChildAt(index); }
  /// Whether a folder is in this tree. A folder in a detached subtree is not.
  bool Contains(const Folder& folder) const noexcept;
  /// Number of folders on all levels.
  std::int32_t Count() const noexcept { return count_; }

  /// \param observer null for none; must outlive the tree or be removed before
  void SetObserver(FolderTreeObserver* observer) noexcept { observer_ = observer; }

 private:
  friend class Folder;

  Folder& Siblings(Folder* parent) const noexcept { return parent != nullptr ? *parent : *root_; }
  DetachedFolder CopyBelow(const Folder& folder);
  void Attach(Folder& folder, Folder* parent);

  std::unique_ptr<Folder> root_;  ///< parent of the top level; never exposed
  std::uint32_t last_key_;
  std::int32_t count_ = 0;
  FolderTreeObserver* observer_ = nullptr;
};

/// Returns a hash of a tree's content: the folders with their texts and marks, and the songs, all
/// in order. Equal contents have equal hashes. Different contents have different hashes, except in
/// a 64-bit hash collision.
std::uint64_t ContentHash(const FolderTree& tree);

}  // namespace tallow

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

/// A song in a folder of a jukebox: eight bytes, because a jukebox holds each song in half a dozen
/// folders and there may be a million songs.
///
/// Its text is made when it is shown. Right after it was added the text is the record number; once
/// the folder has been labelled it is the position the entry had then, a full stop, two blanks and
/// the file name.
class SongEntry {
 public:
  SongEntry() = default;
  /// \param record the song's record number
  /// \param icon   the rank to show
  SongEntry(std::int32_t record, std::int32_t icon) : record_(record) { Icon(icon); }

  /// The record number, the entry's only link to the song.
  std::int32_t SubItem() const noexcept { return record_; }
  /// Changes the song under the entry. The icon and the position in the label stay; the name in the
  /// label is the new song's.
  void SubItem(std::int32_t record) noexcept { record_ = record; }

  /// The number of the rank picture, 0 to 255; what is outside shows as the nearest.
  std::int32_t Icon() const noexcept { return icon_; }
  void Icon(std::int32_t icon) noexcept {
    icon_ = static_cast<std::uint8_t>(icon < 0 ? 0 : icon > kMaxIcon ? kMaxIcon : icon);
  }

  /// The position, from 1, that the label shows; 0 while the text is the record number.
  std::int32_t LabelPosition() const noexcept { return static_cast<std::int32_t>(label_); }
  /// \param position 1 to 16,777,215; 0 turns the label back into the record number
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

/// Record numbers that songs had, and those that they have now.
using NewNumbers = std::unordered_map<std::int32_t, std::int32_t>;

/// Lets entries mean songs by the numbers that they have now.
void Renumber(std::vector<SongEntry>& entries, const NewNumbers& numbers);

/// The pictures of a folder, as numbers of the tree's images.
enum FolderImage : std::int32_t {
  kClosedFolder = 0,
  kOpenFolder = 1,
};

/// A folder of a jukebox: a text, folders and songs, all in the user's order.
class Folder {
 public:
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  /// Unlike the text, the key is this folder's alone in its tree; never 0 and never used again.
  std::uint32_t Key() const noexcept { return key_; }
  const std::string& Text() const noexcept { return text_; }
  /// The picture of the folder while it is not the one on show, see FolderImage.
  std::int32_t Image() const noexcept { return image_; }
  /// The picture of the folder while it is the one on show.
  std::int32_t SelectedImage() const noexcept { return selected_image_; }

  /// Whether the folder is shown with the folders below it.
  bool Open() const noexcept { return open_; }
  void Open(bool open) noexcept { open_ = open; }

  /// Whether a folder is this one or lies anywhere below it.
  bool Holds(const Folder& folder) const noexcept;
  /// How many levels of folders there are below; 0 for none.
  std::int32_t Height() const noexcept;
  /// How many folders this one and those below it are.
  std::int32_t CountAll() const noexcept;

  /// How deep the folder lies; 0 at top level.
  std::int32_t Level() const noexcept { return level_; }
  /// The folder above; null at top level.
  Folder* Parent() const noexcept { return parent_; }
  /// How many folders are directly below.
  std::int32_t Children() const noexcept { return static_cast<std::int32_t>(children_.size()); }
  /// A folder directly below, from 0.
  Folder& ChildAt(std::int32_t index) const {
    return *children_.at(static_cast<std::size_t>(index));
  }
  /// The first folder directly below; null when there is none.
  Folder* Child() const noexcept { return children_.empty() ? nullptr : children_.front().get(); }
  /// The folder behind this one under the same parent; null for the last.
  Folder* Next() const noexcept;
  /// The folder before this one under the same parent; null for the first.
  Folder* Previous() const noexcept;
  /// The folder's place among its siblings, from 0.
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
  std::int32_t level_ = 0;
  std::int32_t index_ = 0;
  Folder* parent_ = nullptr;
  FolderTree* tree_ = nullptr;
  std::string text_;
  std::vector<std::unique_ptr<Folder>> children_;
  std::vector<SongEntry> items_;
};

/// Is told what changes in a tree, to keep a view in step.
class FolderTreeObserver {
 public:
  virtual ~FolderTreeObserver() = default;
  /// \param parent null at top level
  /// \param index  the new folder's place among its siblings, from 0
  virtual void BeforeAdd(const Folder* parent, std::int32_t index) = 0;
  virtual void AfterAdd() = 0;
  /// \param folder goes, with all below it
  virtual void BeforeRemove(const Folder& folder) = 0;
  virtual void AfterRemove() = 0;
  virtual void Renamed(const Folder& folder) = 0;
  /// Everything is replaced.
  virtual void BeforeReset() = 0;
  virtual void AfterReset() = 0;
  /// The folders below one, or at top level, come in another order. They keep their addresses.
  /// \param parent null at top level
  virtual void BeforeReorder(const Folder* parent) = 0;
  virtual void AfterReorder() = 0;
  /// Folders on all levels come in another order. Between these two no single reorder is told.
  virtual void BeforeReorderAll() = 0;
  virtual void AfterReorderAll() = 0;
};

/// How deep a folder may lie: one at top level is at level 0. It bounds what a file of a jukebox may ask
/// for, so no tree may get any deeper.
inline constexpr std::int32_t kMaxLevel = 1000;

/// Renumber for the songs of a folder and of all below it.
void Renumber(Folder& folder, const NewNumbers& numbers);

/// A folder, with all below it, that is in no tree.
using DetachedFolder = std::unique_ptr<Folder>;

/// The folders of one jukebox.
///
/// Cost: adding a folder behind its siblings is O(1); all else in the middle of siblings costs their
/// number.
class FolderTree {
 public:
  FolderTree();
  FolderTree(const FolderTree&) = delete;
  FolderTree& operator=(const FolderTree&) = delete;
  ~FolderTree();

  /// Adds a folder behind its new siblings.
  ///
  /// \param parent         null for a top-level folder
  /// \param image          picture of the folder, see FolderImage
  /// \param selected_image picture of the folder while it is on show
  Folder& AddChild(Folder* parent, std::string_view text, std::int32_t image = kClosedFolder,
                   std::int32_t selected_image = kOpenFolder);

  /// A folder made for this tree, not yet in it.
  DetachedFolder NewFolder(std::string_view text);

  /// Takes a folder out of the tree, with all below it.
  DetachedFolder Take(Folder& folder);

  /// Puts a folder into the tree that was taken out of it, or is a copy made for it.
  ///
  /// \param parent null for top level
  /// \param index  its place among its new siblings, 0 to their number
  Folder& Put(DetachedFolder folder, Folder* parent, std::int32_t index);

  /// A copy of a folder with all below it, of this tree or another one, with keys of this tree.
  DetachedFolder Copy(const Folder& folder);

  /// Takes over all folders of another tree, which gets those of this one. Only this one's observer is
  /// told.
  void Swap(FolderTree& other);

  void Rename(Folder& folder, std::string_view text);

  /// Puts the folders below one, or at top level, into another order.
  ///
  /// \param order their present places, each once, in their new order
  void Reorder(Folder* parent, const std::vector<std::int32_t>& order);

  /// Reorders folders in many places at once, which views follow faster than one place after another.
  /// \param act calls Reorder and changes nothing else
  template <typename Act>
  void ReorderMany(const Act& act) {
    if (observer_ != nullptr) observer_->BeforeReorderAll();
    FolderTreeObserver* const observer = std::exchange(observer_, nullptr);
    act();
    observer_ = observer;
    if (observer_ != nullptr) observer_->AfterReorderAll();
  }

  /// The folder of a key; null when there is none. Cost: O(folders).
  Folder* FindKey(std::uint32_t key) const noexcept;

  /// Whether a folder may be put below another one without lying deeper than kMaxLevel.
  /// \param parent null for top level
  static bool HasRoomBelow(const Folder* parent, const Folder& folder) noexcept;

  /// The first folder of exactly this text at top level, or directly below a folder; null when
  /// there is none.
  Folder* Find(std::string_view text, const Folder* below = nullptr) const noexcept;

  /// How many folders are at top level.
  std::int32_t Children() const noexcept { return root_->Children(); }
  /// A top-level folder, from 0.
  Folder& ChildAt(std::int32_t index) const { return root_->ChildAt(index); }
  /// Whether a folder is in this tree and not in a detached part of it.
  bool Contains(const Folder& folder) const noexcept;
  /// How many folders there are on all levels.
  std::int32_t Count() const noexcept { return count_; }

  /// \param observer null for none; has to outlive the tree or be taken off
  void SetObserver(FolderTreeObserver* observer) noexcept { observer_ = observer; }

 private:
  friend class Folder;

  Folder& Siblings(Folder* parent) const noexcept { return parent != nullptr ? *parent : *root_; }
  DetachedFolder CopyBelow(const Folder& folder);
  void Attach(Folder& folder, Folder* parent);

  std::unique_ptr<Folder> root_;  ///< holds the top level; never handed out
  std::uint32_t last_key_ = 0;
  std::int32_t count_ = 0;
  FolderTreeObserver* observer_ = nullptr;
};

/// A number for what a tree holds: folders with their texts, and songs, all in their order. Trees that
/// hold the same have the same number; others have another one, as far as 64 bits can tell.
std::uint64_t ContentOf(const FolderTree& tree);

}  // namespace tallow

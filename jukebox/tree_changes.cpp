// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/tree_changes.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace tallow {
namespace {

std::int32_t CountChildren(const Folder* parent, const FolderTree& tree) {
  return parent != nullptr ? parent->Children() : tree.Children();
}

/// Inserts a folder into the tree. There should never be fewer siblings than when the index was
/// stored, but an index past the end would be undefined behaviour.
void Put(DetachedFolder folder, Folder* parent, std::int32_t index, FolderTree& tree) {
  tree.Put(std::move(folder), parent, std::min(index, CountChildren(parent, tree)));
}

/// Toggles a change of any kind.
struct Toggler {
  FolderTree& tree;

  void operator()(FolderPresence& change) const {
    if (change.detached == nullptr)
      change.detached = tree.Take(*change.folder);
    else
      Put(std::move(change.detached), change.parent, change.index, tree);
  }

  void operator()(FolderMove& change) const {
    Folder* const parent = change.folder->Parent();
    const std::int32_t index = change.folder->Index();
    Put(tree.Take(*change.folder), change.parent, change.index, tree);
    change.parent = parent;
    change.index = index;
  }

  void operator()(FolderRename& change) const {
    std::string text = change.folder->Text();
    tree.Rename(*change.folder, change.text);
    change.text = std::move(text);
  }

  void operator()(FolderReorder& change) const {
    tree.Reorder(change.parent, change.order.SourcesFor(CountChildren(change.parent, tree)));
    change.order.Invert();
  }

  void operator()(SongPresence& change) const {
    change.songs.Toggle(change.folder->Items(), change.detached);
    // Position 0: an entry that is not shown has its record number as text.
    for (SongEntry& entry : change.detached) entry.LabelPosition(0);
  }

  void operator()(SongReorder& change) const {
    std::vector<SongEntry>& entries = change.folder->Items();
    // The icons move with the songs until the folder is labelled again.
    const std::size_t first = change.order.First();
    std::vector<std::pair<std::int32_t, std::int32_t>> songs(change.order.size());
    for (std::size_t k = 0; k < songs.size(); ++k) {
      const SongEntry& from = entries[change.order.SourceOf(first + k)];
      songs[k] = {from.SubItem(), from.Icon()};
    }
    for (std::size_t k = 0; k < songs.size(); ++k) {
      entries[first + k].SubItem(songs[k].first);
      entries[first + k].Icon(songs[k].second);
    }
    change.order.Invert();
  }

  void operator()(RankChange& change) const { change.Toggle(); }
};

std::size_t BytesOfFolder(const Folder& folder) {
  std::size_t bytes = sizeof folder + folder.Items().capacity() * sizeof(SongEntry);
  for (std::int32_t k = 0; k < folder.Children(); ++k) bytes += BytesOfFolder(folder.ChildAt(k));
  return bytes;
}

/// Computes what a change of any kind owns besides the object itself, in bytes.
struct OwnedBytes {
  /// Also counts a folder that is in the tree now: toggling would make the change its owner.
  std::size_t operator()(const FolderPresence& change) const {
    return BytesOfFolder(*change.folder);
  }
  std::size_t operator()(const FolderMove& /*change*/) const { return 0; }
  std::size_t operator()(const FolderRename& change) const { return change.text.size(); }
  std::size_t operator()(const FolderReorder& change) const {
    return change.order.size() * sizeof(std::int32_t);
  }
  std::size_t operator()(const SongPresence& change) const {
    return change.songs.At().size() * (sizeof(std::int32_t) + sizeof(SongEntry));
  }
  std::size_t operator()(const SongReorder& change) const {
    return change.order.size() * sizeof(std::int32_t);
  }
  std::size_t operator()(const RankChange& change) const { return change.Bytes(); }
};

}  // namespace

void Toggle(TreeChange& change, FolderTree& tree) { std::visit(Toggler{tree}, change); }

Positions Prune(TreeChange& change, const Folder& folder, Positions pruned) {
  if (auto* const presence = std::get_if<SongPresence>(&change)) {
    if (presence->folder == &folder) return presence->songs.Prune(pruned);
  } else if (auto* const reorder = std::get_if<SongReorder>(&change)) {
    if (reorder->folder == &folder) return reorder->order.Prune(pruned);
  }
  return pruned;
}

void Renumber(TreeChange& change, const NewNumbers& numbers) {
  if (auto* const songs = std::get_if<SongPresence>(&change)) {
    Renumber(songs->detached, numbers);
  } else if (auto* const folder = std::get_if<FolderPresence>(&change)) {
    if (folder->detached != nullptr) Renumber(*folder->detached, numbers);
  } else if (auto* const ranks = std::get_if<RankChange>(&change)) {
    ranks->Renumber(numbers);
  }
}

Positions DuplicatesOf(const SongPresence& added) {
  const std::vector<SongEntry>& entries = added.folder->Items();
  const Positions& positions = added.songs.At();
  std::unordered_set<std::int32_t> others;
  auto next = positions.begin();
  for (std::size_t k = 0; k < entries.size(); ++k)
    if (next != positions.end() && static_cast<std::size_t>(*next) == k)
      ++next;
    else
      others.insert(entries[k].SubItem());
  Positions duplicates;
  for (const std::int32_t position : positions)
    if (others.contains(entries[static_cast<std::size_t>(position)].SubItem()))
      duplicates.push_back(position);
  return duplicates;
}

std::size_t BytesOf(const TreeChange& change) {
  return sizeof change + std::visit(OwnedBytes{}, change);
}

}  // namespace tallow

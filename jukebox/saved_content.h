// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "jukebox/folder_tree.h"

namespace tallow {

/// The content that a jukebox had when it was last loaded or saved, as a hash. Initially that of an
/// empty jukebox.
class SavedContent {
 public:
  /// Records the present content.
  void Remember(const FolderTree& folders);

  /// Records that the saved content is unknown and differs from the present one.
  void RememberOtherThan(const FolderTree& folders);

  /// Call this after record numbers have changed in the jukebox, but not in its file.
  /// \param before, after hashes of the content, see ContentHash
  void Renumbered(std::uint64_t before, std::uint64_t after) noexcept;

  /// Whether a content differs from the recorded one.
  bool DiffersFrom(const FolderTree& folders) const { return ContentHash(folders) != hash_; }

  /// Whether record numbers have changed in content that already differed from the saved one. If
  /// so, DiffersFrom may be true although both contents have the same songs; to find out, the file
  /// must be read.
  bool IsStale() const noexcept { return is_stale_; }

 private:
  std::uint64_t hash_ = ContentHash(FolderTree());
  bool is_stale_ = false;
};

}  // namespace tallow

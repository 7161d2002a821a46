// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/saved_content.h"

namespace tallow {

void SavedContent::Remember(const FolderTree& folders) {
  hash_ = ContentHash(folders);
  is_stale_ = false;
}

void SavedContent::RememberOtherThan(const FolderTree& folders) {
  // Later content has the inverted hash only by a collision, one in 2^64.
  hash_ = ~ContentHash(folders);
}

void SavedContent::Renumbered(std::uint64_t before, std::uint64_t after) noexcept {
  if (before == hash_)
    hash_ = after;
  else
    is_stale_ = true;
}

}  // namespace tallow

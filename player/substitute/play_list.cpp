// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/play_list.h"

#include <utility>

#include "player/player_request.h"

namespace tallow {

bool PlayList::Add(std::string path) {
  const std::size_t bytes = path.size() + sizeof(Entry);
  if (bytes > kMaxListBytes - bytes_) return false;
  bytes_ += bytes;
  entries_.push_back({std::move(path), ++last_number_});
  return true;
}

void PlayList::Clear() {
  // clear() would keep the memory of a long list.
  entries_ = {};
  bytes_ = 0;
  current_ = 0;
}

const std::string* PlayList::PathAfterCurrent(std::size_t distance) const noexcept {
  const std::size_t index = current_ + distance;
  return index < entries_.size() ? &entries_[index].path : nullptr;
}

}  // namespace tallow

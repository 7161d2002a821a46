// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/queue_entries.h"

#include <algorithm>

#include "player/tallow_player.h"

namespace tallow {

std::uint64_t QueueEntries::At(std::size_t row) {
  const std::size_t number = row / kBlock;
  auto block = blocks_.find(number);
  if (block == blocks_.end()) {
    if (blocks_.size() >= kMaxBlocks) blocks_.clear();
    block = blocks_.emplace(number, ask_(number * kBlock, kBlock)).first;
  }
  const std::size_t index = row % kBlock;
  return index < block->second.size() ? block->second[index] : 0;
}

std::vector<std::uint64_t> QueueEntries::All(std::size_t length) const {
  std::vector<std::uint64_t> all;
  all.reserve(length);
  while (all.size() < length) {
    const std::size_t count = std::min(length - all.size(), TallowPlayer::kMaxAsked);
    const std::vector<std::uint64_t> part = ask_(all.size(), count);
    all.insert(all.end(), part.begin(), part.end());
    if (part.size() < count) break;
  }
  return all;
}

}  // namespace tallow

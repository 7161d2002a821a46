// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/tag_cache.h"

#include <algorithm>

namespace tallow {
namespace {

/// FNV-1a hash of both parts of a path, followed by a mixing step so that every bit depends on all
/// input.
std::uint64_t HashOf(std::string_view folder, std::string_view name) noexcept {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const std::string_view part : {folder, name})
    for (const char c : part) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  hash = (hash ^ (hash >> 33U)) * 0xFF51AFD7ED558CCDU;
  return hash ^ (hash >> 33U);
}

}  // namespace

void TagCache::Add(std::string_view folder, std::string_view name, std::string_view tail) {
  if (tail.size() != kTagBytes) return;
  Entry& entry = entries_.emplace_back();
  entry.path_hash = HashOf(folder, name);
  entry.tagged = tail.starts_with(kTagMarker);
  tail.copy(entry.artist.data(), entry.artist.size(), kArtistAt);
  tail.copy(entry.year.data(), entry.year.size(), kYearAt);
  entry.genra = tail[kGenraAt];
}

void TagCache::Seal() {
  std::sort(entries_.begin(), entries_.end(),
            [](const Entry& a, const Entry& b) { return a.path_hash < b.path_hash; });
}

std::optional<TagBlock> TagCache::Find(std::string_view folder, std::string_view name) const {
  if (entries_.empty()) return std::nullopt;
  const std::uint64_t hash = HashOf(folder, name);
  // Interpolation search: hashes are evenly distributed, so the estimated index is off by only a
  // few steps.
  auto at = static_cast<std::size_t>(static_cast<double>(hash >> 11U) * 0x1p-53 *
                                     static_cast<double>(entries_.size()));
  at = std::min(at, entries_.size() - 1);
  while (at > 0 && entries_[at].path_hash > hash) --at;
  while (at + 1 < entries_.size() && entries_[at].path_hash < hash) ++at;
  const Entry& entry = entries_[at];
  if (entry.path_hash != hash) return std::nullopt;
  TagBlock block;
  block.result = TailResult::kRead;
  block.bytes.fill(' ');
  if (entry.tagged) kTagMarker.copy(block.bytes.data(), kTagMarker.size());
  std::copy(entry.artist.begin(), entry.artist.end(), block.bytes.begin() + kArtistAt);
  std::copy(entry.year.begin(), entry.year.end(), block.bytes.begin() + kYearAt);
  block.bytes[kGenraAt] = entry.genra;
  return block;
}

void TagCache::Clear() { entries_ = {}; }

}  // namespace tallow

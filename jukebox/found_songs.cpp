// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/found_songs.h"

#include <limits>

namespace tallow {
namespace {

/// The key of every folder of hits. The folders of a jukebox count up from 1 and do not reach it.
constexpr std::uint32_t kKeyOfHits = std::numeric_limits<std::uint32_t>::max();

}  // namespace

FoundSongs::FoundSongs() : tree_(kKeyOfHits - 1), folder_(tree_.AddChild(nullptr, {})) {}

void FoundSongs::Show(const std::vector<std::int32_t>& songs) {
  std::vector<SongEntry>& entries = folder_.Items();
  entries.clear();
  entries.reserve(songs.size());
  for (const std::int32_t song : songs) entries.emplace_back(song, 0);
  history_.Clear();
  is_shown_ = true;
}

void FoundSongs::Hide() {
  std::vector<SongEntry>().swap(folder_.Items());
  history_.Clear();
  is_shown_ = false;
}

bool IsOfHits(const Folder& folder) noexcept { return folder.Key() == kKeyOfHits; }

}  // namespace tallow

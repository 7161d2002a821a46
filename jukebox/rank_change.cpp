// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/rank_change.h"

#include <algorithm>
#include <utility>

#include "library/cls_main.h"

namespace tallow {

void RankChange::Add(std::int32_t record, std::string_view rank) {
  songs_.push_back({record, IndexOf(rank)});
}

std::vector<std::int32_t> RankChange::Songs() const {
  std::vector<std::int32_t> songs;
  songs.reserve(songs_.size());
  for (const Song& song : songs_) songs.push_back(song.record);
  return songs;
}

std::int32_t RankChange::IndexOf(std::string_view rank) {
  const auto [place, is_new] =
      indexes_.try_emplace(std::string(rank), static_cast<std::int32_t>(ranks_.size()));
  if (is_new) ranks_.emplace_back(rank);
  return place->second;
}

void RankChange::Toggle() {
  const std::vector<std::string> ranks = std::exchange(ranks_, {});
  indexes_.clear();
  for (Song& song : songs_) {
    const std::string& other = ranks[static_cast<std::size_t>(song.rank)];
    if (!library_->Song(song.record).Exists()) {
      song.rank = IndexOf(other);
      continue;
    }
    song.rank = IndexOf(library_->Mp3Info(kSongRank, song.record));
    library_->Mp3Info(kSongRank, song.record, other);
  }
  // A song that was added twice gets its first rank back last.
  std::reverse(songs_.begin(), songs_.end());
}

void RankChange::Renumber(const NewNumbers& numbers) {
  for (Song& song : songs_)
    if (const auto found = numbers.find(song.record); found != numbers.end())
      song.record = found->second;
}

std::size_t RankChange::Bytes() const noexcept {
  return songs_.capacity() * sizeof(Song) + ranks_.capacity() * sizeof(std::string);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/handed_over_songs.h"

#include <iterator>

namespace tallow {

void HandedOverSongs::Clear() {
  entries_.clear();
  songs_.clear();
  parts_.clear();
  ++revision_;
  ++generation_;
}

void HandedOverSongs::Add(std::span<const HandedOverSong> songs, const SongsOrigin& origin) {
  if (songs.empty()) return;
  ++revision_;
  if (parts_.empty() || parts_.back().origin != origin) parts_.push_back({Count(), origin});
  for (const HandedOverSong& song : songs) {
    entries_.push_back(song.entry != 0 ? song.entry : std::uint64_t{Count()} + 1);
    songs_.push_back(song.song);
  }
}

std::size_t HandedOverSongs::IndexOf(std::uint64_t entry) const {
  const auto found = std::ranges::lower_bound(entries_, entry);
  if (found == entries_.end() || *found != entry) return Count();
  return static_cast<std::size_t>(found - entries_.begin());
}

std::int32_t HandedOverSongs::SongOf(std::uint64_t entry) const {
  const std::size_t index = IndexOf(entry);
  return index == Count() ? 0 : songs_[index];
}

SongsOrigin HandedOverSongs::OriginOf(std::uint64_t entry) const {
  const std::size_t index = IndexOf(entry);
  if (index == Count()) return {};
  const auto after = std::ranges::upper_bound(parts_, index, {}, &Part::begin);
  return std::prev(after)->origin;
}

void HandedOverSongs::Renumber(const NewNumbers& numbers) {
  for (std::int32_t& song : songs_)
    if (const auto now = numbers.find(song); now != numbers.end()) song = now->second;
  ++revision_;
}

}  // namespace tallow

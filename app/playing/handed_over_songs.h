// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "app/playing/player_model.h"
#include "jukebox/folder_tree.h"
#include "player/playfile.h"

namespace tallow {

/// The songs of the player's list, as far as they were handed over by this run.
///
/// Each song has an entry, a number above 0 that is its own in the list. Entries of Tallow's own
/// player are numbered by the player. Winamp does not number its entries, but only appends to its
/// list, so the entry is the place in the list, from 1.
///
/// Finding the song of an entry takes O(log n).
class HandedOverSongs {
 public:
  /// The player's list is empty, or another player has been found.
  void Clear();
  /// The player's list has further songs.
  /// \param songs with the numbers of Tallow's own player, ascending and higher than those before;
  ///              with Winamp, all numbers are 0
  void Add(std::span<const HandedOverSong> songs, const SongsOrigin& origin);

  /// How many songs were handed over since the list was empty.
  std::size_t Count() const noexcept { return entries_.size(); }
  bool IsEmpty() const noexcept { return entries_.empty(); }
  /// The record number of the song of an entry; 0 for an entry that was not handed over.
  std::int32_t SongOf(std::uint64_t entry) const;
  /// Where the song of an entry was handed over from; none for an entry that was not handed over.
  SongsOrigin OriginOf(std::uint64_t entry) const;
  /// Changes with each change of the songs.
  std::uint64_t Revision() const noexcept { return revision_; }
  /// Changes when the songs are those of another list, whose entries may have the numbers of the
  /// list before.
  std::uint64_t Generation() const noexcept { return generation_; }

  /// Replaces record numbers of songs that have other numbers now.
  void Renumber(const NewNumbers& numbers);

 private:
  /// Songs that were handed over from one folder in a row.
  struct Part {
    std::size_t begin;  ///< index of the first in entries_
    SongsOrigin origin;
  };

  /// The index of an entry; Count() for an entry that was not handed over.
  std::size_t IndexOf(std::uint64_t entry) const;

  std::vector<std::uint64_t> entries_;  ///< ascending
  std::vector<std::int32_t> songs_;     ///< of the entries
  std::vector<Part> parts_;
  std::uint64_t revision_ = 0;
  std::uint64_t generation_ = 0;
};

}  // namespace tallow

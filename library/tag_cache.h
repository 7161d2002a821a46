// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "library/mp3_tag_editor.h"

namespace tallow {

/// Cache of the tags read during a search, so that filing the songs does not open their files
/// again: artist, year and genre, 48 bytes per song.
///
/// The key is a 64-bit hash of the path. Among a million songs, the probability of a collision is
/// below one in ten million.
class TagCache {
 public:
  /// Adds the tag of a song.
  ///
  /// \param tail the last 128 bytes of a file longer than 128 bytes
  void Add(std::string_view folder, std::string_view name, std::string_view tail);

  /// Sorts the entries. Must be called after the last Add and before the first Find.
  void Seal();

  /// The tag of a song, with the other fields empty; no value when the song is not in the cache.
  /// May be called on several threads at once.
  std::optional<TagBlock> Find(std::string_view folder, std::string_view name) const;

  /// Removes all entries and frees their memory.
  void Clear();

 private:
  struct Entry {
    std::uint64_t path_hash;
    std::array<char, 30> artist;
    std::array<char, 4> year;
    char genra;
    bool tagged;
  };

  std::vector<Entry> entries_;  ///< sorted by hash after Seal
};

}  // namespace tallow

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

/// What a search has already read of the tags of the songs it found, so that filing them need not
/// open their files again: artist, year and genre, 48 bytes a song.
///
/// A song is known by a 64-bit hash of its path; among a million songs two share one with a
/// probability below one in ten million.
class TagCache {
 public:
  /// Keeps the tag of a song.
  ///
  /// \param tail the last 128 bytes of a file of more than 128 bytes
  void Add(std::string_view folder, std::string_view name, std::string_view tail);

  /// To be called between the last Add and the first Find.
  void Seal();

  /// The tag of a song, its other texts being empty; no value when it is not known. May be called
  /// from several threads at once.
  std::optional<TagBlock> Find(std::string_view folder, std::string_view name) const;

  /// Forgets everything and gives the memory back.
  void Clear();

 private:
  struct Entry {
    std::uint64_t path_hash;
    std::array<char, 30> artist;
    std::array<char, 4> year;
    char genra;
    bool tagged;
  };

  std::vector<Entry> entries_;  ///< by hash once sealed
};

}  // namespace tallow

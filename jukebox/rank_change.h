// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jukebox/folder_tree.h"

namespace tallow {

class clsMain;

/// Songs of the library that get other ranks. Holds those of the other state, 8 bytes for a song.
///
/// The ranks belong to the library, not to a jukebox, so another window may have changed them in
/// the meantime. Toggling exchanges what it finds, and loses no rank.
class RankChange {
 public:
  /// \param library must outlive this object
  explicit RankChange(clsMain& library) : library_(&library) {}

  /// Adds a song of the library.
  /// \param rank the other rank, see kSongRank
  void Add(std::int32_t record, std::string_view rank);
  bool IsEmpty() const noexcept { return songs_.empty(); }
  /// The record numbers of the songs.
  std::vector<std::int32_t> Songs() const;

  /// Exchanges the ranks of the library with those of the other state. The library is not saved.
  /// Songs that the library no longer has are skipped.
  void Toggle();

  /// Replaces old record numbers by new ones.
  void Renumber(const NewNumbers& numbers);

  /// Approximate memory used besides the object itself, in bytes.
  std::size_t Bytes() const noexcept;

 private:
  struct Song {
    std::int32_t record;
    std::int32_t rank;  ///< index in ranks_
  };

  std::int32_t IndexOf(std::string_view rank);

  clsMain* library_;
  std::vector<Song> songs_;
  std::vector<std::string> ranks_;  ///< each once; of a library without damage at most six
  std::unordered_map<std::string, std::int32_t> indexes_;  ///< of ranks_
};

}  // namespace tallow

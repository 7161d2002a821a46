// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>
#include <vector>

#include "app/find/find_index.h"
#include "app/library_details.h"

namespace tallow {

class clsMain;

/// Finds songs of the whole library by typed words, fast enough for every key that is typed.
///
/// A song is found when every word, separated by blanks, is somewhere in its title, artist, album,
/// genre or file name. Texts are compared in their folded form (see AppendFolded): without case and
/// accents. Songs of which every word is at the beginning of a word come first, then those of the
/// better rank, then by file name in natural order, then by record number.
///
/// All songs are compared at each Find, on all processor cores, see FindIndex. Nothing is read
/// before the first Find; that reads the details of all songs.
class SongFinder {
 public:
  /// Both have to outlive this object.
  SongFinder(const clsMain& library, LibraryDetails& details)
      : library_(library), details_(details) {}

  /// Finds songs that are present or away.
  ///
  /// \param typed as the user types it; without a word, nothing is found
  /// \param max_wait for the details of all songs, see LibraryDetails::LoadAll; without some of
  ///        them, songs are found by what is known
  /// \returns record numbers in the order of the hits
  std::vector<std::int32_t> Find(std::string_view typed,
                                 std::chrono::milliseconds max_wait = LibraryDetails::kMaxLoading);

  /// What the last Find has searched.
  const FindIndex& Index() const noexcept { return index_; }

 private:
  const clsMain& library_;
  LibraryDetails& details_;
  FindIndex index_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

class Folder;
class FolderTree;
class clsMain;

/// Searches for songs by a part of their file names, folder by folder in tree order, one match per
/// step. After the last folder the search wraps around to the first, and it ends after searching
/// the starting folder again. Folders and songs that the switches set aside are passed over.
class SongSearch {
 public:
  /// True once the search has left its starting folder. The next visit of that folder ends the
  /// search.
  bool LookingForTheLastNode() const noexcept { return looking_for_the_last_node_; }
  /// Whether the next step starts a new search at the selected folder.
  bool FirstRun() const noexcept { return first_run_; }
  void FirstRun(bool first_run) noexcept { first_run_ = first_run; }
  /// The search text of the last step, in lower case.
  const std::string& LastLookedFor() const noexcept { return last_looked_for_; }
  /// Stores a search text, in lower case. FindNext does this itself.
  void LookFor(std::string_view text);

  /// Call this when the song found last has moved within its folder.
  /// \param row the new position, from 0; -1 when the song was removed
  void FoundAt(std::int32_t row) noexcept { last_ = row; }

  /// Result of a step.
  struct Result {
    Folder* folder = nullptr;  ///< the folder of the song; null when no song was found
    std::int32_t row = -1;     ///< position of the song in the folder's list, from 0
  };

  /// Finds the next song whose file name contains a text, ignoring case. The empty text matches
  /// every name.
  ///
  /// Cost: compares names in search order up to the first match, and each name at most once per
  /// step, however many folders hold the song.
  ///
  /// \param selected the folder where a new search starts
  /// \returns a null folder when the search is complete; the next step then starts a new search
  Result FindNext(std::string_view text, const FolderTree& tree, const Folder& selected,
                  const clsMain& library);

 private:
  /// Cached comparison of a song's name with the search text, for one step.
  enum class Match : char { kUnknown, kNo, kYes };
  bool IsHit(std::int32_t record, const clsMain& library);
  Result EndSearch();

  bool looking_for_the_last_node_ = false;
  bool first_run_ = true;
  std::string last_looked_for_;
  std::size_t start_ = 0;  ///< index, from 0 in tree order, of the folder where the search started
  std::size_t current_ = 0;     ///< index of the folder being searched
  std::int32_t last_ = -1;      ///< position of the song found last; -1 for none
  std::vector<Match> matches_;  ///< indexed by record number
};

}  // namespace tallow

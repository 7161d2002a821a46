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

/// Looks for songs by a part of their file names, folder by folder in the order of the tree, one song a
/// step. From the last folder it goes on with the first, and ends where it began.
class SongSearch {
 public:
  /// The walk has left its starting folder; coming back to it ends the search.
  bool LookingForTheLastNode() const noexcept { return looking_for_the_last_node_; }
  /// The next step begins a new search at the selected folder.
  bool FirstRun() const noexcept { return first_run_; }
  void FirstRun(bool first_run) noexcept { first_run_ = first_run; }
  /// What the last step looked for, in lower case.
  const std::string& LastLookedFor() const noexcept { return last_looked_for_; }
  /// Remembers a search text, in lower case. A step does so itself.
  void LookFor(std::string_view text);

  /// The song found last lies elsewhere in its folder now.
  /// \param row its place, from 0; -1 when it is gone
  void FoundAt(std::int32_t row) noexcept { last_ = row; }

  /// How a step ended.
  struct Result {
    Folder* folder = nullptr;  ///< the folder of the song; null when none was found
    std::int32_t row = -1;     ///< the song's place in the folder's list, from 0
  };

  /// Goes on to the next song whose file name holds a text, whatever the letter case of both. The empty
  /// text is in every name.
  ///
  /// Cost: names are looked at in the order of the walk and only as far as it goes, each name once a step
  /// however many folders hold the song.
  ///
  /// \param selected the folder that a new search begins at
  /// \returns no folder when the walk has come round; the next step begins a new search then
  Result FindNext(std::string_view text, const FolderTree& tree, const Folder& selected,
                  const clsMain& library);

 private:
  /// What is known of a song in one step.
  enum class Match : char { kUnknown, kNo, kYes };
  bool IsHit(std::int32_t record, const clsMain& library);
  Result EndOfWalk();

  bool looking_for_the_last_node_ = false;
  bool first_run_ = true;
  std::string last_looked_for_;
  std::size_t start_ = 0;  ///< the folder that the search began at, in the order of the tree from 0
  std::size_t current_ = 0;   ///< the folder that is being searched
  std::int32_t last_ = -1;    ///< the song found last in it; -1 for none
  std::vector<Match> known_;  ///< by record number
};

}  // namespace tallow

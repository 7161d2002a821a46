// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "jukebox/folder_tree.h"

namespace tallow {

/// What was cut or copied last in any jukebox window: songs, or a folder. It holds copies, so it stays
/// whatever becomes of the originals. What is dragged from one window to another gets its number here.
class JukeboxClipboard {
 public:
  void PutSongs(std::vector<SongEntry> songs) {
    Clear();
    songs_ = std::move(songs);
  }

  void PutFolder(const Folder& folder) {
    Clear();
    folders_.Put(folders_.Copy(folder), nullptr, 0);
  }

  /// The songs, in their order; none when there is a folder, or nothing.
  const std::vector<SongEntry>& Songs() const noexcept { return songs_; }

  /// The folder with all below it; null when there is none.
  const Folder* CopiedFolder() const {
    return folders_.Children() > 0 ? &folders_.ChildAt(0) : nullptr;
  }

  /// Lets the songs be meant by the numbers that they have now.
  void Renumber(const NewNumbers& numbers) {
    tallow::Renumber(songs_, numbers);
    for (std::int32_t k = 0; k < folders_.Children(); ++k)
      tallow::Renumber(folders_.ChildAt(k), numbers);
  }

  /// A number for a move between two jukeboxes, see EditHistory::PairLastStep.
  std::uint64_t NextMove() noexcept { return ++last_move_; }

 private:
  void Clear() {
    songs_.clear();
    FolderTree none;
    folders_.Swap(none);
  }

  std::vector<SongEntry> songs_;
  FolderTree folders_;
  std::uint64_t last_move_ = 0;
};

}  // namespace tallow

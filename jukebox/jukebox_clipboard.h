// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "jukebox/folder_tree.h"

namespace tallow {

/// The songs or the folder that were last cut or copied in any jukebox window. The clipboard owns
/// copies, so changes to the originals do not affect it. It also numbers the moves between windows.
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

  /// The songs, in order; empty when the clipboard holds a folder or nothing.
  const std::vector<SongEntry>& Songs() const noexcept { return songs_; }

  /// The folder with everything below it; null when the clipboard holds none.
  const Folder* CopiedFolder() const {
    return folders_.Children() > 0 ? &folders_.ChildAt(0) : nullptr;
  }

  /// Replaces old record numbers of the songs by the new ones.
  void Renumber(const NewNumbers& numbers) {
    tallow::Renumber(songs_, numbers);
    for (std::int32_t k = 0; k < folders_.Children(); ++k)
      tallow::Renumber(folders_.ChildAt(k), numbers);
  }

  /// Returns a new number for a move between two jukeboxes, see EditHistory::LinkLastStep.
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

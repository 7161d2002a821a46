// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

#include "jukebox/edit_history.h"
#include "jukebox/folder_tree.h"

namespace tallow {

/// The songs that a search has found, as a folder, so that a list can show them as it shows the
/// songs of a folder. The folder lies in no tree of a jukebox: it is never saved, and nothing that
/// happens to it is a step of the jukebox's history.
class FoundSongs {
 public:
  FoundSongs();

  /// The folder of the hits; null while they are not shown.
  Folder* Shown() const noexcept { return is_shown_ ? &folder_ : nullptr; }

  /// Shows hits instead of those before.
  /// \param songs record numbers, in order
  void Show(const std::vector<std::int32_t>& songs);
  void Hide();

  /// The history that takes the steps of sorting the hits, which nobody undoes.
  EditHistory& History() noexcept { return history_; }

  /// Replaces old record numbers by new ones.
  void Renumber(const NewNumbers& numbers) { tallow::Renumber(folder_, numbers); }

 private:
  FolderTree tree_;
  Folder& folder_;
  EditHistory history_{tree_};
  bool is_shown_ = false;
};

/// Whether a folder is that of the hits of a search, of any jukebox.
bool IsOfHits(const Folder& folder) noexcept;

}  // namespace tallow

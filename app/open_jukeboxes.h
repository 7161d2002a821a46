// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "library/state_file.h"

namespace tallow {

class Folder;
class FolderTree;
class Jukebox;

// The file "OpenJukeboxes.json" holds the jukeboxes that were open, in the order in which they were
// opened. It is JSON in UTF-8, one jukebox per line:
//
//   {"format":"Tallow open jukeboxes","version":1,"jukeboxes":[
//   {"file":"/m/a.juk","active":true,"state":"normal","place":[0,0,760,480],
//    "shown":["Artist","ABBA"],"expanded":[["Artist"]]}]}
//
// "state" is "normal", "maximized" or "minimized"; "place" holds left, top, width and height of the
// normal window in the area of the frame window, in logical pixels. "shown" is the folder on show,
// and "expanded" are the expanded folders, each as the names from the top level down. Texts are
// encoded by AppendJsonText.

/// Where the window of a jukebox is in the area of the frame window.
struct WindowPlace {
  enum class State { kNormal, kMaximized, kMinimized };
  State state = State::kMaximized;
  // The normal window, in logical pixels; without a size the place is unknown.
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const WindowPlace&) const = default;
};

/// The names of a folder and of those above it, from the top level down; empty for no folder.
using FolderNames = std::vector<std::string>;

/// A jukebox that was open, and what its window showed.
struct OpenJukebox {
  std::string file;
  bool is_active = false;
  WindowPlace place = {};
  FolderNames shown = {};
  std::vector<FolderNames> expanded = {};
  bool operator==(const OpenJukebox&) const = default;
};

/// What the window of a jukebox shows, except for its place. At most kMaxExpanded folders.
OpenJukebox DescribeOpen(const Jukebox& jukebox);

/// Expands the folders of a jukebox that were expanded, and collapses the others. Folders that it
/// does not have are skipped; of several with the same names the first is meant.
void ExpandAsBefore(const OpenJukebox& before, Jukebox& jukebox);

/// The folder with these names; null for none.
Folder* FindFolder(const FolderTree& tree, const FolderNames& names);

/// The jukeboxes that are, or were, open: the start reads them, and the frame window stores them.
class OpenJukeboxes {
 public:
  /// Maximum number of jukeboxes in a file, and of expanded folders of each.
  static constexpr std::size_t kMaxJukeboxes = 1000;
  static constexpr std::size_t kMaxExpanded = 10'000;

  /// \param folder of the file; ends in a separator
  explicit OpenJukeboxes(const std::string& folder) : path_(folder + "OpenJukeboxes.json") {}

  /// The jukeboxes of the file, in their order. A damaged file is renamed to end in ".bak"; one
  /// that cannot be read is never replaced.
  ///
  /// \param problems receives a sentence if the file is damaged or cannot be read
  std::vector<OpenJukebox> Load(std::vector<std::string>& problems);

  /// Remembers a jukebox whose drive is away: Store keeps it until it is open.
  void KeepAway(OpenJukebox jukebox) { away_.push_back(std::move(jukebox)); }

  /// From now on Store writes. Before the start has opened the jukeboxes, fewer are open than are
  /// to be opened at the next start.
  void BeginStoring() noexcept { is_storing_ = true; }

  /// Replaces the file, unless it has the same content or cannot be read. Does nothing before
  /// BeginStoring.
  ///
  /// \throws FileError
  void Store(const std::vector<OpenJukebox>& open);

 private:
  void LoadOnce(std::vector<std::string>& problems);

  const std::string path_;
  StateFile file_;
  bool is_loaded_ = false;
  bool is_storing_ = false;
  std::vector<OpenJukebox> loaded_;
  std::vector<OpenJukebox> away_;
  std::string stored_;  ///< the content of the file, if it is known
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jukebox/song_links.h"

namespace tallow {

class Jukebox;
class clsMain;

// Crash recovery: the content of an open jukebox that differs from its file is kept in a file
// "Jukebox-N.unsaved" among the program's own files, in case the program does not exit normally.
// The first line of the file is JSON, the rest is a jukebox file:
//
// {"format":"Tallow unsaved jukebox","version":1,"caption":"A","location":"/m/","file":"/m/A.juk"}
// {"format":"Tallow jukebox","version":1, ...
//
// "location" and "file" are empty for a jukebox that was never saved.

/// A jukebox with unsaved changes from an earlier run.
struct UnsavedJukebox {
  std::string path;  ///< path of the .unsaved file
  std::string caption;
  std::string location;  ///< directory of its jukebox file, ending in a separator; empty for none
  std::string file;      ///< path of its jukebox file; empty for none
  std::string bytes;     ///< content, in the format of a jukebox file
};

/// The message for unsaved changes that cannot be read.
/// \param path   path of the .unsaved file
/// \param reason short description of the error
std::string UnreadableChanges(const std::string& path, std::string_view reason);

/// Keeps unsaved changes of the open jukeboxes in .unsaved files.
class UnsavedJukeboxes {
 public:
  /// \param folder directory of the .unsaved files; ends in a separator
  explicit UnsavedJukeboxes(std::string folder) : folder_(std::move(folder)) {}

  /// Updates the .unsaved file of a jukebox. The file exists, with the complete content, as long as
  /// the jukebox differs from its jukebox file.
  ///
  /// Cost: O(entries) to compare; writes only when the content has changed since the last call.
  /// \throws FileError when the file cannot be written
  void Keep(const Jukebox& jukebox, const clsMain& library);

  /// Deletes the .unsaved file of a jukebox. Call this when the user closes the jukebox.
  void Forget(const Jukebox& jukebox) noexcept;

  /// Stops tracking a jukebox that no longer exists. Its .unsaved file stays.
  void Release(const Jukebox& jukebox) noexcept { kept_.erase(&jukebox); }

  /// Returns the unsaved jukeboxes of earlier runs, sorted by file name. Invalid files are renamed
  /// to end in ".bak".
  ///
  /// \param problems receives one sentence for each file or folder that cannot be used
  std::vector<UnsavedJukebox> Find(std::vector<std::string>& problems) const;

  /// Whether the jukebox file now has the same content as the unsaved jukebox.
  static bool IsSaved(const UnsavedJukebox& unsaved, const clsMain& library);

  /// Call this when the user does not want an unsaved jukebox. Its .unsaved file is renamed to end
  /// in ".bak".
  static void Decline(const UnsavedJukebox& unsaved) noexcept;

  /// Loads an unsaved jukebox into a new jukebox. From then on Keep and Forget of that jukebox
  /// use the same .unsaved file.
  ///
  /// \param ask see RelinkSongs; may be empty
  /// \returns false when the content is not a valid jukebox; Jukebox::FileProblem has the reason
  bool Recover(const UnsavedJukebox& unsaved, Jukebox& jukebox, const clsMain& library,
               const ResolveConfusedSongs& ask = {});

 private:
  struct Kept {
    std::string path;
    std::uint64_t content = 0;  ///< hash of the content in the file, see ContentHash
  };
  std::string FreePath() const;

  std::string folder_;
  std::unordered_map<const Jukebox*, Kept> kept_;
};

}  // namespace tallow

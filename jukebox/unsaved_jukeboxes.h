// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jukebox/jukebox_file.h"

namespace tallow {

class Jukebox;
class clsMain;

// What an open jukebox holds that its file does not is kept in a file "Jukebox-N.unsaved" among the
// program's own files, in case the program does not come to its end. Its first line is JSON, what follows
// is a jukebox file:
//
//   {"format":"Tallow unsaved jukebox","version":1,"caption":"MIX","location":"/m/","file":"/m/Mix.juk"}
//   {"format":"Tallow jukebox","version":1, ...
//
// "location" and "file" are empty for a jukebox that was never saved.

/// A jukebox that was not saved when the program ended.
struct UnsavedJukebox {
  std::string path;  ///< of the file that it was found in
  std::string caption;
  std::string location;  ///< the folder of its own file, ending in a separator; empty for none
  std::string file;      ///< its own file; empty for none
  std::string bytes;     ///< what it holds, as a jukebox file
};

/// What is said of unsaved changes that cannot be read.
/// \param path   of their file
/// \param reason in a few words
std::string UnreadableChanges(const std::string& path, std::string_view reason);

/// Keeps what is not saved of the open jukeboxes.
class UnsavedJukeboxes {
 public:
  /// \param folder where the files are kept; ends in a separator
  explicit UnsavedJukeboxes(std::string folder) : folder_(std::move(folder)) {}

  /// Brings the file of a jukebox into step with it: there is one, complete, as long as the jukebox
  /// differs from its own file.
  ///
  /// Cost: O(entries) to look; only what has changed since the last call is written.
  /// \throws FileError when it cannot be written
  void Keep(const Jukebox& jukebox, const clsMain& library);

  /// The jukebox is closed, as its user wanted: its file goes.
  void Forget(const Jukebox& jukebox) noexcept;

  /// The jukebox is no longer there; its file stays.
  void Release(const Jukebox& jukebox) noexcept { kept_.erase(&jukebox); }

  /// What an earlier run of the program has left, in the order of the names. Files that cannot be used are
  /// kept aside with ".bak" behind their names.
  ///
  /// \param problems is told each of these, a sentence each
  std::vector<UnsavedJukebox> Find(std::vector<std::string>& problems) const;

  /// Whether an unsaved jukebox holds what its own file holds by now.
  static bool IsSaved(const UnsavedJukebox& unsaved, const clsMain& library);

  /// The user does not want an unsaved jukebox: its file is kept aside with ".bak" behind its name.
  static void Decline(const UnsavedJukebox& unsaved) noexcept;

  /// Fills a new jukebox with an unsaved one, whose file is the new one's from then on.
  ///
  /// \returns false when it holds no jukebox after all; Jukebox::FileProblem tells why
  /// \param ask see RelinkSongs; may be empty
  bool Recover(const UnsavedJukebox& unsaved, Jukebox& jukebox, const clsMain& library,
               const AskWhichSongs& ask = {});

 private:
  struct Kept {
    std::string path;
    std::uint64_t content = 0;  ///< what the file holds
  };
  std::string FreePath() const;

  std::string folder_;
  std::unordered_map<const Jukebox*, Kept> kept_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tallow {

/// Where songs are looked for.
enum class ScanKind {
  kFolderList,  ///< in the folders that songs were found in before
  kComputer,    ///< on all drives
  kFiles,       ///< in files that the user has given
};

/// Why songs are away.
enum class AwayKind {
  kDrive,   ///< their drive is away
  kFolder,  ///< their folder cannot be read
  kKept,    ///< they are gone, but the file that would remember them cannot be read
};

/// A place that songs are away with: the root of a drive, or a folder.
struct AwayPlace {
  std::string place;  ///< ends in a separator
  AwayKind kind = AwayKind::kDrive;
  std::string problem;  ///< what the system says of a folder; of kKept the file's path
  std::int32_t songs = 0;
};

/// A song that was missing and came back under another number.
struct ReturnedSong {
  std::int32_t number = 0;  ///< that it had
  std::int32_t now = 0;     ///< that it has
};

/// What a start, a search or a drop of files came to, in numbers of songs.
struct ScanReport {
  ScanKind kind = ScanKind::kFolderList;
  std::int32_t new_songs = 0;
  std::int32_t back = 0;       ///< came back, and have their ranks again
  std::int32_t missing = 0;    ///< were there before, and are not
  std::int32_t left_out = 0;   ///< files, because a song of their name is there
  bool left_out_grew = false;  ///< more than the last time
  std::vector<AwayPlace> away;
  std::int32_t unread_folders = 0;  ///< folders that could not be read
};

/// The report as a line: the counts that apply, "12 new songs, 2 missing". Empty when none does.
///
/// \param always_new says "0 new songs" too
std::string TextOf(const ScanReport& report, bool always_new);

/// What is said while a drive is waited for: "Waiting for ROOT, which does not answer".
std::string WaitingLine(std::string_view root);

}  // namespace tallow

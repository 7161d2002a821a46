// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tallow {

/// What a scan searches.
enum class ScanKind {
  kFolderList,  ///< the folders in which songs were found before
  kComputer,    ///< all drives
  kFiles,       ///< files that the user dropped
};

/// Why songs are away.
enum class AwayKind {
  kDrive,   ///< their drive is not mounted or does not answer
  kFolder,  ///< their folder cannot be read
  kKept,    ///< they are gone, but the file that stores missing songs cannot be read
};

/// A drive or folder with songs that are away.
struct AwayPlace {
  std::string place;  ///< root of the drive, or the folder; ends in a separator
  AwayKind kind = AwayKind::kDrive;
  std::string problem;  ///< system's error for the folder; for kKept the file's path
  std::int32_t songs = 0;
};

/// A missing song that came back with a new record number.
struct ReturnedSong {
  std::int32_t number = 0;  ///< old record number
  std::int32_t now = 0;     ///< new record number
};

/// The result of a start, a search or a drop of files; counts are in songs unless noted.
struct ScanReport {
  ScanKind kind = ScanKind::kFolderList;
  std::int32_t new_songs = 0;
  std::int32_t back = 0;       ///< came back and got their ranks again
  std::int32_t missing = 0;    ///< newly missing
  std::int32_t left_out = 0;   ///< files left out because a song has their name
  bool left_out_grew = false;  ///< more than at the last scan
  std::vector<AwayPlace> away;
  std::int32_t unread_folders = 0;  ///< folders that could not be read
};

/// Formats the report as one line with the counts above 0, e.g. "12 new songs, 2 missing". Empty
/// when there are none.
///
/// \param always_new includes "0 new songs"
std::string TextOf(const ScanReport& report, bool always_new);

/// The message while waiting for a drive: "Waiting for ROOT, which does not answer".
std::string WaitingLine(std::string_view root);

}  // namespace tallow

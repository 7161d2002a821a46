// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/known_drives.h"
#include "library/missing_songs.h"
#include "library/record_repair.h"
#include "library/song_table.h"
#include "library/state_file.h"
#include "library/unread_folders.h"

namespace tallow {

/// What the library remembers beside the songs, and the state file of each: the drives, the missing
/// songs, the repaired numbers and the folders that could not be read.
///
/// Missing songs and repaired numbers are written before the library file, so that a kill between
/// the two loses nothing; entries that do not match the library file are dropped when the files are
/// loaded. The drives are written at the end of a scan.
class LibraryState {
 public:
  KnownDrives& Drives() noexcept { return drives_; }
  const KnownDrives& Drives() const noexcept { return drives_; }
  MissingSongs& Missing() noexcept { return missing_; }
  const MissingSongs& Missing() const noexcept { return missing_; }
  RepairedNumbers& Repaired() noexcept { return repaired_; }
  const RepairedNumbers& Repaired() const noexcept { return repaired_; }
  UnreadFolders& Unread() noexcept { return unread_; }
  const UnreadFolders& Unread() const noexcept { return unread_; }

  /// Forgets the drives; the next LoadDrives reads their file again.
  ///
  /// \param given roots that were given as drives, each ending in a separator
  void ResetDrives(std::vector<std::string> given);

  /// Reads the drives, unless they are loaded.
  ///
  /// \param folder   of the state files, ending in a separator
  /// \param problems receives error messages, one sentence each
  void LoadDrives(const std::string& folder, std::vector<std::string>& problems);

  /// Reads all state files, unless they are loaded; parameters as of LoadDrives.
  ///
  /// \param table the loaded library; entries that do not match it are dropped
  void Load(const std::string& folder, const SongTable& table, std::vector<std::string>& problems);

  /// Whether missing songs can be saved. If their file could not be read, tries to read it again.
  bool CanSaveMissing(const SongTable& table);

  /// The path of the file of missing songs.
  const std::string& MissingPath() const noexcept { return missing_file_.path(); }

  /// Saves what has to be on disk before the library file is written. A failure to save the unread
  /// folders is only reported in `problems`.
  ///
  /// \param rows of the library; at most as many missing songs are kept
  /// \throws FileError when missing songs or repaired numbers cannot be written
  void SaveBeforeLibrary(std::int32_t rows, std::vector<std::string>& problems);

  /// Saves drives, repaired numbers and unread folders, and the missing songs if there may be
  /// namesakes, as far as they have changed.
  void Save(std::vector<std::string>& problems);

 private:
  void DropObsolete(const SongTable& table);

  KnownDrives drives_;
  MissingSongs missing_;
  RepairedNumbers repaired_;
  UnreadFolders unread_;
  StateFile drives_file_;
  StateFile missing_file_;
  StateFile repaired_file_;
  StateFile unread_file_;
  std::string unread_error_;  ///< why unread_ could not be saved before the library
  bool drives_are_loaded_ = false;
  bool is_loaded_ = false;  ///< all but the drives
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/library_companion.h"
#include "library/library_settings.h"
#include "library/song_table.h"

namespace tallow {

/// The companion of the library file on disk (see library_companion.h): its header, and reading and
/// writing it with the facts of the song table.
///
/// A companion that cannot be read is read again before it is written, so that the facts in it are
/// not lost.
class CompanionFile {
 public:
  /// \param settings must outlive this object
  explicit CompanionFile(const LibrarySettings& settings) : settings_(settings) {}

  std::string Path() const;

  /// The header of the next companion. `library` is the checksum of the library file on disk; 0
  /// when there is none that equals the table.
  CompanionHeader& Header() noexcept { return header_; }
  const CompanionHeader& Header() const noexcept { return header_; }

  /// Whether the file could not be read.
  bool IsUnread() const noexcept { return is_unread_; }

  /// Reads header and facts. Facts stay unknown when the companion belongs to another library.
  ///
  /// \param checksum of the library file that the table was read from
  /// \param problems receives error messages, one sentence each
  void Load(std::uint64_t checksum, SongTable& table, std::vector<std::string>& problems);

  /// If the file could not be read, tries to read it again.
  ///
  /// \returns whether it is read now
  bool ReadAgain(SongTable& table);

  /// Writes a companion.
  ///
  /// \throws FileError, also when the file on disk cannot be read and may still be of use
  void Write(const CompanionHeader& header, SongTable& table);

  /// Writes the companion of the library file on disk again, with the current facts. Failures are
  /// not reported.
  void Save(SongTable& table);

  /// Makes this the companion of a library file that something else has changed. The old companion
  /// is kept under its name followed by ".damaged". Failures are not reported.
  void Trust(SongTable& table);

 private:
  void CompleteFromBackup(SongTable& table) const;
  /// Whether the file is a symbolic link, or is reached through one.
  bool IsLink() const;

  const LibrarySettings& settings_;
  CompanionHeader header_;
  bool is_unread_ = false;
};

}  // namespace tallow

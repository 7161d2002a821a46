// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "library/companion_file.h"
#include "library/library_settings.h"
#include "library/song_table.h"
#include "util/file_system.h"

namespace tallow {

/// Loads and saves the song table as the library file, with its companion and its backup, so that a
/// kill at any moment leaves a library that can be loaded.
///
/// The file is replaced atomically, and its old version is kept as "FileLocNames.lmz.bak". A file
/// that contains data which the table lacks (it could not be read completely, or was repaired) is
/// replaced only after it has such a backup.
class LibraryStorage {
 public:
  /// \param settings must outlive this object
  explicit LibraryStorage(const LibrarySettings& settings)
      : settings_(settings), companion_(settings) {}

  /// The path of the library file.
  std::string Path() const;

  CompanionFile& Companion() noexcept { return companion_; }

  /// Size of the library file at the last Load, in bytes.
  std::size_t LoadedBytes() const noexcept { return loaded_bytes_; }

  /// Whether the table equals the library file on disk.
  bool IsOnDisk(const SongTable& table) const;

  /// Marks the library file as one that contains data which the table lacks: the next Write
  /// replaces it in any case, and not without a backup.
  void RequireBackup();

  /// Reads the library file and its companion; see clsMain::LoadMain.
  ///
  /// \param rows     number of rows from the settings
  /// \param problems receives error messages, one sentence each
  /// \returns false when there are fewer rows than records, or the file is damaged; the table then
  ///          has the rows read before that
  /// \throws FileError when the file cannot be read or created
  bool Load(std::int32_t rows, SongTable& table, std::vector<std::string>& problems);

  /// Fills the table with the songs that can be recovered from a damaged file, see
  /// clsMain::Salvage.
  ///
  /// \throws FileError when the file cannot be read; nothing has changed then
  std::int32_t Salvage(bool is_set_aside, SongTable& table);

  /// Writes companion and library.
  ///
  /// \throws FileError; the old library is then unchanged
  void Write(SongTable& table);

  /// What the last Write has left on disk.
  struct Written {
    std::optional<FileStamp> stamp;
    CompanionHeader companion;
  };
  Written LastWritten() const { return {saved_stamp_, companion_.Header()}; }
  /// Discards the result of a Load that failed: the table is again the one that was written.
  void Restore(const Written& written);

 private:
  /// Backs up the library file before it is replaced.
  /// \returns false when there is no library file
  bool KeepAsBackup(const std::string& path);
  void RememberOnDisk(std::uint64_t checksum, const SongTable& table);

  const LibrarySettings& settings_;
  CompanionFile companion_;
  bool backup_first_ = false;        ///< the file on disk contains data that the table lacks
  bool backup_is_good_ = false;      ///< the backup is a library saved by this object
  bool is_library_renamed_ = false;  ///< the file on disk was already kept under another name
  /// Stamp of the library file when the table was last equal to it.
  std::optional<FileStamp> saved_stamp_;
  std::string saved_path_;
  std::uint64_t saved_version_ = 0;  ///< version of the table at that time
  std::size_t loaded_bytes_ = 0;
};

}  // namespace tallow

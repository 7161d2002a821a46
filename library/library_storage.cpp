// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_storage.h"

#include <algorithm>
#include <string_view>

#include "library/library_check.h"
#include "library/library_file.h"
#include "util/atomic_file.h"
#include "util/errors.h"

namespace tallow {
namespace {

/// Renames the library's backup, unless the backup is this library or its previous version. Any
/// other backup may be the only good copy, or a damaged file that must be kept.
void SetBackupAside(const std::string& path, const CompanionHeader& companion) {
  const std::string backup = path + std::string(kBackupSuffix);
  if (IsGone(backup)) return;
  const LibraryInspection file = InspectLibrary(backup);
  if (file.checksum != 0 &&
      (file.checksum == companion.library || file.checksum == companion.before))
    return;
  KeepReplacedAs(backup, FreeSetAsidePath(path));
}

/// Sets the cells of a row from a record; columns 6 to 12 stay empty.
/// \returns whether the record has no text in these columns
bool SetRow(SongTable& table, std::int32_t row, const LibraryRecord& record) {
  table.SetCell(kFileName, row, record[kNameField]);
  table.SetCell(kFileLocation, row, record[kLocationField]);
  table.SetCell(kRecordNumber, row, record[kNumberField]);
  table.SetCell(kFileIsThere, row, record[kThereField]);
  table.SetCell(kSongRank, row, record[kRankField]);
  return std::all_of(record.begin() + kFirstSpare - 1, record.end(),
                     [](std::string_view text) { return text.empty(); });
}

/// What ReadRows has read.
struct RowsRead {
  std::int32_t rows = 0;
  bool is_sound = true;    ///< every record is complete and has a row
  bool same_bytes = true;  ///< saving the table would write the same bytes, if all rows are used
};

/// Fills the rows of a table from the content of a library file. A record without a name is
/// skipped.
RowsRead ReadRows(const std::string& content, SongTable& table) {
  RowsRead read;
  LibraryReader reader(content);
  LibraryRecord record;
  LibraryReader::Result result;
  while ((result = reader.Next(record)) == LibraryReader::Result::kRecord) {
    if (record[kNameField].empty()) {
      read.same_bytes = false;
      continue;
    }
    read.is_sound = read.rows < table.rows();
    if (!read.is_sound) return read;
    const bool is_same = SetRow(table, ++read.rows, record);
    read.same_bytes = read.same_bytes && is_same;
  }
  read.is_sound = result != LibraryReader::Result::kDamaged;
  return read;
}

}  // namespace

std::string LibraryStorage::Path() const {
  return settings_.LocOfGroupingDir() + std::string(kLibraryFileName);
}

bool LibraryStorage::IsOnDisk(const SongTable& table) const {
  return saved_stamp_ && saved_version_ == table.version() && saved_path_ == Path() &&
         StampOf(saved_path_) == saved_stamp_;
}

void LibraryStorage::RememberOnDisk(std::uint64_t checksum, const SongTable& table) {
  saved_path_ = Path();
  saved_stamp_ = StampOf(saved_path_);
  saved_version_ = table.version();
  companion_.Header().library = checksum;
}

void LibraryStorage::RequireBackup() {
  backup_first_ = true;
  saved_stamp_.reset();
}

void LibraryStorage::Restore(const Written& written) {
  saved_stamp_ = written.stamp;
  companion_.Header() = written.companion;
  backup_first_ = false;
}

bool LibraryStorage::Load(std::int32_t rows, SongTable& table, std::vector<std::string>& problems) {
  RequireBackup();
  is_library_renamed_ = false;
  if (rows < 1) return false;
  table = SongTable();
  table.Resize(rows);
  const std::string path = Path();
  auto content = ReadWholeFile(path, kMaxLibraryBytes);
  if (!content) {
    WriteFileAtomically(path, {});
    content.emplace();
  }
  loaded_bytes_ = content->size();
  const std::uint64_t checksum = ChecksumOf(*content);
  const RowsRead read = ReadRows(*content, table);
  if (!read.is_sound) return false;
  if (read.rows == rows) {
    backup_first_ = false;
    if (read.same_bytes) RememberOnDisk(checksum, table);
  }
  companion_.Load(checksum, table, problems);
  return true;
}

std::int32_t LibraryStorage::Salvage(bool is_set_aside, SongTable& table) {
  std::optional<std::string> content;
  try {
    content = ReadWholeFile(Path(), kMaxLibraryBytes);
  } catch (const FileTooLargeError&) {
    // A file of that size is not a library, so there are no songs to salvage.
  }
  saved_stamp_.reset();
  backup_first_ = !is_set_aside;
  is_library_renamed_ = is_set_aside;
  table = SongTable();
  return content ? SalvageLibrary(*content, table) : 0;
}

void LibraryStorage::Write(SongTable& table) {
  const std::string path = Path();
  const std::string bytes = EncodeLibrary(table);
  const std::uint64_t checksum = ChecksumOf(bytes);
  CompanionHeader companion = companion_.Header();
  companion.before = companion.library;
  companion.library = checksum;
  companion_.Write(companion, table);
  bool had_backup = false;
  WriteFileAtomically(path, bytes, [&] { had_backup = KeepAsBackup(path); });
  if (const std::string backup = path + std::string(kBackupSuffix); !had_backup && IsGone(backup)) {
    try {
      WriteFileAtomically(backup, bytes);
    } catch (const FileError&) {
      // Not an error: the library is written, and the next save creates a backup of it.
    }
  }
  companion_.Header() = companion;
  backup_first_ = false;
  RememberOnDisk(checksum, table);
}

bool LibraryStorage::KeepAsBackup(const std::string& path) {
  // Keep the last good library until the next start, in case the current one turns out to be
  // damaged.
  if (is_library_renamed_) return true;
  try {
    const auto stamp = StampOf(path);
    if (IsGone(path) || (stamp && stamp->size == 0)) return false;
    if (backup_first_ || !backup_is_good_) SetBackupAside(path, companion_.Header());
    KeepReplaced(path);
    backup_is_good_ = !backup_first_;
    return true;
  } catch (const FileError&) {
    // A file with content that the table lacks must have a backup; for a good library a missing
    // backup is acceptable.
    if (backup_first_) throw;
    return true;
  }
}

}  // namespace tallow

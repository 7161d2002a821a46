// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/cls_main.h"

#include <algorithm>
#include <exception>
#include <utility>
#include <vector>

#include "library/folder_scan.h"
#include "library/library_check.h"
#include "util/atomic_file.h"
#include "util/day.h"
#include "util/errors.h"
#include "util/like.h"
#include "util/path_text.h"
#include "util/text_lines.h"

namespace tallow {
namespace {

std::int16_t ColumnOf(std::int32_t column) {
  if (column < 1 || column > kSongColumns)
    throw SubscriptError("Column " + std::to_string(column) + " is outside the song table (1 to " +
                         std::to_string(kSongColumns) + ").");
  return static_cast<std::int16_t>(column);
}

/// Renames the library's backup, unless it is the previous version of this library: it may be the
/// only good copy, or a damaged file that must be kept.
void SetBackupAside(const std::string& path, const CompanionHeader& companion) {
  const std::string backup = path + std::string(kBackupSuffix);
  if (IsGone(backup)) return;
  const LibraryInspection file = InspectLibrary(backup);
  if (file.checksum != 0 &&
      (file.checksum == companion.library || file.checksum == companion.before))
    return;
  KeepReplacedAs(backup, FreeSetAsidePath(path));
}

}  // namespace

clsMain::clsMain(LibrarySettings& settings, std::function<void()> search_all_drives)
    : settings_(settings), search_all_drives_(std::move(search_all_drives)) {}

std::string clsMain::LibraryPath() const {
  return settings_.LocOfGroupingDir() + std::string(kLibraryFileName);
}

std::int32_t clsMain::AddSong(std::string_view folder, std::string_view name, std::int64_t size) {
  const std::int32_t row = UBoundOfMp3Array() + 1;
  Mp3Info(kFileLocation, row, folder);
  Mp3Info(kFileName, row, name);
  Mp3Info(kFileIsThere, row, kPresent);
  Mp3Info(kRecordNumber, row, std::to_string(row));
  Mp3Info(kSongRank, row, kUnranked);
  table_.Facts(row) = {.size = size, .added = Today(), .away = 0};
  return row;
}

void clsMain::RenumberBasedOnArrayNumber() {
  for (std::int32_t row = 1; row <= table_.rows(); ++row)
    table_.SetCell(kRecordNumber, row, std::to_string(row));
}

bool clsMain::Sort(bool ascending, const bool& as_text, std::int16_t column, bool& result) {
  result = IsDimensioned();
  SortRows(ascending, as_text, column);
  return result;
}

void clsMain::SortByRecord() { SortRows(true, false, kRecordNumber); }

void clsMain::SortByName() { SortRows(true, true, kFileName); }

void clsMain::SortRows(bool ascending, bool as_text, std::int16_t column) {
  if (!IsDimensioned()) return;
  const auto routine = ascending ? (as_text ? &SortCity::QuickSortStringsAscending
                                            : &SortCity::QuickSortNumericAscending)
                                 : (as_text ? &SortCity::QuickSortStringsDescending
                                            : &SortCity::QuickSortNumericDecending);
  routine(table_, 1, table_.rows(), column, kSongColumns);
}

void clsMain::Mp3Info(std::int32_t column, std::int32_t row, std::string_view value) {
  if (table_.rows() < std::max(row, 1)) ResizeRows(std::max(row, 1));
  table_.SetCell(ColumnOf(column), row, value);
}

std::string_view clsMain::Mp3Info(std::int32_t column, std::int32_t row) const {
  return table_.Cell(ColumnOf(column), row);
}

bool clsMain::IsOnDisk() const {
  return saved_stamp_ && saved_version_ == table_.version() && saved_path_ == LibraryPath() &&
         StampOf(saved_path_) == saved_stamp_;
}

void clsMain::RememberOnDisk(std::uint64_t checksum) {
  saved_path_ = LibraryPath();
  saved_stamp_ = StampOf(saved_path_);
  saved_version_ = table_.version();
  companion_.library = checksum;
}

void clsMain::WriteLibrary(const std::string& path) {
  // Save missing songs before the library: once a row is blanked on disk, its song is known only
  // from this file.
  if (missing_.IsDirty()) {
    missing_.Shrink(static_cast<std::size_t>(table_.rows()));
    missing_file_.Save(missing_.Encode());
    missing_.MarkSaved();
  }
  // Save repaired numbers before the library: the jukeboxes need to know which numbers were
  // confused.
  if (repaired_.IsDirty()) {
    if (repaired_file_.IsUnreadable()) throw FileError(repaired_file_.path(), "cannot be read");
    repaired_file_.Save(repaired_.Encode());
    repaired_.MarkSaved();
  }
  // Save unread folders: once a library exists, a start scans only known folders and these.
  if (unread_.IsDirty()) {
    try {
      unread_file_.Save(unread_.Encode());
      unread_.MarkSaved();
      unread_error_.clear();
    } catch (const FileError& error) {
      // Report the same error only once; the next save tries again.
      if (std::exchange(unread_error_, error.what()) != error.what())
        problems_.push_back(unread_error_ +
                            ". Until it is written, folders that could not be read are not "
                            "searched again. Free some disk space, or make the file writable.");
    }
  }
  const std::string bytes = EncodeLibrary(table_);
  const std::uint64_t checksum = ChecksumOf(bytes);
  CompanionHeader companion = companion_;
  companion.before = companion_.library;
  companion.library = checksum;
  WriteCompanion(companion);
  bool had_backup = false;
  WriteFileAtomically(path, bytes, [&] { had_backup = KeepLibraryAsBackup(path); });
  if (const std::string backup = path + std::string(kBackupSuffix); !had_backup && IsGone(backup)) {
    try {
      WriteFileAtomically(backup, bytes);
    } catch (const FileError&) {
      // Not an error: the library is written, and the next save creates a backup of it.
    }
  }
  companion_ = companion;
  backup_first_ = false;
  RememberOnDisk(checksum);
}

bool clsMain::KeepLibraryAsBackup(const std::string& path) {
  // Keep the last good library until the next start, in case the current one turns out to be
  // damaged.
  if (is_library_renamed_) return true;
  try {
    const auto stamp = StampOf(path);
    if (IsGone(path) || (stamp && stamp->size == 0)) return false;
    if (backup_first_ || !backup_is_good_) SetBackupAside(path, companion_);
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

bool clsMain::Save() {
  const std::string path = LibraryPath();
  bool written = true;
  try {
    if (!IsOnDisk()) WriteLibrary(path);
    save_error_.clear();
  } catch (const FileError& error) {
    save_error_ = error.what();
    written = false;
  }
  MainIsDirty(false);
  if (written) settings_.NumerOfRecordsInTheMain(table_.rows());
  settings_.SaveSettings();
  return written;
}

bool clsMain::LoadMain() {
  const std::int32_t rows = settings_.NumerOfRecordsInTheMain();
  backup_first_ = true;
  is_library_renamed_ = false;
  saved_stamp_.reset();
  if (rows < 1) return false;
  table_ = SongTable();
  try {
    table_.Resize(rows);
    const std::string path = LibraryPath();
    auto content = ReadWholeFile(path, kMaxLibraryBytes);
    if (!content) {
      WriteFileAtomically(path, {});
      content.emplace();
    }
    loaded_bytes_ = content->size();
    const std::uint64_t checksum = ChecksumOf(*content);
    LibraryReader reader(*content);
    LibraryRecord record;
    std::int32_t row = 1;
    bool same_bytes = true;  // whether saving the table would write the same bytes
    LibraryReader::Result read;
    while ((read = reader.Next(record)) == LibraryReader::Result::kRecord) {
      if (record[kNameField].empty()) {
        same_bytes = false;
        continue;
      }
      if (row > rows) return false;
      table_.SetCell(kFileName, row, record[kNameField]);
      table_.SetCell(kFileLocation, row, record[kLocationField]);
      table_.SetCell(kRecordNumber, row, record[kNumberField]);
      table_.SetCell(kFileIsThere, row, record[kThereField]);
      table_.SetCell(kSongRank, row, record[kRankField]);
      same_bytes = same_bytes && std::all_of(record.begin() + kFirstSpare - 1, record.end(),
                                             [](std::string_view text) { return text.empty(); });
      ++row;
    }
    if (read == LibraryReader::Result::kDamaged) return false;
    if (row > rows) {
      backup_first_ = false;
      if (same_bytes) RememberOnDisk(checksum);
    }
    LoadFacts(checksum);
    LoadMemory();
  } catch (const std::exception&) {
    return false;
  }
  MainIsDirty(false);
  return true;
}

void clsMain::WriteOutMp3DirectoryLocations() {
  Save();
  list_error_.clear();
  try {
    SortRows(true, true, kFileLocation);
    std::string lines;
    std::string_view previous;
    for (std::int32_t row = 1; row <= table_.rows(); ++row) {
      if (row > 1 && table_.SameStoredText(kFileLocation, row - 1, row)) continue;
      const std::string_view folder = table_.Cell(kFileLocation, row);
      if (!SameName(previous, folder) && !HasLineBreak(folder))
        lines.append(folder).append(kLineEnd);
      previous = folder;
    }
    const std::string path = settings_.FileContainingTargetDirectories();
    // Do not replace a list that could not be read; it may name folders that no song row has.
    if (!list_is_unread_ && ReadWholeFile(path, kMaxListBytes) != lines)
      WriteFileAtomically(path, lines);
  } catch (const FileError& error) {
    list_error_ = error.what();
  }
  try {
    SortByRecord();
  } catch (const TypeMismatchError&) {
    // A row has no valid record number: the rows stay in the order reached so far, without an
    // error.
  } catch (const OverflowError&) {
    // As above.
  }
}

std::int32_t clsMain::Salvage(bool is_set_aside) {
  std::optional<std::string> content;
  try {
    content = ReadWholeFile(LibraryPath(), kMaxLibraryBytes);
  } catch (const FileTooLargeError&) {
    // A file of that size is not a library, so there are no songs to salvage.
  }
  backup_first_ = !is_set_aside;
  is_library_renamed_ = is_set_aside;
  saved_stamp_.reset();
  table_ = SongTable();
  const std::int32_t found = content ? SalvageLibrary(*content, table_) : 0;
  LoadMemory();
  return found;
}

}  // namespace tallow

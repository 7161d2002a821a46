// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/cls_main.h"

#include <algorithm>
#include <exception>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "library/duplicate_removal.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/like.h"
#include "util/path_text.h"
#include "util/read_ahead.h"
#include "util/text_lines.h"

namespace tallow {
namespace {

constexpr std::string_view kSongPattern = "*.mp3";
constexpr std::string_view kMissing = "0";
constexpr std::string_view kPresent = "1";
constexpr std::string_view kNewSongRank = "2";

/// How many folders a thread lists at once, see ReadAhead.
constexpr std::size_t kFoldersAtOnce = 16;

std::int16_t ColumnOf(std::int32_t column) {
  if (column < 1 || column > kSongColumns)
    throw SubscriptError("Column " + std::to_string(column) + " is outside the song table (1 to " +
                         std::to_string(kSongColumns) + ").");
  return static_cast<std::int16_t>(column);
}

/// Ends reading ahead before its end.
struct Stopped {};

/// What lets a window live while a folder is waited for; nothing where nobody is to be told.
std::function<void()> LiveWhile(const std::function<bool(std::string_view folder)>& go_on) {
  if (!go_on) return {};
  return [&go_on] {
    if (!go_on({})) throw Stopped();
  };
}

/// The rows whose songs lie in one folder.
struct FolderRows {
  std::string_view folder;
  std::vector<std::int32_t> rows;
};

/// Tells for each song of a folder whether its file exists. One listing answers for nearly all;
/// what it does not show (a name stored in another letter case, for one) is asked for singly.
std::vector<char> FindSongs(const SongTable& table, const FolderRows& songs) {
  std::vector<char> found(songs.rows.size());
  FolderListing listing;
  if (!songs.folder.empty() && songs.folder.back() == kSeparator && songs.rows.size() > 1)
    listing = ListFolder(std::string(songs.folder), {.pattern = kSongPattern});
  std::unordered_set<std::string_view> names(listing.files.size());
  for (const FileEntry& file : listing.files) names.insert(file.name);
  for (std::size_t k = 0; k < found.size(); ++k) {
    const std::string_view name = table.Cell(kFileName, songs.rows[k]);
    found[k] = names.contains(name) || FileExists(std::string(songs.folder).append(name));
  }
  return found;
}

}  // namespace

clsMain::clsMain(LibrarySettings& settings, std::function<void()> search_all_drives)
    : settings_(settings), search_all_drives_(std::move(search_all_drives)) {}

std::string clsMain::LibraryPath() const {
  return settings_.LocOfGroupingDir() + std::string(kLibraryFileName);
}

void clsMain::CheckToSeeIfFilesAreMissingAndMakeFalse(
    const std::function<bool(std::string_view folder)>& go_on) {
  std::vector<FolderRows> folders;
  std::unordered_map<std::string_view, std::size_t> index;
  std::vector<char> present(static_cast<std::size_t>(table_.rows()), 0);
  for (std::int32_t row = 1; row <= table_.rows(); ++row) {
    if (table_.Cell(kFileIsThere, row) != kPresent) continue;
    const std::string_view folder = table_.Cell(kFileLocation, row);
    const auto [at, added] = index.try_emplace(folder, folders.size());
    if (added) folders.push_back({folder, {}});
    folders[at->second].rows.push_back(row);
  }
  std::size_t looked_at = 0;
  try {
    ReadAhead(
        folders.size(), kFoldersAtOnce,
        [&](std::size_t k) { return FindSongs(table_, folders[k]); },
        [&](std::size_t k, const std::vector<char>& found) {
          for (std::size_t s = 0; s < found.size(); ++s)
            present[static_cast<std::size_t>(folders[k].rows[s] - 1)] = found[s];
          looked_at = k + 1;
          if (go_on && !go_on(folders[k].folder)) throw Stopped();
        },
        LiveWhile(go_on));
  } catch (const Stopped&) {
    for (std::size_t k = looked_at; k < folders.size(); ++k)
      for (const std::int32_t row : folders[k].rows) present[static_cast<std::size_t>(row - 1)] = 1;
  }
  for (std::int32_t row = 1; row <= table_.rows(); ++row) {
    if (present[static_cast<std::size_t>(row - 1)]) continue;
    for (const std::int16_t column : {kFileIsThere, kFileLocation, kFileName})
      table_.SetCell(column, row, kMissing);
  }
}

bool clsMain::AddAnyAdditionalMp3FromTheNormalDirectories(
    const std::function<bool(std::string_view folder)>& go_on) {
  std::int32_t old_count = UBoundOfMp3Array();
  if (settings_.NumerOfRecordsInTheMain() < 1) {
    search_all_drives_();
    if (Mp3MainHasSomeMembers()) {
      bool sorted = false;
      Sort(true, true, kFileName, sorted);
      std::int32_t none = 0;
      DeleteIdenticalFileNamesAndPaths(none);
      RenumberBasedOnArrayNumber();
      // What could not be saved must not be loaded over what was found.
      if (Save()) LoadMain();
      WriteOutMp3DirectoryLocations();
    }
    return false;
  }
  const std::vector<std::string> folders = RememberedFolders();
  // A file that is known and present would only be taken out again as the copy of itself. Where names
  // differ in case alone, copies can hide from each other and stay, so they are not added at all.
  KnownSongs known;
  for (std::int32_t row = 1; row <= table_.rows(); ++row)
    if (table_.Cell(kFileIsThere, row) == kPresent)
      known[table_.Cell(kFileLocation, row)].insert(table_.Cell(kFileName, row));
  try {
    ReadAhead(
        folders.size(), kFoldersAtOnce,
        [&](std::size_t k) { return ListFolder(folders[k], {.pattern = kSongPattern}); },
        [&](std::size_t k, const FolderListing& listing) {
          AddMp3FilesOfOneFolder(folders[k], listing, known);
          if (go_on && !go_on(folders[k])) throw Stopped();
        },
        LiveWhile(go_on));
  } catch (const Stopped&) {
    // What was found until now is complete.
  }
  DeleteIdenticalFileNamesAndPaths(old_count);
  return false;
}

std::vector<std::string> clsMain::RememberedFolders() {
  const auto read = [this]() -> std::optional<std::string> {
    try {
      return ReadWholeFile(settings_.FileContainingTargetDirectories());
    } catch (const FileError&) {
      return std::nullopt;
    }
  };
  auto content = read();
  if (!content) {
    // The folders are known from the songs as well.
    WriteOutMp3DirectoryLocations();
    content = read();
  }
  std::vector<std::string> folders;
  // The line "0" stands for the missing songs; in no other folder than a whole path are songs.
  const auto add = [&folders](std::string_view folder) {
    if (IsAbsolutePath(folder)) folders.push_back(EnsureTrailingBackslash(folder));
  };
  if (content) {
    for (const std::string_view line : SplitLines(*content)) add(line);
  } else {
    // Neither read nor written: the songs' folders serve without a list.
    std::unordered_set<std::string_view> seen;
    for (std::int32_t row = 1; row <= table_.rows(); ++row)
      if (seen.insert(table_.Cell(kFileLocation, row)).second) add(table_.Cell(kFileLocation, row));
  }
  return folders;
}

void clsMain::AddMp3FilesOfOneFolder(std::string_view folder, const FolderListing& listing,
                                     KnownSongs& known) {
  std::unordered_set<std::string_view>& names = known[folder];
  for (const FileEntry& file : listing.files) {
    if (names.contains(file.name)) continue;
    const std::int32_t row = UBoundOfMp3Array() + 1;
    Mp3Info(kFileLocation, row, folder);
    Mp3Info(kFileName, row, file.name);
    Mp3Info(kFileIsThere, row, kPresent);
    Mp3Info(kRecordNumber, row, std::to_string(row));
    Mp3Info(kSongRank, row, kNewSongRank);
    // The table's own text outlives the listing.
    names.insert(Mp3Info(kFileName, row));
  }
}

void clsMain::DeleteIdenticalFileNamesAndPaths(std::int32_t& old_count) {
  RemoveDuplicates(table_);
  bool sorted = false;
  Sort(true, false, kRecordNumber, sorted);
  table_.Pack();
  if (table_.rows() <= old_count) return;
  for (std::int32_t row = old_count + 1; row <= table_.rows(); ++row)
    table_.SetCell(kRecordNumber, row, std::to_string(row));
  Save();
}

void clsMain::RenumberBasedOnArrayNumber() {
  for (std::int32_t row = 1; row <= table_.rows(); ++row)
    table_.SetCell(kRecordNumber, row, std::to_string(row));
}

bool clsMain::Sort(bool ascending, const bool& as_text, std::int16_t column, bool& result) {
  result = IsDimensioned();
  if (!result) return result;
  const auto routine = ascending ? (as_text ? &SortCity::QuickSortStringsAscending
                                            : &SortCity::QuickSortNumericAscending)
                                 : (as_text ? &SortCity::QuickSortStringsDescending
                                            : &SortCity::QuickSortNumericDecending);
  routine(table_, 1, table_.rows(), column, kSongColumns);
  return result;
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

void clsMain::RememberOnDisk() {
  saved_path_ = LibraryPath();
  saved_stamp_ = StampOf(saved_path_);
  saved_version_ = table_.version();
}

bool clsMain::Save() {
  const std::string path = LibraryPath();
  bool written = true;
  try {
    if (!IsOnDisk()) {
      if (backup_first_) {
        const auto stamp = StampOf(path);
        if (stamp && stamp->size > 0) KeepBackup(path);
      }
      WriteFileAtomically(path, EncodeLibrary(table_));
      backup_first_ = false;
      RememberOnDisk();
    }
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
  saved_stamp_.reset();
  if (rows < 1) return false;
  table_ = SongTable();
  try {
    table_.Resize(rows);
    const std::string path = LibraryPath();
    auto content = ReadWholeFile(path);
    if (!content) {
      WriteFileAtomically(path, {});
      content.emplace();
    }
    LibraryReader reader(*content);
    LibraryRecord record;
    std::int32_t row = 1;
    bool same_bytes = true;  // whether saving the table would give the file's bytes
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
      if (same_bytes) RememberOnDisk();
    }
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
    bool sorted = false;
    Sort(true, true, kFileLocation, sorted);
    std::string lines;
    std::string_view previous;
    for (std::int32_t row = 1; row <= table_.rows(); ++row) {
      if (row > 1 && table_.SameStoredText(kFileLocation, row - 1, row)) continue;
      const std::string_view folder = table_.Cell(kFileLocation, row);
      if (!SameName(previous, folder) && !HasLineBreak(folder))
        lines.append(folder).append(kLineEnd);
      previous = folder;
    }
    WriteFileAtomically(settings_.FileContainingTargetDirectories(), lines);
  } catch (const FileError& error) {
    list_error_ = error.what();
  }
  try {
    bool sorted = false;
    Sort(true, false, kRecordNumber, sorted);
  } catch (const TypeMismatchError&) {
    // A record without a number: the rows stay as far as the sort got; nothing here is reported.
  } catch (const OverflowError&) {
    // As above.
  }
}

std::int32_t clsMain::Salvage() {
  const auto content = ReadWholeFile(LibraryPath());
  backup_first_ = true;
  saved_stamp_.reset();
  table_ = SongTable();
  return content ? SalvageLibrary(*content, table_) : 0;
}

}  // namespace tallow

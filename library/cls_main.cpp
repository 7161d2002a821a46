// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/cls_main.h"

#include <algorithm>
#include <exception>

#include "library/folder_scan.h"
#include "library/library_file.h"
#include "library/set_aside.h"
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

}  // namespace

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

void clsMain::UseSwitches(const tallow::Switches& switches) {
  switches_ = switches;
  sets_aside_ = true;
  // The next start may not know the style: its file may be lost, or this style is for one run only.
  if (switches.more_formats || switches.songs_by_path) state_.Missing().ExpectNamesakes();
  UpdateSetAside();
}

void clsMain::UpdateSetAside() {
  if (HasNamesakes()) SetAside(table_, switches_);
}

void clsMain::RenumberBasedOnArrayNumber() {
  for (std::int32_t row = 1; row <= table_.rows(); ++row)
    table_.SetCell(kRecordNumber, row, std::to_string(row));
}

bool clsMain::Sort(bool ascending, const bool& as_text, std::int16_t column, bool& result) {
  result = Mp3MainHasSomeMembers();
  SortRows(ascending, as_text, column);
  return result;
}

void clsMain::SortByRecord() { SortRows(true, false, kRecordNumber); }

void clsMain::SortByName() { SortRows(true, true, kFileName); }

void clsMain::SortRows(bool ascending, bool as_text, std::int16_t column) {
  if (!Mp3MainHasSomeMembers()) return;
  const auto routine = ascending ? (as_text ? &SortCity::QuickSortStringsAscending
                                            : &SortCity::QuickSortNumericAscending)
                                 : (as_text ? &SortCity::QuickSortStringsDescending
                                            : &SortCity::QuickSortNumericDecending);
  routine(table_, 1, table_.rows(), column, kSongColumns);
}

void clsMain::Mp3Info(std::int32_t column, std::int32_t row, std::string_view value) {
  if (table_.rows() < std::max(row, 1)) table_.Resize(std::max(row, 1));
  table_.SetCell(ColumnOf(column), row, value);
}

std::string_view clsMain::Mp3Info(std::int32_t column, std::int32_t row) const {
  return table_.Cell(ColumnOf(column), row);
}

bool clsMain::Save() {
  bool written = true;
  try {
    if (!storage_.IsOnDisk(table_)) {
      state_.SaveBeforeLibrary(table_.rows(), problems_);
      storage_.Write(table_);
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
  try {
    if (!storage_.Load(settings_.NumerOfRecordsInTheMain(), table_, problems_)) return false;
    LoadMemory();
  } catch (const std::exception&) {
    return false;
  }
  UpdateSetAside();
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
  const std::int32_t found = storage_.Salvage(is_set_aside, table_);
  LoadMemory();
  return found;
}

bool clsMain::RepairRecordNumbers() {
  const auto confused = tallow::RepairNumbers(table_, MaxRecords(storage_.LoadedBytes()));
  if (!confused) return false;
  state_.Repaired().Set(*confused);
  storage_.RequireBackup();
  Save();
  return true;
}

}  // namespace tallow

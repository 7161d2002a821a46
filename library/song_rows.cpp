// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/song_rows.h"

#include <algorithm>
#include <string>

#include "library/folder_scan.h"
#include "util/day.h"
#include "util/errors.h"
#include "util/quicksort.h"

namespace tallow {
namespace {

std::int16_t ColumnOf(std::int32_t column) {
  if (column < 1 || column > kSongColumns)
    throw SubscriptError("Column " + std::to_string(column) + " is outside the song table (1 to " +
                         std::to_string(kSongColumns) + ").");
  return static_cast<std::int16_t>(column);
}

}  // namespace

std::int32_t SongRows::AddSong(std::string_view folder, std::string_view name, std::int64_t size) {
  const std::int32_t row = UBoundOfMp3Array() + 1;
  Mp3Info(kFileLocation, row, folder);
  Mp3Info(kFileName, row, name);
  Mp3Info(kFileIsThere, row, kPresent);
  Mp3Info(kRecordNumber, row, std::to_string(row));
  Mp3Info(kSongRank, row, kUnranked);
  table_.Facts(row) = {.size = size, .added = Today(), .away = 0};
  return row;
}

void SongRows::RenumberBasedOnArrayNumber() {
  for (std::int32_t row = 1; row <= table_.rows(); ++row)
    table_.SetCell(kRecordNumber, row, std::to_string(row));
}

bool SongRows::Sort(bool ascending, const bool& as_text, std::int16_t column, bool& result) {
  result = Mp3MainHasSomeMembers();
  SortRows(ascending, as_text, column);
  return result;
}

void SongRows::SortByRecord() { SortRows(true, false, kRecordNumber); }

void SongRows::SortByName() { SortRows(true, true, kFileName); }

void SongRows::SortRows(bool ascending, bool as_text, std::int16_t column) {
  if (!Mp3MainHasSomeMembers()) return;
  const auto routine = ascending ? (as_text ? &SortCity::QuickSortStringsAscending
                                            : &SortCity::QuickSortNumericAscending)
                                 : (as_text ? &SortCity::QuickSortStringsDescending
                                            : &SortCity::QuickSortNumericDecending);
  routine(table_, 1, table_.rows(), column, kSongColumns);
}

void SongRows::Mp3Info(std::int32_t column, std::int32_t row, std::string_view value) {
  if (table_.rows() < std::max(row, 1)) table_.Resize(std::max(row, 1));
  table_.SetCell(ColumnOf(column), row, value);
}

std::string_view SongRows::Mp3Info(std::int32_t column, std::int32_t row) const {
  return table_.Cell(ColumnOf(column), row);
}

}  // namespace tallow

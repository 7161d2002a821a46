// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "library/song_table.h"

namespace tallow {

/// A read-only view of one row of the song table: a pointer and a row, cheap to copy.
///
/// A view of a row that does not exist is allowed, because entries of a damaged jukebox may have
/// any number: its texts are empty, its numbers are 0, and it is neither present nor away.
///
/// The view and the texts it returns are valid until the table changes.
class SongView {
 public:
  /// \param row any number
  SongView(const SongTable& table, std::int32_t row) noexcept
      : table_(&table), row_(row >= 1 && row <= table.rows() ? row : 0) {}

  bool Exists() const noexcept { return row_ != 0; }

  /// The row, from 1; 0 when it does not exist.
  std::int32_t Row() const noexcept { return row_; }

  /// The number in the row's cell. It differs from Row() only while the table is sorted by another
  /// column, or in a library that has not been repaired.
  std::int32_t RecordNumber() const { return Number(kRecordNumber); }

  /// The folder, ending in a separator; "0" for a missing song.
  std::string_view Folder() const { return Text(kFileLocation); }

  /// The file name with its extension; "0" for a missing song.
  std::string_view Name() const { return Text(kFileName); }

  /// The path of the file, newly allocated.
  std::string Path() const;

  /// The rank, see kSongRank; 0 when the cell is not a number.
  std::int32_t Rank() const { return Number(kSongRank); }

  /// Whether the song is present or away, and not set aside.
  bool IsPresent() const { return !IsMissing() && !IsSetAside(); }

  /// Whether the row is blank, because the song's file is gone. True when the row does not exist.
  bool IsMissing() const;

  /// Whether the song is in the library, but the switches leave it out, see SetAside.
  bool IsSetAside() const noexcept { return Exists() && table_->IsSetAside(row_); }

  /// Whether the song is present, but its file could not be checked.
  bool IsAway() const { return Exists() && table_->Facts(row_).away != 0; }

 private:
  std::string_view Text(SongColumn column) const {
    return Exists() ? table_->Cell(column, row_) : std::string_view();
  }
  std::int32_t Number(SongColumn column) const;

  const SongTable* table_;
  std::int32_t row_;
};

}  // namespace tallow

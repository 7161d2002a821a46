// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>

#include "library/song_table.h"
#include "library/song_view.h"

namespace tallow {

/// The rows of the song library: reading, writing and sorting them, without any rules about what
/// they mean. See clsMain.
class SongRows {
 public:
  /// Appends a song of rank "2", added today.
  ///
  /// \param size of the file, in bytes; kUnknownSize when it is not known
  /// \returns the song's row
  std::int32_t AddSong(std::string_view folder, std::string_view name, std::int64_t size);

  /// Sets the record number of every row to its row.
  void RenumberBasedOnArrayNumber();

  /// Sorts whole rows by one column, see SortCity.
  ///
  /// \param ascending smallest key first
  /// \param as_text   sort by lower-cased text; otherwise as 32-bit integers
  /// \param column    1 to 12
  /// \param result    set to false when the table has no rows; then nothing happens
  /// \throws TypeMismatchError, OverflowError from a numeric sort when a cell is not a number
  bool Sort(bool ascending, const bool& as_text, std::int16_t column, bool& result);

  /// Sorts the rows by record number, smallest first. Does nothing when there are no rows.
  ///
  /// \throws TypeMismatchError, OverflowError when a record number is not a number
  void SortByRecord();

  /// Sorts the rows by lower-cased file name, smallest first. Does nothing when there are no rows.
  void SortByName();

  /// Sets one cell. The table grows to the row if needed.
  ///
  /// \param column 1 to 12
  /// \param row    from 1
  /// \throws SubscriptError
  void Mp3Info(std::int32_t column, std::int32_t row, std::string_view value);

  /// The text of one cell. The view is valid until the library changes.
  ///
  /// \param column 1 to 12
  /// \param row    1 to UBoundOfMp3Array()
  /// \throws SubscriptError when the cell does not exist
  std::string_view Mp3Info(std::int32_t column, std::int32_t row) const;

  /// The song of a row; any number is allowed, see SongView.
  SongView Song(std::int32_t record) const noexcept { return {table_, record}; }

  /// The number of rows.
  std::int32_t UBoundOfMp3Array() const noexcept { return table_.rows(); }

  /// Whether there are rows.
  bool Mp3MainHasSomeMembers() const noexcept { return table_.rows() > 0; }

  /// Size and date added of a song's file.
  const SongFacts& Facts(std::int32_t row) const { return table_.Facts(row); }
  /// Changes with every change of a song, and of what is set aside.
  std::uint64_t Version() const noexcept { return table_.version(); }
  /// Like Version, but does not change with a rank.
  std::uint64_t NamesVersion() const noexcept { return table_.names_version(); }

 protected:
  ~SongRows() = default;

  void SortRows(bool ascending, bool as_text, std::int16_t column);

  SongTable table_;
};

}  // namespace tallow

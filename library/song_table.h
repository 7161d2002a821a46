// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "library/text_pool.h"
#include "util/quicksort.h"

namespace tallow {

/// The columns of a song record.
enum SongColumn : std::int16_t {
  kFileLocation = 1,  ///< the folder, ending in a separator
  kFileName = 2,      ///< the name with its extension, no folder part
  kFileIsThere = 3,   ///< "1" when the file was found at the last check, "0" when not
  kRecordNumber = 4,  ///< the row's number, decimal, no leading zeros
  kSongRank = 5,      ///< the user's rank: "7" best to "3"; "2" when never ranked
  kFirstSpare = 6,    ///< unused up to column 12, but kept in the library file
};

/// The rank of a song that was never ranked.
inline constexpr std::string_view kUnranked = "2";

/// Number of columns of a song record.
inline constexpr std::int16_t kSongColumns = 12;

/// Value for an unknown size.
inline constexpr std::int64_t kUnknownSize = -1;

/// Facts about a song that are not part of its record.
struct SongFacts {
  std::int64_t size = kUnknownSize;  ///< size of the file, in bytes
  std::int32_t added = 0;            ///< day added to the library, see Today(); 0: not known
  std::uint32_t away = 0;            ///< why its file cannot be checked, see clsMain; 0: not away
};

/// The rows of the song library, twelve texts each, without any rules about their content.
///
/// Cells are handles into a text pool, one array per column; a column that was never written uses
/// no memory. At 100,000 songs a row takes about 75 bytes. Each row also has facts, which move with
/// the row but are not part of its record.
///
/// Cost: accessing a cell is O(1); a sort only moves handles.
class SongTable : public TextTable {
 public:
  SongTable();

  /// Number of rows.
  std::int32_t rows() const noexcept { return rows_; }

  /// The text of a cell, both indexes from 1. The view is valid until the table is cleared or
  /// packed.
  ///
  /// \throws SubscriptError
  std::string_view Cell(std::int16_t column, std::int32_t row) const override;

  /// Sets a cell of an existing row.
  ///
  /// \throws SubscriptError
  void SetCell(std::int16_t column, std::int32_t row, std::string_view text);

  /// The facts of a row, from 1. Changing them does not change version().
  ///
  /// \throws SubscriptError
  const SongFacts& Facts(std::int32_t row) const {
    if (row < 1 || row > rows_) Check(kFileName, row);
    return facts_[static_cast<std::size_t>(row - 1)];
  }
  SongFacts& Facts(std::int32_t row) {
    if (row < 1 || row > rows_) Check(kFileName, row);
    return facts_[static_cast<std::size_t>(row - 1)];
  }

  /// Whether the switches leave the song of a row out, see tallow::SetAside. The row must exist.
  bool IsSetAside(std::int32_t row) const noexcept {
    return !set_aside_.empty() && set_aside_[static_cast<std::size_t>(row - 1)] != 0;
  }

  /// Determines which rows are set aside, and so changes version().
  ///
  /// \param set_aside one element per row, element 0 being row 1; empty: none
  void SetAside(std::vector<char> set_aside);

  /// Removes rows; the other rows keep their order.
  ///
  /// \param is_removed whether to remove a row, one element per row, element 0 being row 1
  void Remove(const std::vector<char>& is_removed);

  /// Sets the number of rows; existing rows are kept, and new cells are empty.
  void Resize(std::int32_t rows);

  /// Frees the memory of overwritten and removed texts once they are more than half of the pool.
  /// Invalidates views of cells.
  void Pack();

  void MoveRows(std::int32_t first, std::span<const std::int32_t> order,
                std::int16_t columns) override;

  /// Whether two cells of a column share one stored text; then they are equal. If false, they may
  /// still be equal. Cheaper than a comparison, for columns whose texts repeat.
  bool SameStoredText(std::int16_t column, std::int32_t a, std::int32_t b) const noexcept;

  /// A version number that changes with every change of a cell, the row count or the order.
  std::uint64_t version() const noexcept { return version_; }
  /// Like version(), but does not change with a rank.
  std::uint64_t names_version() const noexcept { return version_ - rank_changes_; }

 private:
  void Check(std::int16_t column, std::int32_t row) const;
  static bool Repeats(std::int16_t column) noexcept;
  std::vector<TextHandle>& Column(std::int16_t column) noexcept {
    return columns_[static_cast<std::size_t>(column - 1)];
  }
  const std::vector<TextHandle>& Column(std::int16_t column) const noexcept {
    return columns_[static_cast<std::size_t>(column - 1)];
  }

  std::unique_ptr<TextPool> pool_;
  std::array<std::vector<TextHandle>, kSongColumns> columns_;
  std::vector<SongFacts> facts_;
  std::vector<char> set_aside_;  ///< one element per row; empty while no row is set aside
  std::int32_t rows_ = 0;
  std::uint64_t version_ = 0;
  std::uint64_t rank_changes_ = 0;  ///< how many of the changes were changes of a rank
};

/// Blanks the row of a missing song: flag, folder and name become "0". Its record number, rank and
/// facts stay.
void BlankSong(SongTable& table, std::int32_t row);

}  // namespace tallow

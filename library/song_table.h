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
  kFirstSpare = 6,    ///< unused up to column 12, kept in the library file
};

/// Columns of a song record.
inline constexpr std::int16_t kSongColumns = 12;

/// A size that is not known.
inline constexpr std::int64_t kUnknownSize = -1;

/// What is known of a song beside its record.
struct SongFacts {
  std::int64_t size = kUnknownSize;  ///< of its file, in bytes
  std::int32_t added = 0;            ///< the day it came to the library, see Today(); 0: not known
  std::uint32_t away = 0;  ///< why nobody can tell whether its file is there; 0: that is known
};

/// The rows of the song library, twelve texts each, without any rule about them.
///
/// Cells are handles into a pool, one array a column; a column in which nothing was ever written
/// costs nothing. At 100,000 songs a row is about 75 bytes. Each row has facts beside its texts, which move
/// with it and are no part of its record.
///
/// Cost: a cell is O(1); a sort moves handles only.
class SongTable : public TextTable {
 public:
  SongTable();

  /// Number of rows.
  std::int32_t rows() const noexcept { return rows_; }

  /// The text of a cell, both indexes from 1. It holds until the table is cleared or packed.
  ///
  /// \throws SubscriptError
  std::string_view Cell(std::int16_t column, std::int32_t row) const override;

  /// Sets a cell of a row that exists.
  ///
  /// \throws SubscriptError
  void SetCell(std::int16_t column, std::int32_t row, std::string_view text);

  /// The facts of a row, from 1. They are no part of version().
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

  /// Takes rows out; the others keep their order.
  ///
  /// \param goes one element a row, element 0 being row 1
  void Remove(const std::vector<char>& goes);

  /// Keeps the contents and sets the number of rows; new cells are empty.
  void Resize(std::int32_t rows);

  /// Gives the memory of overwritten and cut texts back once they are more than half of all. Views
  /// of cells end here.
  void Pack();

  void MoveRows(std::int32_t first, std::span<const std::int32_t> order,
                std::int16_t columns) override;

  /// Whether two cells of one column share one stored text, which makes them equal; a false says
  /// nothing. Cheaper than comparing, for the columns whose texts repeat.
  bool SameStoredText(std::int16_t column, std::int32_t a, std::int32_t b) const noexcept;

  /// A number that is another one after any change of a cell, of the row count or of the order.
  std::uint64_t version() const noexcept { return version_; }

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
  std::int32_t rows_ = 0;
  std::uint64_t version_ = 0;
};

}  // namespace tallow

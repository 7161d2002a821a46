// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace tallow {

/// A table of text cells that can be sorted by rows. Columns and rows count from 1.
class TextTable {
 public:
  virtual ~TextTable() = default;

  /// The text of one cell; valid until the table changes.
  virtual std::string_view Cell(std::int16_t column, std::int32_t row) const = 0;

  /// Puts rows into a new order.
  ///
  /// \param first   the row that the new order begins at
  /// \param order   for each place from first on, the row whose cells move there; a permutation of
  ///                first to first + order.size() - 1
  /// \param columns the cells of columns 1 to this one move; the others stay in their rows
  virtual void MoveRows(std::int32_t first, std::span<const std::int32_t> order,
                        std::int16_t columns) = 0;
};

/// Sorts rows of a text table by the cells of one column.
///
/// All four routines are the same recursive quicksort. It is not stable, and where its equal keys
/// end up can be seen (which of two copies of a song is kept, the order of a jukebox list), so its
/// steps are fixed: the pivot is the key of the middle row, taken once; a scan from each end stops
/// at the first row that is not on its side of the pivot; the two rows change places, even when
/// they are one row; then the part below and the part above are sorted alike. The middle of an odd
/// sum is rounded to the even neighbour: 5 gives row 2, 7 gives row 4.
///
/// Every key is computed once and only row numbers move while the parts are sorted; the table's
/// rows move once, at the end. Text keys become ranks first, so that the scans compare integers.
///
/// Cost: O(n log n) text comparisons for the ranks, then about 1.4 n log2 n integer comparisons.
class SortCity {
 public:
  /// Sorts rows lo to hi by the lower-cased text of the key column, by character code. A table of
  /// no rows (hi below lo) stays as it is, here and in the other three.
  ///
  /// \param columns how many columns of each row move, from column 1 on
  static void QuickSortStringsAscending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                        std::int16_t key_column, std::int16_t columns);
  /// As QuickSortStringsAscending, last key first.
  static void QuickSortStringsDescending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                         std::int16_t key_column, std::int16_t columns);
  /// Sorts rows lo to hi by the key column as 32-bit integers.
  ///
  /// \throws TypeMismatchError, OverflowError when a cell is no such number; the rows that had
  ///         already changed places then stay changed
  static void QuickSortNumericAscending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                        std::int16_t key_column, std::int16_t columns);
  /// As QuickSortNumericAscending, largest first.
  static void QuickSortNumericDecending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                        std::int16_t key_column, std::int16_t columns);
};

/// Gives every text its place among the texts' lower-cased forms in order of character code. Equal
/// forms get equal ranks, and the ranks begin at 0 without a gap.
std::vector<std::int32_t> RankText(std::span<const std::string_view> texts);

/// The row whose key is the pivot of rows lo to hi: their mean, halves to the even neighbour.
constexpr std::int32_t MiddleRow(std::int32_t lo, std::int32_t hi) noexcept {
  const std::int64_t sum = std::int64_t{lo} + hi;
  const std::int64_t half = sum / 2;
  return static_cast<std::int32_t>(half + (sum % 2 != 0 && half % 2 != 0 ? 1 : 0));
}

/// The quicksort itself, on places lo to hi of whatever holds the rows.
///
/// \param key  returns the key of the row that is at a place now; it may throw
/// \param swap lets the rows at two places (which may be one) change places
/// \param less whether one key belongs before another
template <typename Key, typename Swap, typename Less>
void QuickSortPlaces(std::int32_t lo, std::int32_t hi, const Key& key, const Swap& swap,
                     const Less& less) {
  // The parts still to sort. They never overlap, so their order is free: the larger one waits,
  // which keeps the stack below 32 pairs whatever the keys are.
  std::vector<std::pair<std::int32_t, std::int32_t>> waiting;
  while (lo <= hi) {
    std::int32_t i = lo;
    std::int32_t j = hi;
    const auto pivot = key(MiddleRow(lo, hi));
    while (i <= j) {
      while (less(key(i), pivot) && i < hi) ++i;
      while (less(pivot, key(j)) && j > lo) --j;
      if (i <= j) swap(i++, j--);
    }
    std::pair<std::int32_t, std::int32_t> below{lo, j};
    std::pair<std::int32_t, std::int32_t> above{i, hi};
    if (j - lo > hi - i) std::swap(below, above);
    if (above.first < above.second) waiting.push_back(above);
    if (below.first < below.second) {
      std::tie(lo, hi) = below;
    } else if (!waiting.empty()) {
      std::tie(lo, hi) = waiting.back();
      waiting.pop_back();
    } else {
      return;
    }
  }
}

}  // namespace tallow

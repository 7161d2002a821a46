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

  /// The text of one cell. The view is valid until the table changes.
  virtual std::string_view Cell(std::int16_t column, std::int32_t row) const = 0;

  /// Reorders rows.
  ///
  /// \param first   the first row of the range to reorder
  /// \param order   for each row from first on, the row whose cells move there; a permutation of
  ///        first to first + order.size() - 1
  /// \param columns the cells of columns 1 to this column move; other cells stay in their rows
  virtual void MoveRows(std::int32_t first, std::span<const std::int32_t> order,
                        std::int16_t columns) = 0;
};

/// Sorts rows of a text table by the cells of one column.
///
/// All four functions use the same recursive quicksort. The sort is not stable, and the order of
/// equal keys is visible (it decides which of two copies of a song is kept, and the order of a
/// jukebox list), so its steps are fixed: the pivot is the key of the middle row, read once; a scan
/// from each end stops at the first row that is not on its side of the pivot; the two rows are
/// swapped, even when they are the same row; then the part below and the part above are sorted the
/// same way. The middle of an odd sum is rounded to the even neighbour: 5 gives row 2, 7 gives row
/// 4.
///
/// Every key is computed once, and only row numbers move during the sort; the table's rows move
/// once, at the end. Text keys are converted to ranks first, so that the scans compare integers.
///
/// Cost: O(n log n) text comparisons for the ranks, then about 1.4 n log2 n integer comparisons.
class SortCity {
 public:
  /// Sorts rows lo to hi by the lower-cased text of the key column, by character code. With hi
  /// below lo there are no rows and nothing changes; this also holds for the other three functions.
  ///
  /// \param columns how many columns of each row move, from column 1 on
  static void QuickSortStringsAscending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                        std::int16_t key_column, std::int16_t columns);
  /// Like QuickSortStringsAscending, in descending order.
  static void QuickSortStringsDescending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                         std::int16_t key_column, std::int16_t columns);
  /// Sorts rows lo to hi by the key column as 32-bit integers.
  ///
  /// \throws TypeMismatchError, OverflowError when a cell is not such a number; rows that were
  /// already swapped then stay swapped
  static void QuickSortNumericAscending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                        std::int16_t key_column, std::int16_t columns);
  /// Like QuickSortNumericAscending, in descending order.
  static void QuickSortNumericDecending(TextTable& table, std::int32_t lo, std::int32_t hi,
                                        std::int16_t key_column, std::int16_t columns);
};

/// Returns the rank of every text in the order of the lower-cased texts by character code. Equal
/// lower-cased texts have equal ranks; ranks are consecutive and start at 0.
std::vector<std::int32_t> RankText(std::span<const std::string_view> texts);

/// The row of the pivot: the mean of lo and hi, halves rounded to the even neighbour.
constexpr std::int32_t MiddleRow(std::int32_t lo, std::int32_t hi) noexcept {
  const std::int64_t sum = std::int64_t{lo} + hi;
  const std::int64_t half = sum / 2;
  return static_cast<std::int32_t>(half + (sum % 2 != 0 && half % 2 != 0 ? 1 : 0));
}

/// The quicksort algorithm on places lo to hi of any container.
///
/// \param key  returns the key of the row that is at a place now; it may throw
/// \param swap swaps the rows at two places, which may be the same place
/// \param less whether one key comes before another
template <typename Key, typename Swap, typename Less>
void QuickSortPlaces(std::int32_t lo, std::int32_t hi, const Key& key, const Swap& swap,
                     const Less& less) {
  // Stack of the parts still to sort. Parts never overlap, so they can be sorted in any order;
  // pushing the larger part keeps the stack below 32 entries whatever the keys are.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "jukebox/column_sort.h"

namespace tallow {

class EditHistory;
class Folder;
class clsMain;

/// The sort order of the shown list. Successive clicks on a column header cycle through four
/// orders: file name ascending, file name descending, best rank first, worst rank first.
class SongListOrder {
 public:
  /// 0 not sorted yet, 1 to 4 the order that the next click applies.
  int State() const noexcept { return state_; }
  /// Starts again with the first order.
  void Reset() noexcept { state_ = 0; }

  /// Sorts the shown songs of a folder by the next order, as one step of the history. The entries
  /// stay and the songs move between them; hidden songs stay where they are.
  ///
  /// \returns the header of the name column for this order
  /// \throws TypeMismatchError, OverflowError from the sort by rank when a rank is not a number.
  /// Songs that have moved by then form a step of the history, too; the next call sorts by the same
  /// order again.
  std::string_view SortByNext(Folder& folder, const clsMain& library, EditHistory& history);

  /// Sorts the shown songs of a folder by a column, as one step of the history; the entries stay,
  /// as in SortByNext. The next SortByNext starts again with the first order. What `keys` throws is
  /// passed on, and nothing has changed then.
  void SortBy(Folder& folder, const clsMain& library, EditHistory& history, const ColumnKeys& keys,
              bool descending);

 private:
  int state_ = 0;
};

/// Sorts the shown songs of a folder by a column, without a history; hidden songs stay where they
/// are.
///
/// \returns for each position, the position that its song had before; both from 0
std::vector<std::int32_t> SortSongsByColumn(Folder& folder, const clsMain& library,
                                            const ColumnKeys& keys, bool descending);

}  // namespace tallow

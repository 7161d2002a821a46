// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "app/columns/list_column.h"

namespace tallow {

class Preferences;

// The preferences file has which columns the lists show, for each style:
//
//   "columns": {
//     "modern": ["playing", "position", "title", "artist 180", "rank"]
//   }
//
// | Member  | Value                                                                       |
// |---------|-----------------------------------------------------------------------------|
// | classic | the columns without the switch `columns_of_details`, from left to right     |
// | modern  | the columns with it                                                         |
//
// A column is a name of IdOf; a width that the user has chosen follows after a blank, in pixels at
// 96 dpi. Without a member, or when it has no known column, lists show FirstColumns.

/// A column of a list.
struct ChosenColumn {
  ListColumn column;
  int width = 0;  ///< in pixels at 96 dpi; 0: as wide as its usual texts

  friend bool operator==(const ChosenColumn&, const ChosenColumn&) = default;
};

/// A larger width is stored as this one.
inline constexpr int kMaxColumnWidth = 4000;

/// The columns that lists show before the user chooses others, from left to right.
/// \param details see Switches::columns_of_details
std::vector<ChosenColumn> FirstColumns(bool details);

/// The columns that lists show: at least one, each once.
std::vector<ChosenColumn> ColumnsOf(const Preferences& preferences, bool details);

/// Stores the columns that lists show.
/// \param columns none for FirstColumns
void ChooseColumns(Preferences& preferences, bool details,
                   const std::vector<ChosenColumn>& columns);

/// Moves a column by one place. The first one cannot move to the left, nor the last to the right.
std::vector<ChosenColumn> WithColumnMoved(std::vector<ChosenColumn> columns, ListColumn column,
                                          bool left);

/// Shows or hides a column. A column that is shown goes to its place among all columns: before the
/// first of those that follow it in ListColumn.
/// \returns the columns without a change when nothing would be left
std::vector<ChosenColumn> WithColumn(std::vector<ChosenColumn> columns, ListColumn column,
                                     bool shown);

}  // namespace tallow

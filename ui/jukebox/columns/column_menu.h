// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "app/columns/column_choice.h"

class QMenu;
class QWidget;

namespace tallow {

/// What the menu of the columns does.
struct ColumnActions {
  std::function<void(ListColumn, bool shown)> show;  ///< shows or hides a column
  std::function<void(ListColumn)> sort;              ///< as a click on its header does
  std::function<void(ListColumn, bool left)> move;   ///< by one place
  std::function<void()> reset;                       ///< shows the columns of the first start again
};

/// Creates the menu of the columns of a list, named "HeaderMenu": a check item for each column, the
/// menus "Sort By", "Move Left" and "Move Right" with an item for each column that is shown, and
/// "Reset Columns". The data of an item of a column is the column's name of IdOf.
QMenu* MakeColumnMenu(QWidget* parent, const ColumnActions& actions);

/// Call before the menu is shown: checks the items of the columns that are shown, and fills the
/// menus of these columns. The last column cannot be hidden.
/// \param first     the columns of the first start
/// \param sorted_by the column that the list is sorted by; no value for none
void UpdateColumnMenu(QMenu& menu, const std::vector<ChosenColumn>& columns,
                      const std::vector<ChosenColumn>& first, std::optional<ListColumn> sorted_by);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <vector>

#include "app/columns/column_choice.h"

class QMenu;
class QWidget;

namespace tallow {

/// Creates the menu of the columns of a list, named "HeaderMenu": a check item for each column, and
/// "Reset Columns". The data of a check item is the column's name of IdOf.
/// \param show  shows or hides a column
/// \param reset shows the columns of the first start again
QMenu* MakeColumnMenu(QWidget* parent, const std::function<void(ListColumn, bool shown)>& show,
                      const std::function<void()>& reset);

/// Checks the items of the columns that are shown. The last one cannot be hidden.
void CheckColumns(QMenu& menu, const std::vector<ChosenColumn>& columns);

}  // namespace tallow

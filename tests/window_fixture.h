// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractItemModel>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTreeView>

#include "tests/library_fixture.h"

namespace tallow {

/// The displayed texts of one column of a list or tree.
inline QStringList RowsOf(const QAbstractItemView& view, int column = 0) {
  QStringList rows;
  for (int row = 0; row < view.model()->rowCount(); ++row)
    rows.append(view.model()->index(row, column).data().toString());
  return rows;
}

/// The index of an item by its path of texts, "Artist/ABBA"; invalid if there is none.
inline QModelIndex IndexOf(const QTreeView& tree, const QString& path) {
  QModelIndex index;
  for (const QString& text : path.split(u'/')) {
    const int count = tree.model()->rowCount(index);
    QModelIndex found;
    for (int row = 0; row < count && !found.isValid(); ++row)
      if (tree.model()->index(row, 0, index).data().toString() == text)
        found = tree.model()->index(row, 0, index);
    if (!found.isValid()) return {};
    index = found;
  }
  return index;
}

}  // namespace tallow

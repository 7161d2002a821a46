// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStyledItemDelegate>

namespace tallow {

/// Adds blanks to a text that is aligned at the right, so that it keeps a distance from the next
/// column, which may be aligned at the left. The style sets the margins.
QString ApartFromNext(const QString& text);

/// Draws the cells of a list of songs: the texts of SongListModel::kPaintedRole, and in the column
/// of ranks bars that are wide enough to be clicked.
class SongListDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

  /// The width of the column of ranks. \param height of a row, in pixels
  static int RankWidth(int height);
  /// The rank that a point in a cell of the column of ranks stands for: that of the bar there,
  /// kMinRankPicture before the first bar, 0 behind the last one.
  /// \param cell, x in the same coordinates
  static int RankAt(const QRect& cell, int x);

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

}  // namespace tallow

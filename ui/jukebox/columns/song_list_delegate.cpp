// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/song_list_delegate.h"

#include <algorithm>

#include <QPainter>

#include "ui/jukebox/rank_picture.h"
#include "ui/jukebox/song_list_model.h"

namespace tallow {
namespace {

/// Distance of the bars from the upper and lower edge of the cell, in pixels.
constexpr int kGap = 3;
constexpr int kMinStep = 6;

/// The width of a bar and the gap behind it. Before the first bar is as much room.
int StepOf(int height) { return std::max(kMinStep, (height - 2 * kGap) / 2); }

QRect BarsOf(const QRect& cell) {
  const int step = StepOf(cell.height());
  return {cell.x() + step, cell.y() + kGap, kRankBars * step, cell.height() - 2 * kGap};
}

}  // namespace

QString ApartFromNext(const QString& text) {
  // Blanks that are not cut off at the end of a line.
  constexpr QChar kBlank(0x00A0);
  return text + QString(2, kBlank);
}

int SongListDelegate::RankWidth(int height) { return (kRankBars + 2) * StepOf(height); }

int SongListDelegate::RankAt(const QRect& cell, int x) {
  const QRect bars = BarsOf(cell);
  if (x < bars.x()) return kMinRankPicture;
  const int bar = (x - bars.x()) / StepOf(cell.height());
  return bar < kRankBars ? kMinRankPicture + 1 + bar : 0;
}

void SongListDelegate::initStyleOption(QStyleOptionViewItem* option,
                                       const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  option->text = index.data(SongListModel::kPaintedRole).toString();
  if (option->displayAlignment.testFlag(Qt::AlignRight)) option->text = ApartFromNext(option->text);
}

void SongListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  const auto* const songs = qobject_cast<const SongListModel*>(index.model());
  if (songs == nullptr || index.column() != songs->IndexOf(ListColumn::kRank)) return;
  const bool is_selected = (option.state & QStyle::State_Selected) != 0;
  painter->save();
  painter->setClipRect(option.rect);
  PaintRankBars(*painter, BarsOf(option.rect), index.data(SongListModel::kRankRole).toInt(),
                is_selected ? QIcon::Selected : QIcon::Normal);
  painter->restore();
}

}  // namespace tallow

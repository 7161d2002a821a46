// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/rank_picture.h"

#include <algorithm>
#include <cmath>

#include <QCoreApplication>
#include <QIconEngine>
#include <QPainter>

namespace tallow {
namespace {

/// Colours with enough contrast on white and on dark backgrounds: the elements are those from rank
/// 2 to rank 7.
constexpr QRgb kColors[kRankBars + 1] = {0xFF8A8A8A, 0xFFD1462F, 0xFFD9762B,
                                         0xFFB38600, 0xFF5E9A1E, 0xFF1E9E4A};
constexpr QRgb kEmptyBar = 0xFF8A8A8A;

bool HasPicture(int rank) { return rank >= kMinRankPicture && rank <= kBestRankPicture; }

qreal RatioOf(const QPainter& painter) {
  return painter.device() != nullptr ? painter.device()->devicePixelRatioF() : 1;
}

/// Draws the bars of a rank.
///
/// \param side, step height of the picture and distance between bars, in device pixels; the bars
/// are aligned to whole device pixels, because otherwise they are blurred
/// \param left, bottom of the bars, in device pixels
void PaintBars(QPainter& painter, qreal left, qreal bottom, qreal side, qreal step, int filled,
               QIcon::Mode mode) {
  const qreal ratio = RatioOf(painter);
  const qreal width = std::max(1.0, std::round(step * 0.7));
  const qreal tallest = side - side / 8;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(Qt::NoPen);
  painter.scale(1 / ratio, 1 / ratio);
  for (int bar = 0; bar < kRankBars; ++bar) {
    const bool is_filled = bar < filled;
    // Only the base of an empty bar is drawn.
    const qreal height = is_filled ? std::round(tallest * (bar + 2) / (kRankBars + 1))
                                   : std::max(1.0, std::round(side / 8));
    QColor color = QColor::fromRgba(is_filled ? kColors[filled] : kEmptyBar);
    if (mode == QIcon::Selected) color = Qt::white;
    if (mode == QIcon::Disabled) color = QColor::fromRgba(kEmptyBar);
    painter.fillRect(QRectF(left + bar * step, bottom - height, width, height), color);
  }
  painter.restore();
}

/// The bottom of the bars in a place, in device pixels.
qreal BottomOf(const QRect& place, qreal side, qreal ratio) {
  return std::round((place.y() + place.height()) * ratio - side / 16);
}

class RankIconEngine : public QIconEngine {
 public:
  explicit RankIconEngine(int rank) : filled_(rank - kMinRankPicture) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
             QIcon::State /*state*/) override {
    const qreal ratio = RatioOf(*painter);
    const qreal side = std::min(rect.width(), rect.height()) * ratio;
    const qreal step = std::max(1.0, std::floor(side / kRankBars));
    const qreal left = rect.x() * ratio + std::floor((rect.width() * ratio - step * kRankBars) / 2);
    PaintBars(*painter, left, BottomOf(rect, side, ratio), side, step, filled_, mode);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, pixmap.rect(), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new RankIconEngine(*this); }

 private:
  int filled_;
};

class MarkedRankEngine : public QIconEngine {
 public:
  MarkedRankEngine(int rank, SongMark mark) : rank_(RankPicture(rank)), mark_(MarkPicture(mark)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const int of_mark = std::max(0, rect.width() - rect.height());
    const int gap = rect.height() / 8;
    mark_.paint(painter, QRect(rect.x(), rect.y(), of_mark - gap, rect.height()), Qt::AlignCenter,
                mode, state);
    rank_.paint(painter, rect.adjusted(of_mark, 0, 0, 0), Qt::AlignCenter, mode, state);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, pixmap.rect(), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new MarkedRankEngine(*this); }

 private:
  QIcon rank_;
  QIcon mark_;
};

}  // namespace

QIcon MarkedRankPicture(int rank, SongMark mark) { return QIcon(new MarkedRankEngine(rank, mark)); }

QIcon RankPicture(int rank) { return HasPicture(rank) ? QIcon(new RankIconEngine(rank)) : QIcon(); }

void PaintRankBars(QPainter& painter, const QRect& place, int rank, QIcon::Mode mode) {
  if (!HasPicture(rank)) return;
  const qreal ratio = RatioOf(painter);
  const qreal side = place.height() * ratio;
  const qreal step = std::max(1.0, std::floor(place.width() * ratio / kRankBars));
  PaintBars(painter, std::floor(place.x() * ratio), BottomOf(place, side, ratio), side, step,
            rank - kMinRankPicture, mode);
}

QString RankPictureText(int rank) {
  if (!HasPicture(rank)) return {};
  if (rank == kMinRankPicture) return QCoreApplication::translate("RankPicture", "not ranked");
  return QCoreApplication::translate("RankPicture", "rank %1 of %2")
      .arg(rank)
      .arg(kBestRankPicture);
}

}  // namespace tallow

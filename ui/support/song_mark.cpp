// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/song_mark.h"

#include <algorithm>
#include <cmath>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPolygonF>

#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// The colour of the exclamation mark, with enough contrast on white and on dark backgrounds.
constexpr QRgb kFailedColor = 0xFFD1462F;

QString Tr(const char* text) { return QCoreApplication::translate("SongMark", text); }

QColor ColorOf(SongMark mark, QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  if (mode == QIcon::Selected) return palette.color(QPalette::Active, QPalette::HighlightedText);
  return mark == SongMark::kFailed ? QColor::fromRgba(kFailedColor)
                                   : palette.color(QPalette::Active, QPalette::Text);
}

/// Draws a triangle that points to the right.
void DrawTriangle(QPainter& painter, const QRectF& area, const QColor& color, bool filled) {
  // The outline lies inside the area, so that both forms have the same size.
  const qreal line = std::max(1.0, area.height() / 8);
  const qreal inset = line / 2;
  const QRectF inner = area.adjusted(inset, inset, -inset, -inset);
  painter.setPen(QPen(color, line, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(filled ? QBrush(color) : QBrush(Qt::NoBrush));
  painter.drawPolygon(
      QPolygonF{inner.topLeft(), QPointF(inner.right(), inner.center().y()), inner.bottomLeft()});
}

/// Draws an exclamation mark.
void DrawExclamation(QPainter& painter, const QRectF& area, const QColor& color) {
  const qreal width = std::max(2.0, area.height() / 5);
  const qreal left = area.center().x() - width / 2;
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  const qreal stem = area.height() - 2 * width;
  painter.drawRoundedRect(QRectF(left, area.top(), width, stem), width / 3, width / 3);
  painter.drawEllipse(QRectF(left, area.bottom() - width, width, width));
}

class MarkIconEngine : public QIconEngine {
 public:
  explicit MarkIconEngine(SongMark mark) : mark_(mark) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
             QIcon::State /*state*/) override {
    // Whole device pixels, so that the upright edges are sharp.
    const qreal ratio = painter->device() != nullptr ? painter->device()->devicePixelRatioF() : 1;
    const auto whole = [ratio](qreal length) { return std::round(length * ratio) / ratio; };
    const qreal height = whole(rect.height() * 5.0 / 8);
    const qreal width = whole(std::min<qreal>(height * 4 / 5, rect.width()));
    const QRectF area(rect.x() + whole((rect.width() - width) / 2),
                      rect.y() + whole((rect.height() - height) / 2), width, height);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (MarkShowsPlaying(mark_))
      DrawTriangle(*painter, area, ColorOf(mark_, mode), mark_ == SongMark::kPlaying);
    else
      DrawExclamation(*painter, area, ColorOf(mark_, mode));
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, pixmap.rect(), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new MarkIconEngine(*this); }

 private:
  SongMark mark_;
};

}  // namespace

QIcon MarkPicture(SongMark mark) {
  return mark == SongMark::kNone ? QIcon() : QIcon(new MarkIconEngine(mark));
}

QString SongMarkText(SongMark mark) {
  if (mark == SongMark::kPlaying) return Tr("playing");
  return mark == SongMark::kPaused ? Tr("playing, paused") : QString();
}

QString FailureText(const std::string& reason) {
  return Tr("This song could not be played: %1").arg(DisplayText(reason));
}

}  // namespace tallow

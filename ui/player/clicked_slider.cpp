// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/clicked_slider.h"

#include <algorithm>

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

namespace tallow {
namespace {

constexpr int kHandle = 12;  ///< diameter
constexpr int kGroove = 4;   ///< height
constexpr int kHeight = 18;
constexpr int kUsualWidth = 84;
constexpr int kMinWidth = 3 * kHandle;
constexpr double kFocusWidth = 2;

/// A colour between two others.
QColor Between(const QColor& from, const QColor& to, double share) {
  const auto mix = [share](int a, int b) { return a + static_cast<int>((b - a) * share); };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

}  // namespace

ClickedSlider::ClickedSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
  setFocusPolicy(Qt::TabFocus);
}

QSize ClickedSlider::sizeHint() const { return {kUsualWidth, kHeight}; }

QSize ClickedSlider::minimumSizeHint() const { return {kMinWidth, kHeight}; }

int ClickedSlider::TrackLength() const { return std::max(0, width() - kHandle); }

bool ClickedSlider::IsMirrored() const { return layoutDirection() == Qt::RightToLeft; }

int ClickedSlider::ValueAt(int x) const {
  return QStyle::sliderValueFromPosition(minimum(), maximum(), x - kHandle / 2, TrackLength(),
                                         IsMirrored());
}

int ClickedSlider::PlaceOf(int value) const {
  return kHandle / 2 +
         QStyle::sliderPositionFromValue(minimum(), maximum(), value, TrackLength(), IsMirrored());
}

void ClickedSlider::paintEvent(QPaintEvent* /*event*/) {
  constexpr double kGrooveShare = 0.3;
  constexpr double kDisabledShare = 0.15;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  const QColor ground = palette().color(group, QPalette::Window);
  const QColor text = palette().color(QPalette::Active, QPalette::WindowText);
  const QColor filled = palette().color(group, QPalette::Highlight);
  const double middle = height() / 2.0;
  const double handle = PlaceOf(sliderPosition());
  const auto draw = [&](double from, double to, const QColor& color) {
    painter.setBrush(color);
    painter.drawRoundedRect(QRectF(from, middle - kGroove / 2.0, to - from, kGroove), kGroove / 2.0,
                            kGroove / 2.0);
  };
  draw(0, width(), Between(ground, text, isEnabled() ? kGrooveShare : kDisabledShare));
  if (!isEnabled()) return;
  draw(IsMirrored() ? handle : 0, IsMirrored() ? width() : handle, filled);
  // The focus is a ring in the colour of the text.
  painter.setBrush(filled);
  if (hasFocus()) painter.setPen(QPen(text, kFocusWidth));
  const double radius = (kHandle - (hasFocus() ? kFocusWidth : 0)) / 2.0;
  painter.drawEllipse(QPointF(handle, middle), radius, radius);
}

void ClickedSlider::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || maximum() == minimum()) return event->ignore();
  event->accept();
  setSliderDown(true);
  setSliderPosition(ValueAt(event->position().toPoint().x()));
}

void ClickedSlider::mouseMoveEvent(QMouseEvent* event) {
  if (!isSliderDown()) return event->ignore();
  event->accept();
  setSliderPosition(ValueAt(event->position().toPoint().x()));
}

void ClickedSlider::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !isSliderDown()) return event->ignore();
  event->accept();
  setSliderDown(false);
}

}  // namespace tallow

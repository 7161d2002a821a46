// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/clicked_slider.h"

#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionSlider>

namespace tallow {

ClickedSlider::ClickedSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
  setFocusPolicy(Qt::TabFocus);
}

ClickedSlider::Track ClickedSlider::TrackOfHandle() const {
  QStyleOptionSlider option;
  initStyleOption(&option);
  const QRect groove =
      style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this);
  const QRect handle =
      style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
  return {.start = groove.x() + handle.width() / 2,
          .length = groove.width() - handle.width(),
          .upside_down = option.upsideDown};
}

int ClickedSlider::ValueAt(int x) const {
  const Track track = TrackOfHandle();
  return QStyle::sliderValueFromPosition(minimum(), maximum(), x - track.start, track.length,
                                         track.upside_down);
}

int ClickedSlider::PlaceOf(int value) const {
  const Track track = TrackOfHandle();
  return track.start + QStyle::sliderPositionFromValue(minimum(), maximum(), value, track.length,
                                                       track.upside_down);
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

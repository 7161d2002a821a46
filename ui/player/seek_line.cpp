// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/seek_line.h"

#include <algorithm>

#include <QMouseEvent>
#include <QSignalBlocker>
#include <QToolTip>
#include <QWheelEvent>

#include "ui/player/time_text.h"

namespace tallow {

SeekLine::SeekLine(QWidget* parent) : ClickedSlider(parent) {
  setObjectName(QStringLiteral("sldSeek"));
  setAccessibleName(tr("Position in the song"));
  setAccessibleDescription(tr("In seconds"));
  setSingleStep(kStep);
  setPageStep(kPage);
  // The value changes only when the line is released, so the player seeks once per drag.
  setTracking(false);
  setMouseTracking(true);
  setRange(0, 0);
  setEnabled(false);
  connect(this, &QSlider::valueChanged, this, [this](int seconds) {
    emit Sought(seconds);
    emit PositionShown(seconds);
  });
  connect(this, &QSlider::sliderMoved, this, &SeekLine::PositionShown);
}

void SeekLine::ShowPosition(int position, int length) {
  if (isSliderDown()) return;
  const QSignalBlocker quiet(this);
  const bool can_seek = length > 0 && position >= 0;
  setRange(0, can_seek ? length : 0);
  setValue(can_seek ? std::clamp(position, 0, length) : 0);
  setEnabled(can_seek);
}

void SeekLine::CancelDrag() {
  if (!isSliderDown()) return;
  const QSignalBlocker quiet(this);
  setSliderDown(false);
}

void SeekLine::mouseMoveEvent(QMouseEvent* event) {
  ClickedSlider::mouseMoveEvent(event);
  if (maximum() > 0)
    QToolTip::showText(event->globalPosition().toPoint(),
                       TimeText(ValueAt(event->position().toPoint().x())), this);
}

void SeekLine::wheelEvent(QWheelEvent* event) {
  // A wheel that passes the line would otherwise seek.
  event->ignore();
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/panel_bar.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

namespace tallow {
namespace {

constexpr int kFocusWidth = 2;

}  // namespace

PanelBar::PanelBar(QWidget* parent) : QScrollBar(Qt::Horizontal, parent) {
  setFocusPolicy(Qt::StrongFocus);
  // Right, Up and Page Up increase the value, as on a slider.
  setInvertedControls(false);
  setContextMenuPolicy(Qt::NoContextMenu);
}

bool PanelBar::IsInTrough(QPoint place) const {
  QStyleOptionSlider option;
  initStyleOption(&option);
  const QStyle::SubControl hit =
      style()->hitTestComplexControl(QStyle::CC_ScrollBar, &option, place, this);
  return hit == QStyle::SC_ScrollBarAddPage || hit == QStyle::SC_ScrollBarSubPage;
}

int PanelBar::ValueAt(int x) const {
  QStyleOptionSlider option;
  initStyleOption(&option);
  const QRect groove =
      style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarGroove, this);
  const QRect thumb =
      style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
  return QStyle::sliderValueFromPosition(minimum(), maximum(), x - groove.x() - thumb.width() / 2,
                                         groove.width() - thumb.width(), option.upsideDown);
}

void PanelBar::mousePressEvent(QMouseEvent* event) {
  const QPoint place = event->position().toPoint();
  // The press is then one on the thumb, which follows the pointer until the release.
  if (event->button() == Qt::LeftButton && IsInTrough(place)) setSliderPosition(ValueAt(place.x()));
  QScrollBar::mousePressEvent(event);
}

void PanelBar::paintEvent(QPaintEvent* event) {
  QScrollBar::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  painter.setPen(QPen(palette().color(QPalette::Highlight), kFocusWidth));
  painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

}  // namespace tallow

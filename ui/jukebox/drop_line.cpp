// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/drop_line.h"

#include <algorithm>

#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QTableView>

namespace tallow {
namespace {

/// Height of the line, in pixels.
constexpr int kThickness = 2;

/// How often a list is scrolled while the pointer is near its edge, in ms.
constexpr int kScrollInterval = 80;

}  // namespace

DropLine::DropLine(QTableView& list) : QWidget(list.viewport()), list_(list) {
  setObjectName(QStringLiteral("DropLine"));
  setAttribute(Qt::WA_TransparentForMouseEvents);
  scrolling_.setInterval(kScrollInterval);
  connect(&scrolling_, &QTimer::timeout, this, &DropLine::Scroll);
  list.viewport()->installEventFilter(this);
  hide();
}

int DropLine::RowAt(const QPoint& position) const {
  const int row = list_.rowAt(position.y());
  if (row < 0) return list_.model()->rowCount();
  const int middle = list_.rowViewportPosition(row) + list_.rowHeight(row) / 2;
  return position.y() < middle ? row : row + 1;
}

void DropLine::ShowAt(const QPoint& position) {
  position_ = position;
  Place();
  show();
  raise();
  if (!scrolling_.isActive()) scrolling_.start();
}

void DropLine::Hide() {
  scrolling_.stop();
  hide();
}

void DropLine::Place() {
  const int row = RowAt(position_);
  int y = 0;
  if (row < list_.model()->rowCount())
    y = list_.rowViewportPosition(row);
  else if (row > 0)
    y = list_.rowViewportPosition(row - 1) + list_.rowHeight(row - 1);
  setGeometry(0, std::max(0, y - kThickness / 2), list_.viewport()->width(), kThickness);
}

void DropLine::Scroll() {
  QScrollBar& bar = *list_.verticalScrollBar();
  const int edge = list_.verticalHeader()->defaultSectionSize();
  if (position_.y() < edge) bar.setValue(bar.value() - bar.singleStep());
  if (position_.y() > list_.viewport()->height() - edge)
    bar.setValue(bar.value() + bar.singleStep());
  Place();
}

bool DropLine::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::DragLeave || event->type() == QEvent::Drop) Hide();
  return QWidget::eventFilter(watched, event);
}

void DropLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).fillRect(rect(), palette().color(QPalette::Highlight));
}

}  // namespace tallow

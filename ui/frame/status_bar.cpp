// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/status_bar.h"

#include <algorithm>

#include <QHelpEvent>
#include <QSizeGrip>
#include <QStyleOption>
#include <QStylePainter>
#include <QToolTip>

namespace tallow {
namespace {

/// Distances of the message from the edges of the bar and from a widget, in pixels, as QStatusBar
/// has them.
constexpr int kLeft = 6;
constexpr int kRight = 12;
constexpr int kGap = 2;

}  // namespace

void StatusBar::ShowMessage(const QString& text, const QString& end) {
  end_ = end;
  showMessage(text + end);
}

QRect StatusBar::MessageRect() const {
  int right = width() - kRight;
  for (const QWidget* const child : findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
    if (child->isVisible()) right = std::min(right, child->x() - kGap);
  return {kLeft, 0, std::max(right - kLeft, 0), height()};
}

QString StatusBar::ShownText() const {
  QString text = currentMessage();
  const QFontMetrics metrics = fontMetrics();
  const int width = MessageRect().width();
  if (metrics.horizontalAdvance(text) <= width) return text;
  const QString end = text.endsWith(end_) ? end_ : QString();
  return metrics.elidedText(text.chopped(end.size()), Qt::ElideRight,
                            std::max(width - metrics.horizontalAdvance(end), 0)) +
         end;
}

bool StatusBar::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || !toolTip().isEmpty() || ShownText() == currentMessage())
    return QStatusBar::event(event);
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), currentMessage(), this);
  return true;
}

void StatusBar::paintEvent(QPaintEvent* event) {
  const QString text = ShownText();
  if (text == currentMessage()) return QStatusBar::paintEvent(event);
  // As QStatusBar does it, but for the text.
  QStylePainter painter(this);
  QStyleOption option;
  option.initFrom(this);
  painter.drawPrimitive(QStyle::PE_PanelStatusBar, option);
  for (const QWidget* const child : findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    if (!child->isVisible() || qobject_cast<const QSizeGrip*>(child) != nullptr) continue;
    option.rect = child->geometry().adjusted(-2, -1, 2, 1);
    painter.drawPrimitive(QStyle::PE_FrameStatusBarItem, option);
  }
  painter.setPen(palette().windowText().color());
  painter.drawText(MessageRect(), Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine, text);
}

}  // namespace tallow

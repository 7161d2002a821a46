// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/elided_label.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

namespace tallow {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void ElidedLabel::ShowText(const QString& text) {
  if (text == this->text()) return;
  setText(text);
  setAccessibleName(text);
  SetTip();
}

QString ElidedLabel::ShownText() const {
  // A line break would end the line.
  return fontMetrics().elidedText(text().simplified(), Qt::ElideMiddle, contentsRect().width());
}

QSize ElidedLabel::minimumSizeHint() const { return {1, QLabel::minimumSizeHint().height()}; }

void ElidedLabel::SetTip() {
  const QString whole = text();
  // As plain text: a name may look like HTML.
  setToolTip(ShownText() == whole ? QString() : whole.toHtmlEscaped());
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  style()->drawItemText(&painter, contentsRect(),
                        static_cast<int>(Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine),
                        palette(), isEnabled(), ShownText(), foregroundRole());
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  SetTip();
}

void ElidedLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::FontChange) SetTip();
}

}  // namespace tallow

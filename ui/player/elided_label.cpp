// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/elided_label.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

#include "ui/player/tool_tip_text.h"

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

QSize ElidedLabel::sizeHint() const {
  return {QLabel::sizeHint().width(), minimumSizeHint().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
  // Accents on capital letters reach above the height of some fonts.
  constexpr int kAccents = 2;
  return {1, fontMetrics().height() + 2 * kAccents};
}

void ElidedLabel::SetTip() {
  const QString whole = text();
  setToolTip(ShownText() == whole ? QString() : ToolTipText(whole));
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

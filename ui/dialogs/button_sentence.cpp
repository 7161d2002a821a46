// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/button_sentence.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMouseEvent>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>

namespace tallow {
namespace {

class ButtonSentence : public QLabel {
 public:
  ButtonSentence(const QString& text, QAbstractButton& button)
      : QLabel(text, button.parentWidget()), button_(button) {
    setWordWrap(true);
    setTextFormat(Qt::PlainText);
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override { event->accept(); }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint())) return;
    button_.setFocus(Qt::MouseFocusReason);
    button_.click();
  }

 private:
  QAbstractButton& button_;
};

/// The width of a button's indicator with the gap behind it, in pixels.
int IndentBelow(const QAbstractButton& button) {
  const bool is_radio = qobject_cast<const QRadioButton*>(&button) != nullptr;
  const QStyle& style = *button.style();
  return style.pixelMetric(
             is_radio ? QStyle::PM_ExclusiveIndicatorWidth : QStyle::PM_IndicatorWidth, nullptr,
             &button) +
         style.pixelMetric(
             is_radio ? QStyle::PM_RadioButtonLabelSpacing : QStyle::PM_CheckBoxLabelSpacing,
             nullptr, &button);
}

}  // namespace

void AddButtonSentence(QVBoxLayout& layout, QAbstractButton& button, const QString& sentence) {
  button.setAccessibleDescription(sentence);
  auto* const label = new ButtonSentence(sentence, button);
  label->setContentsMargins(IndentBelow(button), 0, 0, 0);
  layout.addWidget(label);
}

}  // namespace tallow

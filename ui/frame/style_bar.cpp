// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/style_bar.h"

#include <QApplication>
#include <QBoxLayout>
#include <QEvent>
#include <QLabel>
#include <QPushButton>

namespace tallow {
namespace {

/// The text is at least this wide beside the buttons, in average characters.
constexpr int kTextCharacters = 50;

constexpr int kMargin = 6;

}  // namespace

StyleBar::StyleBar(QWidget* parent)
    : QFrame(parent), text_(new QLabel(this)), buttons_(new QWidget(this)) {
  setObjectName(QStringLiteral("StyleBar"));
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  // The colours of short hints, which differ from those of the jukebox windows in every theme.
  setBackgroundRole(QPalette::ToolTipBase);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  text_->setObjectName(QStringLiteral("lblStyleBar"));
  text_->setForegroundRole(QPalette::ToolTipText);
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(true);
  // The bar must not widen the window.
  text_->setMinimumWidth(1);
  auto* const row = new QHBoxLayout(buttons_);
  row->setContentsMargins(0, 0, 0, 0);
  QPushButton* const use =
      AddButton(QStringLiteral("cmdUseModernStyle"), tr("&Use Modern Style"),
                tr("Reads newer tags and other formats, and keeps songs of one file name apart"));
  QPushButton* const details = AddButton(QStringLiteral("cmdStyleDetails"), tr("&Details"),
                                         tr("Lists these songs and files"));
  QPushButton* const not_now = AddButton(QStringLiteral("cmdNotNow"), tr("&Not Now"),
                                         tr("Hides this bar until there is more to tell"));
  row->addStretch(1);
  connect(use, &QPushButton::clicked, this, &StyleBar::UseModernStyle);
  connect(details, &QPushButton::clicked, this, &StyleBar::ShowDetails);
  connect(not_now, &QPushButton::clicked, this, &StyleBar::NotNow);
  layout_ = new QBoxLayout(QBoxLayout::LeftToRight, this);
  layout_->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout_->addWidget(text_, 1);
  layout_->addWidget(buttons_, 0);
}

QPushButton* StyleBar::AddButton(const QString& name, const QString& caption,
                                 const QString& description) {
  auto* const button = new QPushButton(caption, buttons_);
  button->setObjectName(name);
  button->setFocusPolicy(Qt::TabFocus);
  button->setToolTip(description);
  button->setAccessibleDescription(description);
  buttons_->layout()->addWidget(button);
  return button;
}

void StyleBar::SetText(const QString& text) {
  if (text_->text() == text) return;
  text_->setText(text);
  setAccessibleName(text);
}

bool StyleBar::HasFocus() const {
  const QWidget* const focus = QApplication::focusWidget();
  return focus != nullptr && isAncestorOf(focus);
}

void StyleBar::Arrange() {
  const int beside =
      buttons_->sizeHint().width() + kTextCharacters * fontMetrics().averageCharWidth();
  const auto direction = width() < beside ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
  if (layout_->direction() != direction) layout_->setDirection(direction);
}

void StyleBar::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  Arrange();
}

void StyleBar::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::FontChange) Arrange();
}

}  // namespace tallow

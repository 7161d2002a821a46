// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/command_page.h"

#include <utility>

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tallow {

CommandPage::CommandPage(const QString& sentence, const char* name, const QString& caption,
                         std::function<void()> command, QWidget* parent)
    : QWidget(parent) {
  auto* const layout = new QVBoxLayout(this);
  auto* const label = new QLabel(sentence, this);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  layout->addWidget(label);
  auto* const button = new QPushButton(caption, this);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  button->setAccessibleDescription(sentence);
  layout->addWidget(button, 0, Qt::AlignLeft);
  layout->addStretch(1);
  connect(button, &QPushButton::clicked, this, std::move(command));
}

}  // namespace tallow

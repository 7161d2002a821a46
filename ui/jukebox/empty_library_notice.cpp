// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/empty_library_notice.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tallow {

EmptyLibraryNotice::EmptyLibraryNotice(QAbstractScrollArea& list)
    : QWidget(list.viewport()), text_(new QLabel(this)) {
  setObjectName(QStringLiteral("EmptyLibrary"));
  text_->setObjectName(QStringLiteral("lblEmptyLibrary"));
  text_->setWordWrap(true);
  text_->setTextFormat(Qt::PlainText);
  text_->setAlignment(Qt::AlignCenter);
  auto* const button = new QPushButton(tr("Where My &Music Is..."), this);
  button->setObjectName(QStringLiteral("cmdWhereMyMusicIs"));
  button->setAutoDefault(true);
  button->setAccessibleDescription(tr("Chooses the places that are searched for songs"));
  connect(button, &QPushButton::clicked, this, &EmptyLibraryNotice::WhereMyMusicIs);
  auto* const layout = new QVBoxLayout(this);
  layout->addStretch(1);
  layout->addWidget(text_);
  layout->addSpacing(fontMetrics().lineSpacing() / 2);
  layout->addWidget(button, 0, Qt::AlignHCenter);
  layout->addStretch(1);
  list.viewport()->installEventFilter(this);
  hide();
}

void EmptyLibraryNotice::ShowText(const QString& text) {
  text_->setText(text);
  setGeometry(parentWidget()->rect());
  setVisible(!text.isEmpty());
}

bool EmptyLibraryNotice::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
  return QWidget::eventFilter(watched, event);
}

}  // namespace tallow

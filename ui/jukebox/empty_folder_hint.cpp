// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/empty_folder_hint.h"

#include <QAbstractScrollArea>
#include <QEvent>

namespace tallow {

EmptyFolderHint::EmptyFolderHint(QAbstractScrollArea& list) : QLabel(list.viewport()) {
  setObjectName(QStringLiteral("lblEmptyFolder"));
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setWordWrap(true);
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
  setMargin(2 * fontMetrics().averageCharWidth());
  list.viewport()->installEventFilter(this);
  hide();
}

void EmptyFolderHint::ShowText(const QString& text) {
  setText(text);
  Fill();
  setVisible(!text.isEmpty());
}

void EmptyFolderHint::Fill() { setGeometry(parentWidget()->rect()); }

bool EmptyFolderHint::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) Fill();
  return QLabel::eventFilter(watched, event);
}

}  // namespace tallow

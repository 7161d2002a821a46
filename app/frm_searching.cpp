// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frm_searching.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace tallow {

frmSearching::frmSearching(QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      label_(new QLabel(QStringLiteral("Searching to add new songs  . . . "), this)) {
  setObjectName(QStringLiteral("frmSearching"));
  setWindowTitle(tr("Tallow"));
  label_->setObjectName(QStringLiteral("Label1"));
  label_->setTextFormat(Qt::PlainText);
  constexpr int kMargin = 36;
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addWidget(label_, 0, Qt::AlignCenter);
}

void frmSearching::Load() {
  adjustSize();
  const QRect screen = QGuiApplication::primaryScreen()->geometry();
  move(screen.x() + (screen.width() - width()) / 2, screen.y() + (screen.height() - height()) / 2);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_sums.h"

#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStatusBar>

#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"

namespace tallow {
namespace {

/// The space that separates the text from what is left of it in the status bar, in pixels.
int SpaceBefore(const QLabel& text) { return 3 * text.fontMetrics().averageCharWidth(); }

}  // namespace

FrameSums::FrameSums(QStatusBar& status, JukeboxArea& jukeboxes)
    : jukeboxes_(jukeboxes), text_(new QLabel(&status)) {
  text_->setObjectName(QStringLiteral("lblSongs"));
  text_->setTextFormat(Qt::PlainText);
  text_->setContentsMargins(SpaceBefore(*text_), 0, 0, 0);
  text_->hide();
  status.addPermanentWidget(text_);
  QObject::connect(&jukeboxes.Area(), &QMdiArea::subWindowActivated, &context_,
                   [this] { Update(); });
}

void FrameSums::Follow(frmMain& window) {
  QObject::connect(&window, &frmMain::SumsChanged, &context_, [this] { Update(); });
}

void FrameSums::Update() {
  const frmMain* const window = jukeboxes_.ActiveWindow();
  const QString text = window != nullptr ? window->SumsText() : QString();
  text_->setText(text);
  text_->setVisible(!text.isEmpty());
}

}  // namespace tallow

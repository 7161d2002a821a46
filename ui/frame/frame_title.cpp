// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_title.h"

#include <utility>

#include <QCoreApplication>
#include <QWidget>

#include "ui/support/display_text.h"

namespace tallow {

FrameTitle::FrameTitle(QWidget& frame, PlayerModel& model) : frame_(frame), model_(model) {
  model_.AddListener(*this);
  PlayingChanged({}, model_.Now());
}

FrameTitle::~FrameTitle() { model_.RemoveListener(*this); }

void FrameTitle::PlayingChanged(const Playing& /*before*/, const Playing& now) {
  QString title = QCoreApplication::translate("FrameTitle", "Tallow");
  if (now.song != 0 && now.status == kPlaying) {
    // Qt replaces "[*]" in titles, and shows "[*][*]" as "[*]".
    const QString song =
        DisplayText(model_.TextOf(now.song)).replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
    if (!song.isEmpty()) title = song + QLatin1String(" - ") + title;
  }
  if (std::exchange(shown_, title) != title) frame_.setWindowTitle(title);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_player_bar.h"

#include <cstdint>
#include <utility>

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QShortcut>
#include <QToolBar>

#include "app/tallow.h"
#include "ui/frame/frame_player.h"
#include "ui/player/player_bar.h"
#include "ui/support/help_page.h"

namespace tallow {

FramePlayerBar::FramePlayerBar(QMainWindow& frame, Tallow& tallow, FramePlayer& player,
                               std::function<void()> focus_songs)
    : preferences_(tallow.preferences),
      focus_songs_(std::move(focus_songs)),
      area_(new QToolBar(tr("Player Bar"), &frame)),
      bar_(new PlayerBar(
          player.Model(), [&tallow](std::int32_t song) { return tallow.library.Song(song).Path(); },
          tallow.details.CoverReader(), area_)) {
  // A toolbar spans the window below docks, too.
  area_->setObjectName(QStringLiteral("PlayerBarArea"));
  area_->setMovable(false);
  area_->setFloatable(false);
  area_->setAllowedAreas(Qt::BottomToolBarArea);
  area_->addWidget(bar_);
  bar_->setProperty(kHelpPage, QStringLiteral("playing"));
  frame.addToolBar(Qt::BottomToolBarArea, area_);
  auto* const key = new QShortcut(QKeySequence(Qt::Key_F6), &frame);
  connect(key, &QShortcut::activated, this, &FramePlayerBar::GoToBarOrBack);
  connect(bar_, &PlayerBar::Left, this, &FramePlayerBar::GoBack);
  connect(bar_, &PlayerBar::PlayWhileStopped, this, [&player] { player.PlayOrPause(); });
  frame.installEventFilter(this);
  Follow();
}

// Before the model, which the bar follows; the frame would delete it after that.
FramePlayerBar::~FramePlayerBar() { delete area_; }

bool FramePlayerBar::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show) Follow();
  return QObject::eventFilter(watched, event);
}

void FramePlayerBar::SetItem(QAction& item) {
  item_ = &item;
  item.setCheckable(true);
  Follow();
}

void FramePlayerBar::Toggle() {
  preferences_.SetShowsBar(!preferences_.ShowsBar());
  Follow();
}

void FramePlayerBar::Follow() {
  const bool is_on = preferences_.ShowsBar();
  if (item_ != nullptr) item_->setChecked(is_on);
  if (!is_on && bar_->HasFocus()) GoBack();
  area_->setVisible(is_on);
}

void FramePlayerBar::GoToBarOrBack() {
  if (bar_->HasFocus()) return GoBack();
  if (!area_->isVisible()) return;
  before_ = QApplication::focusWidget();
  bar_->TakeFocus();
}

void FramePlayerBar::GoBack() {
  if (before_ != nullptr && before_->isVisible())
    before_->setFocus(Qt::ShortcutFocusReason);
  else
    focus_songs_();
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_queue.h"

#include <cstdint>
#include <vector>

#include <QAction>
#include <QDockWidget>
#include <QEvent>
#include <QMainWindow>

#include "app/playing/playing_preferences.h"
#include "app/tallow.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/player/queue_pane.h"
#include "ui/player/queue_view.h"
#include "ui/support/help_page.h"

namespace tallow {
namespace {

/// The text of a new folder of the queue's songs.
constexpr const char* kQueueFolder = "Queue";

}  // namespace

FrameQueue::FrameQueue(QMainWindow& frame, Tallow& tallow, JukeboxArea& jukeboxes,
                       FrameMessages& messages, PlayerModel& player)
    : frame_(frame),
      tallow_(tallow),
      jukeboxes_(jukeboxes),
      messages_(messages),
      player_(player),
      dock_(new QDockWidget(tr("Queue"), &frame)),
      pane_(new QueuePane(player, dock_)) {
  // The window state knows the dock by this name.
  dock_->setObjectName(QStringLiteral("QueueDock"));
  dock_->setProperty(kHelpPage, QStringLiteral("playing"));
  dock_->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
  dock_->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
  dock_->setWidget(pane_);
  frame.addDockWidget(Qt::RightDockWidgetArea, dock_);
  dock_->hide();
  dock_->installEventFilter(this);
  frame.installEventFilter(this);
  connect(pane_, &QueuePane::SaveAsFolder, this, &FrameQueue::SaveAsFolder);
}

FrameQueue::~FrameQueue() { delete dock_; }

void FrameQueue::SetItem(QAction& item) {
  item_ = &item;
  item.setCheckable(true);
  item.setChecked(IsShown());
}

bool FrameQueue::IsShown() const { return !dock_->isHidden(); }

void FrameQueue::FollowPreferences() {
  ShowDock(PlayingPreferences(tallow_.preferences).ShowsQueue());
}

void FrameQueue::Show(bool on) {
  ShowDock(on);
  PlayingPreferences preferences(tallow_.preferences);
  if (preferences.ShowsQueue() != on) preferences.SetShowsQueue(on);
  if (on) pane_->View().setFocus();
}

void FrameQueue::ShowDock(bool on) {
  dock_->setVisible(on);
  if (item_ != nullptr) item_->setChecked(on);
}

bool FrameQueue::eventFilter(QObject* watched, QEvent* event) {
  // The preferences are loaded after the frame was made.
  if (watched == &frame_ && event->type() == QEvent::Show) FollowPreferences();
  // The button in the title of the dock. The event then hides the dock.
  if (watched == dock_ && event->type() == QEvent::Close && frame_.isVisible()) Show(false);
  return QObject::eventFilter(watched, event);
}

void FrameQueue::SaveAsFolder() {
  frmMain* const window = jukeboxes_.ActiveWindow();
  if (window == nullptr)
    return messages_.ShowStatus("No jukebox is open. Open one, or make a new one, and try again.");
  std::vector<SongEntry> songs;
  for (const std::int32_t song : player_.SongsOfQueue())
    songs.emplace_back(song, tallow_.library.Song(song).Rank());
  if (songs.empty()) return messages_.ShowStatus("The queue has no songs that Tallow knows.");
  jukeboxes_.Activate(*window);
  window->PVExplorer1().AddFolderOf(kQueueFolder, songs);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_queue.h"

#include <cstdint>
#include <vector>

#include <QAction>
#include <QDockWidget>
#include <QDropEvent>
#include <QEvent>
#include <QMainWindow>
#include <QMdiArea>
#include <QTimer>

#include "app/play_commands.h"
#include "app/playing/playing_preferences.h"
#include "app/tallow.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/explorer_drag.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/player/queue_pane.h"
#include "ui/player/queue_view.h"
#include "ui/support/help_page.h"

namespace tallow {
namespace {

/// The text of a new folder of the queue's songs.
constexpr const char* kQueueFolder = "Queue";

/// The jukeboxes keep this width beside the dock, in average characters.
constexpr int kMinJukeboxCharacters = 54;

/// The songs of a list that an event drags; null if it drags something else.
const ExplorerDrag* SongsIn(const QDropEvent& event) {
  const auto* const drag = qobject_cast<const ExplorerDrag*>(event.mimeData());
  return drag != nullptr && drag->IsSongs() && drag->Source() != nullptr ? drag : nullptr;
}

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
  QMdiArea& area = jukeboxes.Area();
  area.setMinimumWidth(kMinJukeboxCharacters * area.fontMetrics().averageCharWidth());
  frame.addDockWidget(Qt::RightDockWidgetArea, dock_);
  dock_->hide();
  dock_->installEventFilter(this);
  frame.installEventFilter(this);
  connect(pane_, &QueuePane::SaveAsFolder, this, &FrameQueue::SaveAsFolder);
  connect(&pane_->View(), &QueueView::DragsOver, this, [](QDropEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(SongsIn(*event) != nullptr);
  });
  connect(&pane_->View(), &QueueView::Dropped, this,
          [this](QDropEvent* event) { SongsDropped(*event); });
}

FrameQueue::~FrameQueue() { delete dock_; }

void FrameQueue::SetItem(QAction& item) {
  item_ = &item;
  item.setCheckable(true);
  item.setChecked(IsShown());
}

bool FrameQueue::IsShown() const { return !dock_->isHidden(); }

void FrameQueue::FollowPreferences() {
  pane_->View().SetSpacePauses(PlayingPreferences(tallow_.preferences).PlaysOn());
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

void FrameQueue::SongsDropped(QDropEvent& event) {
  const ExplorerDrag* const drag = SongsIn(event);
  if (drag == nullptr || !add_songs_) return;
  const Folder& folder = drag->From();
  SongsOrigin origin;
  for (const Jukebox* const jukebox : jukeboxes_.Open())
    if (jukebox->Nodes().FindKey(folder.Key()) == &folder) origin = {jukebox, folder.Key()};
  // The drag grabs the mouse, so a message box that adding shows would be unusable before it ends.
  QTimer::singleShot(0, this, [this, songs = SongsOf(folder, drag->Rows()), origin] {
    add_songs_(songs, origin);
  });
}

}  // namespace tallow

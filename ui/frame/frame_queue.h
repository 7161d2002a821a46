// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include <QObject>

#include "app/playing/player_model.h"

class QAction;
class QDockWidget;
class QDropEvent;
class QMainWindow;

namespace tallow {

class FrameMessages;
class JukeboxArea;
class QueuePane;
class Tallow;

/// The dock "Queue" of the frame window, at its left or right side. Whether it is shown is a
/// preference; its side and width belong to the window state.
class FrameQueue : public QObject {
  Q_OBJECT

 public:
  /// \param frame, tallow, jukeboxes, messages, player have to outlive this object
  FrameQueue(QMainWindow& frame, Tallow& tallow, JukeboxArea& jukeboxes, FrameMessages& messages,
             PlayerModel& player);
  /// Removes the dock, because the frame destroys its child widgets after the player.
  ~FrameQueue() override;

  /// Sets the function that adds songs that are dropped on the queue.
  using AddSongs = std::function<void(std::vector<std::int32_t> songs, SongsOrigin origin)>;
  void OnSongsDropped(AddSongs add) { add_songs_ = std::move(add); }

  /// Sets the item of the menu that shows and hides the dock; it gets a check mark.
  void SetItem(QAction& item);
  /// Call after the window state was restored, or the preferences have changed: shows or hides the
  /// dock by the preference.
  void FollowPreferences();
  /// Shows or hides the dock, and stores that.
  void Show(bool on);
  /// Shows the dock when it is hidden, and hides it when it is shown.
  void Toggle() { Show(!IsShown()); }
  bool IsShown() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowDock(bool on);
  void SaveAsFolder();
  void SongsDropped(QDropEvent& event);

  QMainWindow& frame_;
  Tallow& tallow_;
  JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
  PlayerModel& player_;
  QDockWidget* dock_;
  QueuePane* pane_;
  AddSongs add_songs_;
  QAction* item_ = nullptr;  ///< null until SetItem
};

}  // namespace tallow

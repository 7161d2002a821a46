// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <QObject>
#include <QPointer>

#include "app/playing/playing_preferences.h"

class QAction;
class QMainWindow;
class QToolBar;
class QWidget;

namespace tallow {

class FramePlayer;
class PlayerBar;
class Tallow;

/// The player bar in the frame window: along its bottom, above the status bar. It is shown when the
/// preferences say so, which follow the style until the user turns it on or off.
class FramePlayerBar : public QObject {
  Q_OBJECT

 public:
  /// The parameters have to outlive this object.
  /// \param player      plays the selected songs when there is nothing to go on with
  /// \param focus_songs gives the keyboard focus to the active jukebox
  FramePlayerBar(QMainWindow& frame, Tallow& tallow, FramePlayer& player,
                 std::function<void()> focus_songs);
  FramePlayerBar(const FramePlayerBar&) = delete;
  FramePlayerBar& operator=(const FramePlayerBar&) = delete;
  ~FramePlayerBar() override;

  /// Makes a menu item show whether the bar is on.
  void SetItem(QAction& item);
  /// Turns the bar on or off. What plays goes on.
  void Toggle();
  /// Shows or hides the bar as the preferences say now.
  void Follow();

 protected:
  /// Follows when the frame is shown: the preferences are loaded after it was made.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// Gives the keyboard focus to the bar, or back to where it was.
  void GoToBarOrBack();
  void GoBack();

  PlayingPreferences preferences_;
  std::function<void()> focus_songs_;
  QToolBar* area_;
  PlayerBar* bar_;
  QPointer<QAction> item_;
  QPointer<QWidget> before_;  ///< where the focus was before the key went to the bar
};

}  // namespace tallow

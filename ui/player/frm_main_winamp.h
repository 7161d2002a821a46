// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <utility>

#include <QWidget>

#include "app/long_work.h"
#include "app/playing/player_model.h"
#include "player/playfile.h"
#include "util/message.h"

class QLabel;
class QPushButton;
class QScrollBar;
class QTimer;

namespace tallow {

class ElidedLabel;
class SystemPlayerModel;

/// The player panel: shows and controls the player while songs play. Opening the panel starts the
/// player; closing the panel closes the player. The model of the player says which song plays.
class frmMainWinamp : public QWidget, private HandOffPanel, private PlayerListener {
  Q_OBJECT

 public:
  /// \param player, model must outlive the window
  frmMainWinamp(WinAMP_Control& player, SystemPlayerModel& model, ShowMessage show,
                QWidget* parent = nullptr);
  ~frmMainWinamp() override;

  /// Plays the songs in SongsToPlay. The first call opens the player; if that fails, the next call
  /// tries again.
  /// \returns whether the player is open
  bool Play();
  /// Opens the player without changing what it plays.
  /// \returns whether the player is open
  bool ShowPlayer();

  /// Sets the callback that shows progress while many songs are handed over.
  void OnLongWork(BeginLongWork begin) { begin_work_ = std::move(begin); }

  /// Hands the songs in SongsToPlay over to the running player, or starts a player first.
  void Playstuff();

 signals:
  /// A message that the user should read and that does not interrupt playing.
  void StatusMessage(const QString& text);
  /// The panel closes, and will close the player.
  void Closing();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  bool Open();
  void SetUpPlayer();
  void PlayerFound() override;
  void TrackStarted(std::int32_t length) override;
  void HandedOver() override;
  void PlayingChanged(const Playing& before, const Playing& now) override;
  void VolumeChanged() override;

  void SetUpBars();
  void SetUpTrackBar();
  void ClickPlayPause();
  void UserScrolls();
  void TrackBarChanged(int seconds);
  void Update();
  void FitTrackBar(int length);
  void ShowPosition(int position, int length);
  void ShowStatus(const QString& status);
  void ShowTimes(int position);

  WinAMP_Control& player_;
  SystemPlayerModel& model_;
  ShowMessage show_;
  BeginLongWork begin_work_;
  bool opened_ = false;  ///< whether the player was found and set up
  /// The player that has received the volume and balance and whose version is in the title; 0 for
  /// none.
  PlayerHandle set_up_ = 0;
  bool UserIsScrolling = false;  ///< whether the user is dragging the position bar

  QPushButton* cmdPlayPause;
  QScrollBar* hscrlTrackPos;
  QScrollBar* hscrlVolume;
  QScrollBar* hscrlBalance;
  ElidedLabel* lblSong;
  QLabel* lblStatus;
  QLabel* times_;
  QTimer* tmrScrollUpdate;
};

}  // namespace tallow

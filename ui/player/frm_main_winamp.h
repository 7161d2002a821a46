// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <utility>

#include <QWidget>

#include "app/long_work.h"
#include "player/playfile.h"
#include "util/message.h"

class QLabel;
class QPushButton;
class QScrollBar;
class QTimer;

namespace tallow {

class Tallow;

/// The player panel: shows and controls the player while songs play. Opening the panel starts the
/// player; closing the panel closes the player.
class frmMainWinamp : public QWidget, private HandOffPanel {
  Q_OBJECT

 public:
  /// \param tallow, player must outlive the window
  frmMainWinamp(Tallow& tallow, WinAMP_Control& player, ShowMessage show,
                QWidget* parent = nullptr);

  /// Plays the songs in SongsToPlay. The first call opens the player; if that fails, the next call
  /// tries again.
  /// \returns whether the player is open
  bool Play();

  /// Sets the callback that shows progress while many songs are handed over.
  void OnLongWork(BeginLongWork begin) { begin_work_ = std::move(begin); }

  /// Hands the songs in SongsToPlay over to the running player, or starts a player first.
  void Playstuff();

 signals:
  /// A message that the user should read and that does not interrupt playing.
  void StatusMessage(const QString& text);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void Open();
  void SetUpPlayer();
  void PlayerFound() override;
  void FirstSongIsGone(const std::string& path) override;
  void TrackStarted(std::int32_t length) override;
  void HandedOver() override;
  void Cancelled(std::size_t songs, std::size_t of) override;
  void DiskTimedOut(std::size_t songs, const std::string& first) override;

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

  Tallow& tallow_;
  WinAMP_Control& player_;
  ShowMessage show_;
  BeginLongWork begin_work_;
  std::unique_ptr<LongWork> work_;  ///< while songs are handed over
  bool opened_ = false;             ///< whether the player was found and set up
  /// The player that has received the volume and balance and whose version is in the title; 0 for
  /// none.
  PlayerHandle set_up_ = 0;
  bool UserIsScrolling = false;  ///< whether the user is dragging the position bar

  QPushButton* cmdPlayPause;
  QScrollBar* hscrlTrackPos;
  QScrollBar* hscrlVolume;
  QScrollBar* hscrlBalance;
  QLabel* lblStatus;
  QLabel* times_;
  QTimer* tmrScrollUpdate;
};

}  // namespace tallow

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

/// The player panel: shows and steers the player while songs play. Opening it starts the player;
/// closing it closes the player.
class frmMainWinamp : public QWidget, private HandOffPanel {
  Q_OBJECT

 public:
  /// \param tallow, player have to outlive the window
  frmMainWinamp(Tallow& tallow, WinAMP_Control& player, ShowMessage show,
                QWidget* parent = nullptr);

  /// Plays what lies in SongsToPlay. The first time this opens the player; as long as that fails,
  /// each time.
  /// \returns whether the player was opened, now or before
  bool Play();

  /// Sets how handing over many songs is shown.
  void OnLongWork(BeginLongWork begin) { begin_work_ = std::move(begin); }

  /// Hands the songs in SongsToPlay over to the player that runs, or is started for it.
  void Playstuff();

 signals:
  /// Something that the user should read, but that stops nothing.
  void Said(const QString& text);

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
  void DoNotAnswer(std::size_t songs, const std::string& first) override;

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
  bool opened_ = false;             ///< the player was found and set up
  /// The player that the title names and that has the volume and balance.
  PlayerHandle set_up_ = 0;
  bool UserIsScrolling = false;  ///< the user has hold of the position bar

  QPushButton* cmdPlayPause;
  QScrollBar* hscrlTrackPos;
  QScrollBar* hscrlVolume;
  QScrollBar* hscrlBalance;
  QLabel* lblStatus;
  QLabel* times_;
  QTimer* tmrScrollUpdate;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <QWidget>

#include "app/playing/player_model.h"
#include "ui/player/cover_loader.h"

class QLabel;

namespace tallow {

class BarButton;
class CoverView;
class ElidedLabel;
class RepeatButton;
class SeekLine;
class VolumeControl;

/// The player bar: shows what plays, and controls the player. From left to right: the cover;
/// previous, play or pause, next; title and artist above the line to seek in, with the time gone
/// and the time left; shuffle, repeat, mute, volume.
///
/// Where the bar is too narrow for all, parts are hidden in this order: the slider of the volume,
/// the cover, the times, shuffle and repeat. Its parts can be reached by Tab, but a click gives
/// them no focus, so that the keys stay with the list.
class PlayerBar : public QWidget, private PlayerListener {
  Q_OBJECT

 public:
  /// The path of a song by its record number; empty when there is none.
  using PathOf = std::function<std::string(std::int32_t song)>;

  /// \param model must outlive the bar
  PlayerBar(PlayerModel& model, PathOf path_of, CoverLoader::Read read_cover, QWidget* parent);
  PlayerBar(const PlayerBar&) = delete;
  PlayerBar& operator=(const PlayerBar&) = delete;
  ~PlayerBar() override;

  /// Whether a part of the bar has the keyboard focus.
  bool HasFocus() const;
  /// Gives the keyboard focus to the button that plays.
  void TakeFocus();

  QSize minimumSizeHint() const override;

 signals:
  /// Play was chosen while nothing plays or is paused: there may be no player, or no song for it.
  void PlayWhileStopped();
  /// Esc was pressed in the bar.
  void Left();

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void PlayingChanged(const Playing& before, const Playing& now) override;

  QLabel* NewTime(const char* name, const QString& label);
  void Connect();
  void Arrange();
  void Fit();
  void ShowAll();
  void ShowSong();
  void ShowButtons();
  void ShowPosition();
  void ShowTimes(int position);

  PlayerModel& model_;
  PathOf path_of_;
  CoverView* cover_;
  BarButton* previous_;
  BarButton* play_;
  BarButton* next_;
  ElidedLabel* song_;
  QLabel* gone_;
  SeekLine* seek_;
  QLabel* left_;
  BarButton* shuffle_;
  RepeatButton* repeat_;
  VolumeControl* volume_;
};

}  // namespace tallow

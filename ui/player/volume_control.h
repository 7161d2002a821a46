// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include "app/playing/player_model.h"

namespace tallow {

class BarButton;
class ClickedSlider;

/// The volume of the player: a button that mutes, and a slider.
class VolumeControl : public QWidget, private PlayerListener {
  Q_OBJECT

 public:
  /// \param model must outlive the control
  VolumeControl(PlayerModel& model, QWidget* parent);
  VolumeControl(const VolumeControl&) = delete;
  VolumeControl& operator=(const VolumeControl&) = delete;
  ~VolumeControl() override;

  /// Shows or hides the slider; the button stays.
  void ShowSlider(bool on);
  /// The width without and with the slider.
  int WidthWith(bool slider) const;

 private:
  void PlayingChanged(const Playing& /*before*/, const Playing& /*now*/) override {}
  void VolumeChanged() override;
  void Mute(bool on);

  PlayerModel& model_;
  BarButton* mute_;
  ClickedSlider* slider_;
  int before_mute_;  ///< the volume that the button returns to
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

#include "app/playing/player_model.h"
#include "ui/player/bar_button.h"

class QAction;

namespace tallow {

/// Shows whether the player repeats, and opens a menu to choose it.
class RepeatButton : public BarButton {
  Q_OBJECT

 public:
  /// \param model must outlive the button
  RepeatButton(PlayerModel& model, QWidget* parent);

  void ShowMode(RepeatMode mode);

 protected:
  /// The menu checks the button, not a click.
  void nextCheckState() override {}

 private:
  void AddMode(RepeatMode mode, const QString& name, const QString& caption);
  /// Greys what the player cannot do.
  void UpdateMenu();

  PlayerModel& model_;
  std::array<QAction*, 3> modes_{};  ///< by RepeatMode
};

}  // namespace tallow

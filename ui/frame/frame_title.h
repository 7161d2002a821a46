// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include "app/playing/player_model.h"

class QWidget;

namespace tallow {

/// The title of the frame window: "Tallow", after the song while one plays. Qt adds the caption of
/// a maximized jukebox.
class FrameTitle : private PlayerListener {
 public:
  /// \param frame, model have to outlive this object
  FrameTitle(QWidget& frame, PlayerModel& model);
  FrameTitle(const FrameTitle&) = delete;
  FrameTitle& operator=(const FrameTitle&) = delete;
  ~FrameTitle() override;

 private:
  void PlayingChanged(const Playing& before, const Playing& now) override;

  QWidget& frame_;
  PlayerModel& model_;
  QString shown_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/playing/player_model.h"

namespace tallow {

class SongListModel;
class SongListView;

/// The marks of a list: which song plays, and which could not be played. The marks are shown while
/// this object exists. A change repaints only the rows of the songs that it concerns.
class PlayingMarks : private PlayerListener {
 public:
  /// The parameters must outlive this object.
  PlayingMarks(PlayerModel& player, SongListModel& songs, SongListView& view);
  PlayingMarks(const PlayingMarks&) = delete;
  PlayingMarks& operator=(const PlayingMarks&) = delete;
  ~PlayingMarks() override;

 private:
  void PlayingChanged(const Playing& before, const Playing& now) override;
  void UpdateFailures();

  PlayerModel& player_;
  SongListModel& songs_;
  SongListView& view_;
};

}  // namespace tallow

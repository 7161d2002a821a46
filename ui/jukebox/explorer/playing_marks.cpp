// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/explorer/playing_marks.h"

#include "ui/jukebox/song_list_model.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {

PlayingMarks::PlayingMarks(PlayerModel& player, SongListModel& songs, SongListView& view)
    : player_(player), songs_(songs), view_(view) {
  player_.AddListener(*this);
  songs_.ShowMarks(&player);
  view_.ShowMarks();
}

PlayingMarks::~PlayingMarks() {
  player_.RemoveListener(*this);
  songs_.ShowMarks(nullptr);
  view_.ShowMarks();
}

void PlayingMarks::PlayingChanged(const Playing& before, const Playing& now) {
  if (before.song != now.song || before.status != now.status) {
    songs_.MarkChanged(before.song);
    if (now.song != before.song) songs_.MarkChanged(now.song);
  }
  if (before.failures_revision != now.failures_revision) UpdateFailures();
}

void PlayingMarks::UpdateFailures() {
  const int last = view_.rowAt(view_.viewport()->height() - 1);
  songs_.FailuresChanged(view_.rowAt(0), last >= 0 ? last : songs_.rowCount() - 1);
}

}  // namespace tallow

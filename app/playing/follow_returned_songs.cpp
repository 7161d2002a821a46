// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/follow_returned_songs.h"

#include "app/tallow.h"
#include "jukebox/returned_songs.h"

namespace tallow {

void FollowReturnedSongs(const std::vector<ReturnedSong>& returned,
                         std::span<Jukebox* const> jukeboxes, Tallow& tallow) {
  RenumberReturnedSongs(returned, jukeboxes, tallow.clipboard);
  if (returned.empty()) return;
  NewNumbers numbers;
  for (const ReturnedSong& song : returned) numbers[song.number] = song.now;
  tallow.handed_over.Renumber(numbers);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/returned_songs.h"

#include "jukebox/jukebox.h"
#include "jukebox/jukebox_clipboard.h"

namespace tallow {

void RenumberReturnedSongs(const std::vector<ReturnedSong>& returned,
                           std::span<Jukebox* const> jukeboxes, JukeboxClipboard& clipboard) {
  if (returned.empty()) return;
  NewNumbers numbers;
  for (const ReturnedSong& song : returned) numbers[song.number] = song.now;
  for (Jukebox* const jukebox : jukeboxes) jukebox->Renumber(numbers);
  clipboard.Renumber(numbers);
}

}  // namespace tallow

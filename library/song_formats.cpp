// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/song_formats.h"

#include "util/like.h"

namespace tallow {

bool IsSongName(std::string_view name, const Switches& switches) {
  return MatchesFilePattern(name, SongPattern(switches));
}

}  // namespace tallow

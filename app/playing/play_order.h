// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

#include "app/playing/player_model.h"
#include "player/playfile.h"

namespace tallow {

/// How the songs in Tallow::SongsToPlay are played.
struct PlayOrder {
  HandOverTo to = HandOverTo::kReplace;
  std::size_t first = 0;    ///< index of the song that plays first, see HandOverOrder
  SongsOrigin origin = {};  ///< of the songs
};

}  // namespace tallow

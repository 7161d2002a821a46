// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "app/playing/player_model.h"
#include "player/player_messages.h"

namespace tallow {

/// A sentence that says why a command has no effect on a player that runs; empty if it has one, if
/// no player runs, or if it is not known.
std::string WhyNoEffect(PlayerCommand command, const Playing& now);

}  // namespace tallow

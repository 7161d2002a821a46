// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "player/player_link.h"

namespace tallow {

class Tallow;

/// The kind of player that a program is, by its file name: "tallow-player" or "tallow-player.exe",
/// in any letter case, is Tallow's own player.
PlayerKind KindOfPlayer(std::string_view program);

/// The players that the user can choose from, without duplicates: Tallow's own player, the Winamps
/// that were found, and at last the player that is chosen now. Full paths.
///
/// \param own     Tallow's own player; empty when it is not there
/// \param winamps those that were found
std::vector<std::string> PlayersToChooseFrom(const Tallow& tallow, const std::string& own,
                                             const std::vector<std::string>& winamps);

/// Stores a program as the player, from the next play command on. A player that runs is not closed.
///
/// \param program full path
/// \returns why it cannot be the player, as a sentence; nothing is stored then. Empty on success
std::string ChoosePlayer(Tallow& tallow, const std::string& program);

}  // namespace tallow

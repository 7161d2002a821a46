// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "player/winamp_control.h"

namespace tallow {

/// What a player of either kind answers about itself. Times are in ms; -1 when unknown.
struct PlayerReport {
  PlayerStatus status = kStopped;
  std::int64_t position = -1;
  std::int64_t length = -1;
  /// The current entry: its number in Tallow's own player; its place from 1 in Winamp's list; 0 for
  /// an empty list.
  std::uint64_t entry = 0;
  std::size_t place = 0;  ///< of the current entry in the list, from 0
  std::size_t count = 0;  ///< of the list
  /// Entries that will play after the current one; 0 for Winamp in random order.
  std::size_t upcoming = 0;
  std::uint64_t revision = 0;  ///< of Tallow's own player
  bool shuffle = false;
  RepeatMode repeat = RepeatMode::kOff;
  std::vector<PlayFailure> failures;
};

/// Asks the player that was found last.
///
/// \param failures_after see TallowPlayer::State
/// \returns no value when the player does not run or does not answer
std::optional<PlayerReport> AskState(WinAMP_Control& player, std::uint64_t failures_after);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>

#include "player/winamp_control.h"
#include "util/message.h"

namespace tallow {

/// Pause between two looks for a player that is starting.
inline constexpr std::chrono::milliseconds kPlayerPollInterval{20};

/// Called about every kPlayerPollInterval while a player starts, so that the caller can process
/// window events. Returns false to give up without a message. It waits itself for the interval, or
/// less.
using WhileStarting = std::function<bool()>;

/// Starts and finds the player, and waits for it at most PlayerLink::StartTimeout(). Shows a
/// message on failure; that about a program that has ended at once quotes the last line that it
/// wrote.
/// \param while_starting may be empty; the calling thread then sleeps
/// \returns whether the player was found and answers
bool ReachPlayer(WinAMP_Control& player, const ShowMessage& show,
                 const WhileStarting& while_starting = {});

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/reach_player.h"

#include <string>
#include <thread>

namespace tallow {
namespace {

/// How the wait for a player ended.
struct Wait {
  PlayerStart start = PlayerStart::kNoWindow;
  bool given_up = false;  ///< by the callback
};

Wait WaitForPlayer(WinAMP_Control& player, const WhileStarting& while_starting) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point deadline = Clock::now() + player.Link().StartTimeout();
  for (;;) {
    const PlayerStart start = player.FollowStart();
    const bool waits = start == PlayerStart::kNoWindow || start == PlayerStart::kSilent;
    if (!waits || Clock::now() >= deadline) return {start, false};
    if (!while_starting)
      std::this_thread::sleep_for(kPlayerPollInterval);
    else if (!while_starting())
      return {start, true};
  }
}

std::string TextAboutEndedPlayer(const std::string& program, const std::string& last_line) {
  const std::string text = "The player " + program + " could not start. It ";
  return text + (last_line.empty() ? "ended at once." : "wrote: " + last_line);
}

}  // namespace

bool ReachPlayer(WinAMP_Control& player, const ShowMessage& show,
                 const WhileStarting& while_starting) {
  if (!player.StartWinamp()) {
    show({.text = "Couldn't start WinAMP"});
    return false;
  }
  const Wait wait = WaitForPlayer(player, while_starting);
  if (wait.given_up) return false;
  switch (wait.start) {
    case PlayerStart::kAnswers:
      return true;
    case PlayerStart::kNoWindow:
      show({.text = "Couldn't find WinAMP's Window"});
      return false;
    case PlayerStart::kSilent:
      show({.text = "The player " + player.Program() +
                    " was started, but does not answer. End it, then play again."});
      return false;
    case PlayerStart::kEnded:
      show({.text = TextAboutEndedPlayer(player.Program(), player.Link().LastLineWritten())});
      return false;
  }
  return false;
}

}  // namespace tallow

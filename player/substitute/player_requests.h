// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "player/player_socket_linux.h"

namespace tallow {

class SongPlayer;

/// The player's messages, carried out.
class PlayerRequests {
 public:
  /// \param player has to outlive the object
  /// \param close  ends the player; called before the answer to that command is given
  PlayerRequests(SongPlayer& player, std::function<void()> close);

  /// \param answer given the answer, at once or, of a length that is not known yet, later
  /// \returns false when there is no such message; nothing has changed then
  bool CarryOut(const PlayerRequestHead& head, const std::string& payload,
                const std::function<void(PlayerAnswer)>& answer);

 private:
  bool Command(const PlayerRequestHead& head);
  bool User(const PlayerRequestHead& head, const std::function<void(PlayerAnswer)>& answer);
  bool AddFile(const PlayerRequestHead& head, const std::string& payload,
               const std::function<void(PlayerAnswer)>& answer);

  SongPlayer& player_;
  std::function<void()> close_;
};

/// A message as a line of text: its three numbers, and its payload in quotes where it has one.
std::string DescribeRequest(const PlayerRequestHead& head, const std::string& payload);

}  // namespace tallow

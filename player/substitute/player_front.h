// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "player/player_request.h"
#include "player/substitute/event_loop.h"
#include "player/substitute/song_player.h"

namespace tallow {

struct PlayerOptions;

/// Executes a request, see PlayerRequests::Execute. Calls one of the two callbacks, once, now or
/// later: `answer_text` for kAsk, `answer` for any other request.
/// \returns false for an invalid request, to which there is no answer
using RequestHandler = std::function<bool(const PlayerRequestHead& head, const std::string& payload,
                                          std::function<void(PlayerAnswer)> answer,
                                          std::function<void(std::string)> answer_text)>;

/// The player's event loop, and its connections to clients and to the desktop. Differs by platform:
/// on Linux the socket and the session bus, on Windows a hidden window and the media keys.
class PlayerFront {
 public:
  virtual ~PlayerFront() = default;

  virtual EventLoop& Loop() = 0;

  /// Begins to receive requests.
  /// \param player must live until Close
  /// \param close  ends the player
  virtual void Open(SongPlayer& player, RequestHandler execute, std::function<void()> close) = 0;

  /// Whether a program is connected that may send requests.
  virtual bool HasClients() = 0;

  /// Tells the desktop about a change of the player.
  virtual void Announce(PlayerChange change) = 0;

  /// Lets no more clients connect: one that starts a player from now on gets a new one. Disconnects
  /// from the desktop.
  virtual void StopAccepting() = 0;

  /// Disconnects all clients.
  virtual void Close() = 0;
};

/// Reserves the names under which the clients find the player.
/// \returns null when another player has them, or on failure; standard error then says why
std::unique_ptr<PlayerFront> NewPlayerFront(const PlayerOptions& options);

}  // namespace tallow

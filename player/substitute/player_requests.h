// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "player/player_request.h"

namespace tallow {

class SongPlayer;

/// Executes the requests to the player.
class PlayerRequests {
 public:
  /// \param player must outlive this object
  /// \param close  callback that ends the player; called before the close command is answered
  PlayerRequests(SongPlayer& player, std::function<void()> close);

  /// \param answer called with the answer: at once, or later for a track length that is not known
  ///               yet
  /// \param answer_text called instead with the answer to kAsk, at once or later
  /// \returns false for an unknown or invalid message; nothing has changed in that case
  bool Execute(const PlayerRequestHead& head, const std::string& payload,
               const std::function<void(PlayerAnswer)>& answer,
               const std::function<void(std::string)>& answer_text);

 private:
  // These return false, or no value, for an invalid message.

  bool ExecuteCommand(const PlayerRequestHead& head);
  std::optional<PlayerAnswer> AddFile(const std::string& payload);
  std::optional<PlayerAnswer> AddFiles(const std::string& payload);
  bool ExecuteCopyData(const PlayerRequestHead& head, const std::string& payload,
                       const std::function<void(PlayerAnswer)>& answer,
                       const std::function<void(std::string)>& answer_text);
  bool ExecuteUserMessage(const PlayerRequestHead& head,
                          const std::function<void(PlayerAnswer)>& answer);
  /// Executes a message whose answer is known at once.
  /// \param request see PlayerRequest
  std::optional<PlayerAnswer> AnswerAtOnce(std::int64_t request, std::int64_t value);
  /// \param request of those that concern the list and its order
  std::optional<PlayerAnswer> AnswerAboutList(std::int64_t request, std::int64_t value);
  std::optional<PlayerAnswer> Seek(std::int64_t ms);
  /// \param value 0 to 127 for center to right, 128 to 254 for left to just left of center
  std::optional<PlayerAnswer> SetBalance(std::int64_t value);

  SongPlayer& player_;
  std::function<void()> close_;
};

/// Formats a request as a line of text: its three numbers, then the payload in quotes if it has
/// one.
std::string DescribeRequest(const PlayerRequestHead& head, const std::string& payload);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "player/player_socket_linux.h"
#include "util/open_file_linux.h"

namespace tallow {

/// How long to wait for an answer of a player that is not starting.
inline constexpr std::chrono::seconds kAnswerTimeout{2};

/// A connection to the player.
///
/// After a timeout, requests no longer wait until the player has sent all overdue answers. In the
/// meantime queries are not sent and return 0 or no text, and other requests are sent without
/// waiting. When the connection has been closed, a request was sent only in part, or an answer
/// cannot be valid, nothing more is sent.
class PlayerConnection {
 public:
  /// \param descriptor a connected socket that does not block; the object takes ownership
  /// \param starting   true when the player may not have finished starting
  PlayerConnection(int descriptor, bool starting) : socket_(descriptor), starting_(starting) {}

  /// Whether the connection is usable as far as known.
  bool IsUsable() {
    ReadAnswers();
    return usable_;
  }

  /// Whether the player closed the connection: it has ended, or has closed it to accept others.
  bool WasClosed() const noexcept { return was_closed_; }

  /// Whether the player has finished starting, which its first answer shows. Does not wait: the
  /// first call sends a query, and each call looks for its answer.
  bool HasStarted();

  /// Sends a request and waits for the answer.
  /// \param head any but a kAsk
  /// \returns the answer; 0 when there is none
  PlayerAnswer Exchange(const PlayerRequestHead& head, std::string_view payload);

  /// Sends a kAsk and waits for the answer.
  /// \param request at most kMaxPayload bytes
  /// \returns the answer; no value when there is none
  std::optional<std::string> Ask(std::string_view request);

 private:
  using Clock = std::chrono::steady_clock;

  /// What a request is answered by.
  enum class AnswerKind { kNumber, kText };

  Clock::duration TimeoutFor(const PlayerRequestHead& head) const noexcept;
  /// Sends a request, and waits for its answer unless earlier ones are overdue.
  /// \returns whether its answer has arrived
  bool Complete(const PlayerRequestHead& head, std::string_view payload, bool is_query);
  /// Sends a request; on failure, the connection is no longer usable.
  bool Send(const PlayerRequestHead& head, std::string_view payload, Clock::time_point deadline);
  /// Waits until all answers have arrived.
  /// \returns false at the deadline
  bool WaitForAnswers(Clock::time_point deadline);
  bool WaitFor(short events, Clock::time_point deadline) const noexcept;
  bool Write(std::string_view bytes, Clock::time_point deadline) const noexcept;
  /// Reads the answers that have arrived, without blocking.
  void ReadAnswers();
  /// The part of the next answer that has not arrived.
  std::span<char> MissingPart();
  /// Counts bytes that have arrived in MissingPart().
  void Received(std::size_t count);

  OpenFile socket_;
  std::deque<AnswerKind> outstanding_;  ///< answers, in the order of their requests
  /// The number that the next answer begins with.
  std::array<char, sizeof(PlayerAnswer)> number_{};
  std::size_t filled_ = 0;       ///< bytes in number_ that have arrived
  std::string text_;             ///< of the next answer, or of the last one
  std::size_t text_filled_ = 0;  ///< bytes in text_ that have arrived
  PlayerAnswer last_answer_ = 0;
  bool starting_;
  bool usable_ = true;
  bool was_closed_ = false;
};

}  // namespace tallow

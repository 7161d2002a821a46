// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <string_view>

#include "player/player_socket_linux.h"
#include "util/open_file_linux.h"

namespace tallow {

/// How long to wait for an answer of a player that is not starting.
inline constexpr std::chrono::seconds kAnswerTimeout{2};

/// A connection to the player.
///
/// After a timeout, requests no longer wait until the player has sent all overdue answers. In the
/// meantime queries return 0, and other requests are sent without waiting. When the connection has
/// been closed, or a request was sent only in part, nothing more is sent.
class PlayerConnection {
 public:
  /// \param descriptor a connected socket that does not block; the object takes ownership
  /// \param starting   true when the player may not have finished starting
  PlayerConnection(int descriptor, bool starting) noexcept
      : socket_(descriptor), starting_(starting) {}

  /// Whether the connection is usable as far as known.
  bool IsUsable() {
    ReadAnswers();
    return usable_;
  }

  /// Whether the player closed the connection: it has ended, or has closed it to accept others.
  bool WasClosed() const noexcept { return was_closed_; }

  /// Sends a request and waits for the answer.
  /// \returns the answer; 0 when there is none
  PlayerAnswer Exchange(const PlayerRequestHead& head, std::string_view payload);

 private:
  using Clock = std::chrono::steady_clock;

  Clock::duration TimeoutFor(const PlayerRequestHead& head) const noexcept;
  /// Sends a request; on failure, the connection is no longer usable.
  bool Send(const PlayerRequestHead& head, std::string_view payload, Clock::time_point deadline);
  /// Waits until all answers have arrived.
  /// \returns false at the deadline
  bool WaitForAnswers(Clock::time_point deadline);
  bool WaitFor(short events, Clock::time_point deadline) const noexcept;
  bool Write(std::string_view bytes, Clock::time_point deadline) const noexcept;
  /// Reads the answers that have arrived, without blocking.
  void ReadAnswers() noexcept;

  OpenFile socket_;
  std::array<char, sizeof(PlayerAnswer)> bytes_{};  ///< of the next answer
  std::size_t filled_ = 0;                          ///< number of bytes in bytes_
  PlayerAnswer last_answer_ = 0;
  int outstanding_ = 0;  ///< number of outstanding answers
  bool starting_;
  bool usable_ = true;
  bool was_closed_ = false;
};

}  // namespace tallow

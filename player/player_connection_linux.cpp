// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_connection_linux.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <string>
#include <sys/socket.h>

#include "player/player_messages.h"

namespace tallow {
namespace {

/// How long to wait for an answer after the player was just started, and for the answer to a query
/// of a track's length, which can take the player two seconds.
constexpr std::chrono::seconds kFirstTimeout{10};
constexpr std::chrono::seconds kLengthTimeout{4};

/// Whether a request is a query that changes nothing.
bool IsQuery(const PlayerRequestHead& head) noexcept {
  return head.message == kWmUser &&
         (head.lParam == kStatus || head.lParam == kTrackTime || head.lParam == kVersion);
}

bool IsLengthQuery(const PlayerRequestHead& head) noexcept {
  return head.message == kWmUser && head.lParam == kTrackTime && head.wParam == kAskLength;
}

}  // namespace

PlayerAnswer PlayerConnection::Exchange(const PlayerRequestHead& head, std::string_view payload) {
  ReadAnswers();
  const bool overdue = outstanding_ > 0;
  if (!usable_ || (overdue && IsQuery(head))) return 0;
  const Clock::time_point deadline =
      Clock::now() + (overdue ? Clock::duration() : TimeoutFor(head));
  if (!Send(head, payload, deadline)) return 0;
  if (overdue || !WaitForAnswers(deadline)) return 0;
  return usable_ ? last_answer_ : 0;
}

PlayerConnection::Clock::duration PlayerConnection::TimeoutFor(
    const PlayerRequestHead& head) const noexcept {
  if (starting_) return kFirstTimeout;
  return IsLengthQuery(head) ? kLengthTimeout : kAnswerTimeout;
}

bool PlayerConnection::Send(const PlayerRequestHead& head, std::string_view payload,
                            Clock::time_point deadline) {
  std::string request(reinterpret_cast<const char*>(&head), sizeof head);
  request += payload;
  if (!Write(request, deadline)) {
    was_closed_ = errno == EPIPE || errno == ECONNRESET;
    usable_ = false;
    return false;
  }
  ++outstanding_;
  return true;
}

bool PlayerConnection::WaitForAnswers(Clock::time_point deadline) {
  while (outstanding_ > 0 && usable_) {
    if (!WaitFor(POLLIN, deadline)) return false;
    ReadAnswers();
  }
  return true;
}

bool PlayerConnection::WaitFor(short events, Clock::time_point deadline) const noexcept {
  for (;;) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return false;
    pollfd poll_socket{socket_.descriptor(), events, 0};
    const int ready = poll(&poll_socket, 1, static_cast<int>(left));
    if (ready > 0) return true;
    if (ready == 0 || errno != EINTR) return false;
  }
}

bool PlayerConnection::Write(std::string_view bytes, Clock::time_point deadline) const noexcept {
  while (!bytes.empty()) {
    const ssize_t sent = send(socket_.descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
    if (sent >= 0 || errno == EINTR) continue;
    if (errno != EAGAIN || !WaitFor(POLLOUT, deadline)) return false;
  }
  return true;
}

void PlayerConnection::ReadAnswers() noexcept {
  while (usable_) {
    const ssize_t got =
        recv(socket_.descriptor(), bytes_.data() + filled_, bytes_.size() - filled_, 0);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0 && errno == EAGAIN) return;
    // The player sends nothing except answers.
    was_closed_ = got <= 0;
    usable_ = got > 0 && outstanding_ > 0;
    if (!usable_) return;
    filled_ += static_cast<std::size_t>(got);
    if (filled_ < bytes_.size()) continue;
    std::memcpy(&last_answer_, bytes_.data(), sizeof last_answer_);
    filled_ = 0;
    --outstanding_;
    starting_ = false;
  }
}

}  // namespace tallow

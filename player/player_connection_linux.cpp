// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_connection_linux.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <poll.h>
#include <sys/socket.h>
#include <utility>

#include "player/player_messages.h"
#include "player/tallow_player_requests.h"

namespace tallow {
namespace {

/// How long to wait for an answer after the player was just started, and for the answer to a query
/// of a track's length, which can take the player two seconds.
constexpr std::chrono::seconds kFirstTimeout{10};
constexpr std::chrono::seconds kLengthTimeout{4};

/// Whether a request is a query that changes nothing.
bool IsQuery(const PlayerRequestHead& head) noexcept {
  constexpr std::int64_t kQueries[] = {kStatus,    kTrackTime, kVersion, kListLength,
                                       kListPlace, kShuffle,   kRepeat};
  return head.message == kWmUser &&
         std::find(std::begin(kQueries), std::end(kQueries), head.lParam) != std::end(kQueries);
}

bool IsLengthQuery(const PlayerRequestHead& head) noexcept {
  return head.message == kWmUser && head.lParam == kTrackTime && head.wParam == kAskLength;
}

}  // namespace

bool PlayerConnection::HasStarted() {
  ReadAnswers();
  if (starting_ && usable_ && outstanding_.empty())
    Send({kWmUser, 0, 0, kVersion}, {}, Clock::now());
  return usable_ && !starting_;
}

PlayerAnswer PlayerConnection::Exchange(const PlayerRequestHead& head, std::string_view payload) {
  return Complete(head, payload, IsQuery(head)) ? last_answer_ : 0;
}

std::optional<std::string> PlayerConnection::Ask(std::string_view request) {
  const PlayerRequestHead head{kWmCopyData, static_cast<std::uint32_t>(request.size()), 0, kAsk};
  if (!Complete(head, request, AsksOnly(request))) return std::nullopt;
  return std::exchange(text_, {});
}

bool PlayerConnection::Complete(const PlayerRequestHead& head, std::string_view payload,
                                bool is_query) {
  ReadAnswers();
  const bool overdue = !outstanding_.empty();
  if (!usable_ || (overdue && is_query)) return false;
  const Clock::time_point deadline =
      Clock::now() + (overdue ? Clock::duration() : TimeoutFor(head));
  if (!Send(head, payload, deadline)) return false;
  return !overdue && WaitForAnswers(deadline) && usable_;
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
  const bool asks = head.message == kWmCopyData && head.lParam == kAsk;
  outstanding_.push_back(asks ? AnswerKind::kText : AnswerKind::kNumber);
  return true;
}

bool PlayerConnection::WaitForAnswers(Clock::time_point deadline) {
  while (!outstanding_.empty() && usable_) {
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

void PlayerConnection::ReadAnswers() {
  while (usable_) {
    const std::span<char> missing = MissingPart();
    const ssize_t got = recv(socket_.descriptor(), missing.data(), missing.size(), 0);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0 && errno == EAGAIN) return;
    // The player sends nothing except answers.
    was_closed_ = got <= 0;
    usable_ = got > 0 && !outstanding_.empty();
    if (usable_) Received(static_cast<std::size_t>(got));
  }
}

std::span<char> PlayerConnection::MissingPart() {
  if (filled_ < number_.size()) return std::span(number_).subspan(filled_);
  return std::span(text_).subspan(text_filled_);
}

void PlayerConnection::Received(std::size_t count) {
  const bool asked = outstanding_.front() == AnswerKind::kText;
  if (filled_ < number_.size()) {
    filled_ += count;
    if (filled_ < number_.size()) return;
    std::memcpy(&last_answer_, number_.data(), sizeof last_answer_);
    if (asked) {
      usable_ = last_answer_ >= 0 && last_answer_ <= kMaxTextAnswer;
      if (!usable_) return;
      text_.assign(static_cast<std::size_t>(last_answer_), '\0');
      text_filled_ = 0;
    }
  } else {
    text_filled_ += count;
  }
  if (asked && text_filled_ < text_.size()) return;
  filled_ = 0;
  outstanding_.pop_front();
  starting_ = false;
}

}  // namespace tallow

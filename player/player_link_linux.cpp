// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "player/player_link.h"
#include "player/player_messages.h"
#include "player/player_socket_linux.h"
#include "util/detached_process_linux.h"
#include "util/errors.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

/// Timeouts for an answer: after the player was just started, in general, and for a query of a
/// track's length, which can take the player two seconds.
constexpr std::chrono::seconds kFirstTimeout{10};
constexpr std::chrono::seconds kTimeout{2};
constexpr std::chrono::seconds kLengthTimeout{4};

/// Whether a request is a query that changes nothing.
bool IsQuestion(const PlayerRequestHead& head) noexcept {
  return head.message == kWmUser &&
         (head.lParam == kStatus || head.lParam == kTrackTime || head.lParam == kVersion);
}

/// A connection to the player.
///
/// After a timeout, requests no longer wait until the player has sent all overdue answers. In the
/// meantime queries return 0, and other requests are sent without waiting. When the connection has
/// been closed, or a request was sent only in part, nothing more is sent.
class PlayerConnection {
 public:
  /// \param starting true when the player may not have finished starting
  PlayerConnection(int descriptor, bool starting) noexcept
      : socket_(descriptor), starting_(starting) {}

  /// Whether the connection is usable as far as known.
  bool IsAlive() {
    ReadAnswers();
    return !dead_;
  }

  /// Whether the player closed the connection: it has ended, or has closed it to accept others.
  bool WasClosed() const noexcept { return was_closed_; }

  /// Sends a request and waits for the answer; returns 0 when there is none.
  PlayerAnswer Exchange(const PlayerRequestHead& head, std::string_view payload) {
    ReadAnswers();
    const bool late = outstanding_ > 0;
    if (dead_ || (late && IsQuestion(head))) return 0;
    const Clock::time_point deadline = Clock::now() + (late ? Clock::duration() : TimeoutFor(head));
    std::string request(reinterpret_cast<const char*>(&head), sizeof head);
    request += payload;
    if (!Write(request, deadline)) {
      was_closed_ = errno == EPIPE || errno == ECONNRESET;
      dead_ = true;
      return 0;
    }
    ++outstanding_;
    while (outstanding_ > 0 && !dead_ && !late) {
      if (!WaitFor(POLLIN, deadline)) return 0;
      ReadAnswers();
    }
    return outstanding_ == 0 && !dead_ ? last_answer_ : 0;
  }

 private:
  Clock::duration TimeoutFor(const PlayerRequestHead& head) const noexcept {
    if (starting_) return kFirstTimeout;
    return head.message == kWmUser && head.lParam == kTrackTime && head.wParam == kAskLength
               ? kLengthTimeout
               : kTimeout;
  }

  bool WaitFor(short events, Clock::time_point deadline) const noexcept {
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

  bool Write(std::string_view bytes, Clock::time_point deadline) const noexcept {
    while (!bytes.empty()) {
      const ssize_t sent = send(socket_.descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
      if (sent >= 0 || errno == EINTR) continue;
      if (errno != EAGAIN || !WaitFor(POLLOUT, deadline)) return false;
    }
    return true;
  }

  /// Reads the answers that have arrived, without blocking.
  void ReadAnswers() noexcept {
    while (!dead_) {
      const ssize_t got =
          recv(socket_.descriptor(), bytes_.data() + filled_, bytes_.size() - filled_, 0);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0 && errno == EAGAIN) return;
      // The player sends nothing except answers.
      was_closed_ = got <= 0;
      dead_ = got <= 0 || outstanding_ == 0;
      if (dead_) return;
      filled_ += static_cast<std::size_t>(got);
      if (filled_ < bytes_.size()) continue;
      std::memcpy(&last_answer_, bytes_.data(), sizeof last_answer_);
      filled_ = 0;
      --outstanding_;
      starting_ = false;
    }
  }

  OpenFile socket_;
  std::array<char, sizeof(PlayerAnswer)> bytes_{};
  std::size_t filled_ = 0;  ///< number of bytes in bytes_
  PlayerAnswer last_answer_ = 0;
  int outstanding_ = 0;  ///< number of outstanding answers
  bool starting_;
  bool dead_ = false;
  bool was_closed_ = false;
};

/// Identity of a socket file, to tell the sockets of different players apart.
struct SocketFile {
  dev_t device = 0;
  ino_t number = 0;
  timespec changed{};

  friend bool operator==(const SocketFile& a, const SocketFile& b) noexcept {
    return a.device == b.device && a.number == b.number && a.changed.tv_sec == b.changed.tv_sec &&
           a.changed.tv_nsec == b.changed.tv_nsec;
  }
};

SocketFile SocketFileOf(const std::string& path) noexcept {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_ctim};
}

/// Connects to the player. Retries for up to kTimeout while the socket's backlog is full.
int ConnectPatiently(const std::string& path) {
  const Clock::time_point deadline = Clock::now() + kTimeout;
  for (;;) {
    const int descriptor = ConnectToPlayer(path);
    if (descriptor >= 0 || errno != EAGAIN || Clock::now() >= deadline) return descriptor;
    constexpr timespec kPause{0, 5'000'000};
    nanosleep(&kPause, nullptr);
  }
}

class SocketLink : public PlayerLink {
 public:
  PlayerHandle Find() override {
    if (connection_ && connection_->IsAlive()) return handle_;
    try {
      const std::string path = PlayerSocketPath();
      socket_file_ = SocketFileOf(path);
      const int descriptor = ConnectPatiently(path);
      if (descriptor < 0) return 0;
      connection_.emplace(descriptor, std::exchange(just_started_, false));
    } catch (const FileError&) {
      return 0;
    }
    return ++handle_;
  }

  bool Start(const std::string& program) override {
    try {
      const std::string path = PlayerSocketPath();
      const PlayerStartLock lock(path);
      if (PlayerRuns(path)) return true;
      const OpenFile listening(ListenAsPlayer(path));
      if (!listening) throw FileError(path, "no socket can be made there");
      const std::array<std::string, 1> arguments{"--listen"};
      just_started_ = Spawn(program, arguments, listening.descriptor()) != 0;
      if (just_started_) return true;
      // Remove the socket, so that nobody waits for a player that will never answer.
      unlink(path.c_str());
      return false;
    } catch (const FileError& error) {
      std::fprintf(stderr, "The player cannot be started. %s\n", error.what());
      return false;
    }
  }

  std::int64_t Send(PlayerHandle player, std::uint32_t message, std::int64_t wParam,
                    std::int64_t lParam) override {
    const PlayerAnswer answer = Exchange(player, {message, 0, wParam, lParam}, {});
    // The player may take a moment to end. Disconnect, so that Find does not return it meanwhile.
    if (message == kWmCommand && wParam == kClosePlayer && player == handle_) connection_.reset();
    return answer;
  }

  bool SendCopyData(PlayerHandle player, std::uint32_t code, std::string_view data) override {
    // The player rejects such a request. The path exceeds the limit of the system, so the file
    // cannot exist.
    if (data.size() > kMaxPayload) return true;
    const PlayerRequestHead head{kWmCopyData, static_cast<std::uint32_t>(data.size()), 0, code};
    PlayerAnswer answer = Exchange(player, head, data);
    // The player may just have closed this connection in order to accept others.
    if (connection_ && !connection_->IsAlive() && connection_->WasClosed())
      answer = Exchange(player, head, data);
    return answer != kListIsFull;
  }

  bool IsThere(PlayerHandle player) override {
    return player == handle_ && connection_ && connection_->IsAlive();
  }

  std::string TextOfPath(const std::string& path) const override { return path; }

 private:
  PlayerAnswer Exchange(PlayerHandle player, const PlayerRequestHead& head,
                        std::string_view payload) {
    if (player != handle_ || !connection_) return 0;
    if (!connection_->IsAlive() && connection_->WasClosed()) ConnectAgain();
    return connection_->Exchange(head, payload);
  }

  /// Reconnects to the same player, which closes connections when it has too many.
  void ConnectAgain() {
    try {
      const std::string path = PlayerSocketPath();
      if (SocketFileOf(path) != socket_file_) return;
      const int descriptor = ConnectToPlayer(path);
      if (descriptor >= 0) connection_.emplace(descriptor, false);
    } catch (const FileError&) {
      // The connection stays closed.
    }
  }

  std::optional<PlayerConnection> connection_;
  SocketFile socket_file_;   ///< of the connected player
  PlayerHandle handle_ = 0;  ///< of the current connection; different for each
  bool just_started_ = false;
};

}  // namespace

std::unique_ptr<PlayerLink> SystemPlayerLink() { return std::make_unique<SocketLink>(); }

}  // namespace tallow

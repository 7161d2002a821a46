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
#include "util/errors.h"
#include "util/spawn_linux.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

/// How long to wait for an answer: of a player that was just started, of one that ran already, and of
/// one that is asked how long a track is, which may take itself two seconds to find out.
constexpr std::chrono::seconds kFirstTimeout{10};
constexpr std::chrono::seconds kTimeout{2};
constexpr std::chrono::seconds kLengthTimeout{4};

/// Whether a message only asks.
bool IsQuestion(const PlayerRequestHead& head) noexcept {
  return head.message == kWmUser &&
         (head.lParam == kStatus || head.lParam == kTrackTime || head.lParam == kVersion);
}

/// A connection to the player.
///
/// A player that does not answer in time is not waited for again until it has made up for all it owes:
/// questions get no answer, everything else is sent for it to find. Once the connection has ended or a
/// request has only gone in part, nothing goes any more.
class PlayerConnection {
 public:
  /// \param starting the player may not be up yet
  PlayerConnection(int descriptor, bool starting) noexcept
      : socket_(descriptor), starting_(starting) {}

  /// Whether the player can still be at the other end.
  bool IsAlive() {
    TakeLateAnswers();
    return !dead_;
  }

  /// Whether the other end has closed it: the player has ended, or needs the room for others.
  bool WasClosed() const noexcept { return was_closed_; }

  /// Sends a request and waits for its answer; 0 when there is none.
  PlayerAnswer Exchange(const PlayerRequestHead& head, std::string_view payload) {
    TakeLateAnswers();
    const bool late = owed_ > 0;
    if (dead_ || (late && IsQuestion(head))) return 0;
    const Clock::time_point deadline = Clock::now() + (late ? Clock::duration() : TimeoutFor(head));
    std::string request(reinterpret_cast<const char*>(&head), sizeof head);
    request += payload;
    if (!Write(request, deadline)) {
      was_closed_ = errno == EPIPE || errno == ECONNRESET;
      dead_ = true;
      return 0;
    }
    ++owed_;
    while (owed_ > 0 && !dead_ && !late) {
      if (!WaitFor(POLLIN, deadline)) return 0;
      TakeLateAnswers();
    }
    return owed_ == 0 && !dead_ ? last_answer_ : 0;
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

  /// Reads the answers that have come, without waiting.
  void TakeLateAnswers() noexcept {
    while (!dead_) {
      const ssize_t got =
          recv(socket_.descriptor(), bytes_.data() + filled_, bytes_.size() - filled_, 0);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0 && errno == EAGAIN) return;
      // Nobody speaks unasked.
      was_closed_ = got <= 0;
      dead_ = got <= 0 || owed_ == 0;
      if (dead_) return;
      filled_ += static_cast<std::size_t>(got);
      if (filled_ < bytes_.size()) continue;
      std::memcpy(&last_answer_, bytes_.data(), sizeof last_answer_);
      filled_ = 0;
      --owed_;
      starting_ = false;
    }
  }

  OpenFile socket_;
  std::array<char, sizeof(PlayerAnswer)> bytes_{};
  std::size_t filled_ = 0;  ///< of the bytes
  PlayerAnswer last_answer_ = 0;
  int owed_ = 0;  ///< answers that have not come yet
  bool starting_;
  bool dead_ = false;
  bool was_closed_ = false;
};

/// Tells the socket of one player from that of any other.
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

/// Connects, and tries again for a while where more wait for the player than its socket allows.
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
      // Nobody is to wait for a player that will never answer.
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
    // It may take a moment to end, and must not be found again in that.
    if (message == kWmCommand && wParam == kClosePlayer && player == handle_) connection_.reset();
    return answer;
  }

  bool SendCopyData(PlayerHandle player, std::uint32_t code, std::string_view data) override {
    // The player would take more for an attack. No path is that long, so there is no such file.
    if (data.size() > kMaxPayload) return true;
    const PlayerRequestHead head{kWmCopyData, static_cast<std::uint32_t>(data.size()), 0, code};
    PlayerAnswer answer = Exchange(player, head, data);
    // The player may have closed the connection just then for the sake of others.
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

  /// Connects to the same player once more, which closes connections when it has too many.
  void ConnectAgain() {
    try {
      const std::string path = PlayerSocketPath();
      if (SocketFileOf(path) != socket_file_) return;
      const int descriptor = ConnectToPlayer(path);
      if (descriptor >= 0) connection_.emplace(descriptor, false);
    } catch (const FileError&) {
      // It stays closed.
    }
  }

  std::optional<PlayerConnection> connection_;
  SocketFile socket_file_;   ///< that it leads to
  PlayerHandle handle_ = 0;  ///< of the connection; another one for each
  bool just_started_ = false;
};

}  // namespace

std::unique_ptr<PlayerLink> SystemPlayerLink() { return std::make_unique<SocketLink>(); }

}  // namespace tallow

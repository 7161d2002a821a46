// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <optional>
#include <poll.h>
#include <span>
#include <sys/socket.h>
#include <unistd.h>

#include "player/player_link.h"
#include "player/player_messages.h"
#include "player/player_socket_linux.h"
#include "util/errors.h"
#include "util/spawn_linux.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

/// How long to wait for an answer: of a player that was just started, and of one that has answered
/// before. It takes two seconds itself to find out how long a track is.
constexpr std::chrono::seconds kFirstPatience{10};
constexpr std::chrono::seconds kPatience{4};

/// A connection to the player. Once anything goes wrong on it, it is dead for good.
class PlayerConnection {
 public:
  explicit PlayerConnection(int descriptor) noexcept : socket_(descriptor) {}

  /// Whether the player can still be at the other end.
  bool IsAlive() const noexcept {
    if (dead_) return false;
    pollfd poll_socket{socket_.descriptor(), POLLIN, 0};
    // Nobody speaks unasked, so anything to read is the end.
    return poll(&poll_socket, 1, 0) == 0;
  }

  /// Sends a request and waits for its answer; 0 when there is none.
  PlayerAnswer Exchange(const PlayerRequestHead& head, std::string_view payload) {
    if (dead_) return 0;
    const Clock::time_point deadline = Clock::now() + (has_answered_ ? kPatience : kFirstPatience);
    PlayerAnswer answer = 0;
    if (Write({reinterpret_cast<const char*>(&head), sizeof head}, deadline) &&
        Write({payload.data(), payload.size()}, deadline) &&
        Read({reinterpret_cast<char*>(&answer), sizeof answer}, deadline)) {
      has_answered_ = true;
      return answer;
    }
    dead_ = true;
    return 0;
  }

 private:
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

  /// Whether a call that gave -1 is to be made again.
  bool MayTryAgain(short events, Clock::time_point deadline) const noexcept {
    if (errno == EINTR) return true;
    return errno == EAGAIN && WaitFor(events, deadline);
  }

  bool Write(std::span<const char> bytes, Clock::time_point deadline) const noexcept {
    while (!bytes.empty()) {
      const ssize_t sent = send(socket_.descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (sent < 0 && !MayTryAgain(POLLOUT, deadline)) return false;
      if (sent > 0) bytes = bytes.subspan(static_cast<std::size_t>(sent));
    }
    return true;
  }

  bool Read(std::span<char> bytes, Clock::time_point deadline) const noexcept {
    while (!bytes.empty()) {
      const ssize_t got = recv(socket_.descriptor(), bytes.data(), bytes.size(), 0);
      if (got == 0 || (got < 0 && !MayTryAgain(POLLIN, deadline))) return false;
      if (got > 0) bytes = bytes.subspan(static_cast<std::size_t>(got));
    }
    return true;
  }

  OpenFile socket_;
  bool has_answered_ = false;
  bool dead_ = false;
};

class SocketLink : public PlayerLink {
 public:
  PlayerHandle Find() override {
    if (connection_ && connection_->IsAlive()) return handle_;
    try {
      const int descriptor = ConnectToPlayer(PlayerSocketPath());
      if (descriptor < 0) return 0;
      connection_.emplace(descriptor);
    } catch (const FileError&) {
      return 0;
    }
    return ++handle_;
  }

  bool Start(const std::string& program) override {
    try {
      const std::string path = PlayerSocketPath();
      const PlayerStartLock lock(path);
      if (OpenFile(ConnectToPlayer(path))) return true;
      const OpenFile listening(ListenAsPlayer(path));
      if (!listening) throw FileError(path, "no socket can be made there");
      const std::array<std::string, 1> arguments{"--listen"};
      if (Spawn(program, arguments, listening.descriptor()) != 0) return true;
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

  void SendCopyData(PlayerHandle player, std::uint32_t code, std::string_view data) override {
    // The player would take more for an attack. No path is that long.
    if (data.size() > kMostPayload) return;
    Exchange(player, {kWmCopyData, static_cast<std::uint32_t>(data.size()), 0, code}, data);
  }

  std::string TextOfPath(const std::string& path) const override { return path; }

 private:
  PlayerAnswer Exchange(PlayerHandle player, const PlayerRequestHead& head,
                        std::string_view payload) {
    if (player != handle_ || !connection_) return 0;
    return connection_->Exchange(head, payload);
  }

  std::optional<PlayerConnection> connection_;
  PlayerHandle handle_ = 0;  ///< of the connection; another one for each
};

}  // namespace

std::unique_ptr<PlayerLink> SystemPlayerLink() { return std::make_unique<SocketLink>(); }

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "player/player_connection_linux.h"
#include "player/player_link.h"
#include "player/player_messages.h"
#include "player/player_socket_linux.h"
#include "util/detached_process_linux.h"
#include "util/errors.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

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

/// Connects to the player. Retries for up to kAnswerTimeout while the socket's backlog is full.
int ConnectWithRetries(const std::string& path) {
  const Clock::time_point deadline = Clock::now() + kAnswerTimeout;
  for (;;) {
    const int descriptor = ConnectToPlayer(path);
    if (descriptor >= 0 || errno != EAGAIN || Clock::now() >= deadline) return descriptor;
    constexpr timespec kPause{0, 5'000'000};
    nanosleep(&kPause, nullptr);
  }
}

/// The last line of a file that is not empty. Looks at the last bytes only.
std::string LastLineOf(int descriptor) {
  constexpr off_t kMaxBytes = 4096;
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return {};
  const off_t size = std::min(status.st_size, kMaxBytes);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  const ssize_t got = pread(descriptor, bytes.data(), bytes.size(), status.st_size - size);
  bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  const std::size_t end = bytes.find_last_not_of("\r\n ");
  if (end == std::string::npos) return {};
  bytes.resize(end + 1);
  return bytes.substr(bytes.find_last_of("\r\n") + 1);
}

class SocketLink : public PlayerLink {
 public:
  /// \param identifier see SystemPlayerLink
  explicit SocketLink(std::string identifier) : identifier_(std::move(identifier)) {}

  PlayerHandle Find() override {
    if (connection_ && connection_->IsUsable()) return handle_;
    try {
      const std::string path = PlayerSocketPath(identifier_);
      socket_file_ = SocketFileOf(path);
      const int descriptor = ConnectWithRetries(path);
      if (descriptor < 0) return 0;
      connection_.emplace(descriptor, std::exchange(just_started_, false));
    } catch (const FileError&) {
      return 0;
    }
    return ++handle_;
  }

  bool Start(const std::string& program) override {
    try {
      const std::string path = PlayerSocketPath(identifier_);
      const PlayerStartLock lock(path);
      if (PlayerRuns(path)) return true;
      const OpenFile listening(ListenAsPlayer(path));
      if (!listening) throw FileError(path, "cannot create a socket there");
      errors_ = std::make_unique<OpenFile>(memfd_create("errors of the player", MFD_CLOEXEC));
      std::vector<std::string> arguments{"--listen", "--errors-later"};
      if (!*errors_) arguments.pop_back();
      if (!identifier_.empty()) arguments.insert(arguments.end(), {"--identifier", identifier_});
      just_started_ =
          Spawn(program, arguments,
                {.handed = listening.descriptor(), .errors = errors_->descriptor()}) != 0;
      if (just_started_) return true;
      // Remove the socket, so that no client waits for a player that will never answer.
      unlink(path.c_str());
      return false;
    } catch (const FileError& error) {
      std::fprintf(stderr, "The player cannot be started. %s\n", error.what());
      return false;
    }
  }

  PlayerStart FollowStart() override {
    // The socket is there before the player, and nothing listens on it once the player has ended.
    if (Find() == 0) return IsListening() ? PlayerStart::kNoWindow : PlayerStart::kEnded;
    if (connection_->HasStarted()) {
      errors_.reset();
      return PlayerStart::kAnswers;
    }
    return connection_->IsUsable() ? PlayerStart::kSilent : PlayerStart::kEnded;
  }

  std::string LastLineWritten() override {
    return errors_ && *errors_ ? LastLineOf(errors_->descriptor()) : std::string();
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
    return ExchangeRecord(player, code, data) != kListIsFull;
  }

  PlayerKind KindOf(PlayerHandle /*player*/) override { return PlayerKind::kTallowPlayer; }

  std::int64_t AddFiles(PlayerHandle player, std::string_view data) override {
    return data.size() > kMaxPayload ? 0 : ExchangeRecord(player, kAddFiles, data);
  }

  std::optional<std::string> Ask(PlayerHandle player, std::string_view request) override {
    if (request.size() > kMaxPayload) return std::nullopt;
    return Patiently([&]() -> std::optional<std::string> {
      if (!IsConnectedTo(player)) return std::nullopt;
      return connection_->Ask(request);
    });
  }

  bool IsRunning(PlayerHandle player) override {
    return player == handle_ && connection_ && connection_->IsUsable();
  }

  std::string TextOfPath(const std::string& path) const override { return path; }

 private:
  PlayerAnswer Exchange(PlayerHandle player, const PlayerRequestHead& head,
                        std::string_view payload) {
    if (!IsConnectedTo(player)) return 0;
    return connection_->Exchange(head, payload);
  }

  bool IsListening() const {
    try {
      return PlayerRuns(PlayerSocketPath(identifier_));
    } catch (const FileError&) {
      return false;
    }
  }

  /// Sends a copy-data record that is answered by a number.
  PlayerAnswer ExchangeRecord(PlayerHandle player, std::uint32_t code, std::string_view data) {
    const PlayerRequestHead head{kWmCopyData, static_cast<std::uint32_t>(data.size()), 0, code};
    return Patiently([&] { return Exchange(player, head, data); });
  }

  /// Whether there is a connection to a player. A connection that the player has closed is
  /// replaced.
  bool IsConnectedTo(PlayerHandle player) {
    if (player != handle_ || !connection_) return false;
    if (!connection_->IsUsable() && connection_->WasClosed()) Reconnect();
    return true;
  }

  /// Sends something, and sends it again if the player may just have closed this connection in
  /// order to accept others.
  template <typename Sender>
  auto Patiently(const Sender& send) -> decltype(send()) {
    auto answer = send();
    if (connection_ && !connection_->IsUsable() && connection_->WasClosed()) answer = send();
    return answer;
  }

  /// Reconnects to the same player, which closes connections when it has too many.
  void Reconnect() {
    try {
      const std::string path = PlayerSocketPath(identifier_);
      if (SocketFileOf(path) != socket_file_) return;
      const int descriptor = ConnectToPlayer(path);
      if (descriptor >= 0) connection_.emplace(descriptor, false);
    } catch (const FileError&) {
      // The connection stays closed.
    }
  }

  const std::string identifier_;
  std::optional<PlayerConnection> connection_;
  SocketFile socket_file_;   ///< of the connected player
  PlayerHandle handle_ = 0;  ///< of the current connection; different for each
  bool just_started_ = false;
  std::unique_ptr<OpenFile> errors_;  ///< what the player writes while it starts
};

}  // namespace

std::unique_ptr<PlayerLink> SystemPlayerLink(const std::string& identifier) {
  return std::make_unique<SocketLink>(identifier);
}

}  // namespace tallow

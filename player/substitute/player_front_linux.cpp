// SPDX-License-Identifier: GPL-3.0-or-later
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <malloc.h>
#include <optional>
#include <unistd.h>
#include <utility>

#include "player/player_socket_linux.h"
#include "player/substitute/event_loop_linux.h"
#include "player/substitute/mpris.h"
#include "player/substitute/player_front.h"
#include "player/substitute/player_options.h"
#include "player/substitute/request_server.h"
#include "util/detached_process_linux.h"

namespace tallow {
namespace {

/// Returns the socket to listen on; reports failure on standard error.
int ListeningSocket(const PlayerOptions& options) {
  if (options.handed_socket) {
    if (fcntl(kHandedDescriptor, F_SETFD, FD_CLOEXEC) == 0) return kHandedDescriptor;
    std::fputs("tallow-player: --listen requires a socket as descriptor 3.\n", stderr);
    return -1;
  }
  const std::string path = PlayerSocketPath(options.identifier);
  const PlayerStartLock lock(path);
  if (PlayerRuns(path)) {
    std::fprintf(stderr, "tallow-player: another player is already running at %s.\n", path.c_str());
    return -1;
  }
  const int listening = ListenAsPlayer(path);
  if (listening < 0)
    std::fprintf(stderr, "tallow-player: cannot create a socket at %s.\n", path.c_str());
  return listening;
}

/// Keeps the memory from growing over thousands of tracks: libmpv allocates in several threads, and
/// each of glibc's arenas keeps what was freed in it. Large buffers are returned to the system.
void LimitMemory() {
  constexpr int kMaxArenas = 2;
  constexpr int kLargeBuffer = 1 << 20;
  mallopt(M_ARENA_MAX, kMaxArenas);
  mallopt(M_MMAP_THRESHOLD, kLargeBuffer);
}

/// From now on writes messages to the usual standard error, not to that of the start.
void UseUsualErrors() noexcept {
  dup2(kUsualErrors, STDERR_FILENO);
  close(kUsualErrors);
}

class SocketFront final : public PlayerFront {
 public:
  /// \param listening a listening socket; the object takes ownership
  SocketFront(int listening, const PlayerOptions& options)
      : listening_(listening),
        identifier_(options.identifier),
        has_usual_errors_(options.handed_errors) {}

  EventLoop& Loop() override { return loop_; }

  void Open(SongPlayer& player, RequestHandler execute, std::function<void()> close) override {
    server_.emplace(loop_.Get(), listening_, std::move(execute));
    mpris_.emplace(loop_.Get(), identifier_, player, std::move(close));
    if (has_usual_errors_) UseUsualErrors();
  }

  bool HasClients() override { return server_->Connections() > 0; }

  void Announce(PlayerChange change) override { mpris_->Announce(change); }

  void StopAccepting() override {
    server_->StopListening();
    // Shutdown of the event loop would wait for a bus that does not answer.
    mpris_->Disconnect();
  }

  void Close() override { server_->CloseAll(); }

 private:
  LinuxEventLoop loop_;
  const int listening_;
  const std::string identifier_;
  const bool has_usual_errors_;
  std::optional<RequestServer> server_;
  std::optional<Mpris> mpris_;
};

}  // namespace

std::unique_ptr<PlayerFront> NewPlayerFront(const PlayerOptions& options) {
  LimitMemory();
  // Ignore SIGPIPE: the reader of standard error may end before the player.
  std::signal(SIGPIPE, SIG_IGN);
  const int listening = ListeningSocket(options);
  if (listening < 0) return nullptr;
  return std::make_unique<SocketFront>(listening, options);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <functional>
#include <malloc.h>
#include <memory>
#include <string>
#include <utility>

#include "player/player_socket_linux.h"
#include "player/substitute/event_loop_linux.h"
#include "player/substitute/idle_shutdown.h"
#include "player/substitute/mpris.h"
#include "player/substitute/player_options.h"
#include "player/substitute/player_requests.h"
#include "player/substitute/request_server.h"
#include "player/substitute/song_player.h"
#include "player/substitute/sound_engine.h"
#include "util/detached_process_linux.h"
#include "util/version.h"

namespace tallow {
namespace {

constexpr int kUsageError = 2;

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using LogFile = std::unique_ptr<std::FILE, CloseFile>;

/// Returns the log; null, and reports it on standard error, when it cannot be written.
LogFile OpenLog(const std::string& path) {
  LogFile log(std::fopen(path.c_str(), "ae"));
  if (log)
    std::setvbuf(log.get(), nullptr, _IOLBF, BUFSIZ);
  else
    std::fprintf(stderr, "tallow-player: %s cannot be written.\n", path.c_str());
  return log;
}

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

/// The parts of the player, connected with each other.
class PlayerProcess {
 public:
  /// \param listening a listening socket; the process takes ownership
  /// \param log       null for none
  /// \throws std::runtime_error when a part cannot be set up
  PlayerProcess(LinuxEventLoop& loop, const PlayerOptions& options, int listening, LogFile log)
      : loop_(loop),
        log_(std::move(log)),
        engine_(loop, options.output),
        player_(loop, engine_),
        requests_(player_, [this] { Close(); }),
        server_(loop.Get(), listening,
                [this](const PlayerRequestHead& head, const std::string& payload,
                       const RequestServer::Answer& answer,
                       const RequestServer::TextAnswer& answer_text) {
                  if (log_)
                    std::fprintf(log_.get(), "%s\n", DescribeRequest(head, payload).c_str());
                  return requests_.Execute(head, payload, answer, answer_text);
                }),
        mpris_(loop.Get(), options.identifier, player_, [this] { Close(); }),
        idle_shutdown_(
            loop, [this] { return player_.Status() == kStopped && server_.Connections() == 0; },
            [this] { Close(); }) {
    player_.OnChange([this](PlayerChange change) { mpris_.Announce(change); });
  }

  /// Runs the event loop until the player is closed.
  /// \returns the exit code
  int Run() {
    const int code = loop_.Run();
    // Close the connections first, because shutting down the sound takes longer.
    server_.CloseAll();
    player_.OnChange({});
    return code;
  }

  void Close() {
    // A client that starts a player right after the answer must get a new player.
    server_.StopListening();
    // Shutdown of the event loop would wait for a bus that does not answer.
    mpris_.Disconnect();
    loop_.Exit(0);
  }

 private:
  LinuxEventLoop& loop_;
  LogFile log_;
  SoundEngine engine_;
  SongPlayer player_;
  PlayerRequests requests_;
  RequestServer server_;
  Mpris mpris_;
  IdleShutdown idle_shutdown_;
};

/// Keeps the memory from growing over thousands of tracks: libmpv allocates in several threads, and
/// each of glibc's arenas keeps what was freed in it. Large buffers are returned to the system.
void LimitMemory() {
  constexpr int kMaxArenas = 2;
  constexpr int kLargeBuffer = 1 << 20;
  mallopt(M_ARENA_MAX, kMaxArenas);
  mallopt(M_MMAP_THRESHOLD, kLargeBuffer);
}

/// \returns the exit code
int Run(const PlayerOptions& options) {
  LimitMemory();
  LogFile log;
  if (!options.log.empty()) {
    log = OpenLog(options.log);
    if (!log) return 1;
  }
  const int listening = ListeningSocket(options);
  if (listening < 0) return 1;
  // Ignore SIGPIPE: the reader of standard error may end before the player.
  std::signal(SIGPIPE, SIG_IGN);
  LinuxEventLoop loop;
  std::function<void()> close;
  loop.CallAtEnd([&close] { close(); });
  PlayerProcess process(loop, options, listening, std::move(log));
  close = [&process] { process.Close(); };
  return process.Run();
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  const tallow::PlayerOptions options = tallow::ParseOptions(argc, argv);
  if (!options.error.empty()) {
    std::fprintf(stderr, "tallow-player: %s\n%s", options.error.c_str(), tallow::kUsage);
    return tallow::kUsageError;
  }
  if (options.help) {
    std::fputs(tallow::kUsage, stdout);
    return 0;
  }
  if (options.version) {
    std::printf("tallow-player %d.%d\n", tallow::kMajorVersion, tallow::kMinorVersion);
    return 0;
  }
  try {
    return tallow::Run(options);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tallow-player: %s\n", error.what());
    return 1;
  }
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/signalfd.h>
#include <utility>

#include "player/player_socket_linux.h"
#include "player/substitute/event_source.h"
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

constexpr int kEndSignals[] = {SIGTERM, SIGINT, SIGHUP};

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
int ListeningSocket(bool handed) {
  if (handed) {
    if (fcntl(kHandedDescriptor, F_SETFD, FD_CLOEXEC) == 0) return kHandedDescriptor;
    std::fputs("tallow-player: --listen requires a socket as descriptor 3.\n", stderr);
    return -1;
  }
  const std::string path = PlayerSocketPath();
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

/// Prepares the signals for an event loop.
void SetUpSignals() {
  // Ignore SIGPIPE: the reader of standard error may end before the player.
  std::signal(SIGPIPE, SIG_IGN);
  // Block the signals before threads are created; otherwise a thread might receive them.
  sigset_t blocked;
  sigemptyset(&blocked);
  for (const int signal : kEndSignals) sigaddset(&blocked, signal);
  sigprocmask(SIG_BLOCK, &blocked, nullptr);
}

/// The parts of the player, connected with each other.
class PlayerProcess {
 public:
  /// \param listening a listening socket; the process takes ownership
  /// \param log       null for none
  /// \throws std::runtime_error when a part cannot be set up
  PlayerProcess(sd_event* loop, const SoundOutput& output, int listening, LogFile log)
      : loop_(loop),
        log_(std::move(log)),
        engine_(loop, output),
        player_(loop, engine_),
        requests_(player_, [this] { Close(); }),
        server_(loop, listening,
                [this](const PlayerRequestHead& head, const std::string& payload,
                       const RequestServer::Answer& answer, const RequestServer::TextAnswer&) {
                  if (log_)
                    std::fprintf(log_.get(), "%s\n", DescribeRequest(head, payload).c_str());
                  return requests_.Execute(head, payload, answer);
                }),
        mpris_(loop, player_, [this] { Close(); }),
        idle_shutdown_(loop, player_, server_, [this] { Close(); }) {
    player_.OnChange([this](PlayerChange change) { mpris_.Announce(change); });
    CloseOnSignals();
  }

  /// Runs the event loop until the player is closed.
  void Run() {
    Require(sd_event_loop(loop_), "the event loop");
    // Close the connections first, because shutting down the sound takes longer.
    server_.CloseAll();
    player_.OnChange({});
  }

 private:
  void CloseOnSignals() {
    for (const int signal : kEndSignals)
      Require(sd_event_add_signal(
                  loop_, nullptr, signal,
                  [](sd_event_source*, const signalfd_siginfo*, void* self) {
                    static_cast<PlayerProcess*>(self)->Close();
                    return 0;
                  },
                  this),
              "the event loop");
  }

  void Close() {
    // A client that starts a player right after the answer must get a new player.
    server_.StopListening();
    // Shutdown of the event loop would wait for a bus that does not answer.
    mpris_.Disconnect();
    sd_event_exit(loop_, 0);
  }

  sd_event* loop_;
  LogFile log_;
  SoundEngine engine_;
  SongPlayer player_;
  PlayerRequests requests_;
  RequestServer server_;
  Mpris mpris_;
  IdleShutdown idle_shutdown_;
};

/// \returns the exit code
int Run(const PlayerOptions& options) {
  LogFile log;
  if (!options.log.empty()) {
    log = OpenLog(options.log);
    if (!log) return 1;
  }
  const int listening = ListeningSocket(options.handed_socket);
  if (listening < 0) return 1;
  sd_event* raw_loop = nullptr;
  Require(sd_event_default(&raw_loop), "the event loop");
  const EventLoop loop(raw_loop);
  SetUpSignals();
  PlayerProcess process(raw_loop, options.output, listening, std::move(log));
  process.Run();
  return 0;
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

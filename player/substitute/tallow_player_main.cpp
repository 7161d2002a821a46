// SPDX-License-Identifier: GPL-3.0-or-later
#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <sys/signalfd.h>
#include <utility>

#include "player/player_socket_linux.h"
#include "player/substitute/mpris.h"
#include "player/substitute/player_requests.h"
#include "player/substitute/request_server.h"
#include "player/substitute/song_player.h"
#include "util/detached_process_linux.h"
#include "util/errors.h"
#include "util/version.h"

namespace tallow {
namespace {

constexpr std::string_view kUsage =
    "Usage: tallow-player [OPTION...]\n"
    "The player that Tallow starts. It has no window and takes its commands from a socket.\n"
    "\n"
    "  --audio-file FILE  write the sound to FILE (WAV), as fast as it goes\n"
    "  --silent           play without sound, in real time\n"
    "  --log FILE         append every message to FILE, a line each\n"
    "  --listen           take messages on the socket that was handed over as descriptor 3\n"
    "  --help, --version  print and leave\n";

constexpr int kUsageError = 2;

/// After this many consecutive checks without playback or connections, the player ends.
constexpr int kMaxIdleLooks = 5;
constexpr std::uint64_t kLookInterval = 60'000'000;  ///< in µs

constexpr int kEndSignals[] = {SIGTERM, SIGINT, SIGHUP};

struct Options {
  SoundOutput output;
  std::string log;
  bool handed_socket = false;
  bool help = false;
  bool version = false;
  std::string error;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc && options.error.empty(); ++i) {
    const std::string_view argument = argv[i];
    const auto value = [&]() -> std::string {
      if (i + 1 < argc && *argv[i + 1] != '\0') return argv[++i];
      options.error = std::string(argument) + " requires a file.";
      return {};
    };
    if (argument == "--audio-file")
      options.output.file = value();
    else if (argument == "--silent")
      options.output.silent = true;
    else if (argument == "--log")
      options.log = value();
    else if (argument == "--listen")
      options.handed_socket = true;
    else if (argument == "--help")
      options.help = true;
    else if (argument == "--version")
      options.version = true;
    else
      options.error = "Unknown option " + std::string(argument) + ".";
  }
  return options;
}

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using LogFile = std::unique_ptr<std::FILE, CloseFile>;

/// Returns the socket to listen on; reports failure on standard error.
int ListeningSocket(bool handed) {
  if (handed) {
    if (fcntl(kHandedDescriptor, F_SETFD, FD_CLOEXEC) == 0) return kHandedDescriptor;
    std::fputs("tallow-player: --listen needs a socket as descriptor 3.\n", stderr);
    return -1;
  }
  const std::string path = PlayerSocketPath();
  const PlayerStartLock lock(path);
  if (PlayerRuns(path)) {
    std::fprintf(stderr, "tallow-player: one runs already, at %s.\n", path.c_str());
    return -1;
  }
  const int listening = ListenAsPlayer(path);
  if (listening < 0)
    std::fprintf(stderr, "tallow-player: no socket can be made at %s.\n", path.c_str());
  return listening;
}

/// Ends the player after some minutes without use, because it has no window that could be closed.
class IdleEnd {
 public:
  /// \param end callback that ends the player
  IdleEnd(sd_event* loop, const SongPlayer& player, const RequestServer& server,
          std::function<void()> end)
      : player_(player), server_(server), end_(std::move(end)) {
    sd_event_source* timer = nullptr;
    Require(sd_event_add_time_relative(
                loop, &timer, CLOCK_MONOTONIC, kLookInterval, 0,
                [](sd_event_source*, std::uint64_t, void* self) {
                  return static_cast<IdleEnd*>(self)->Look();
                },
                this),
            "the event loop");
    timer_.reset(timer);
    Require(sd_event_source_set_enabled(timer, SD_EVENT_ON), "the event loop");
  }

 private:
  int Look() {
    idle_looks_ = player_.Status() == kStopped && server_.Connections() == 0 ? idle_looks_ + 1 : 0;
    if (idle_looks_ >= kMaxIdleLooks) end_();
    return sd_event_source_set_time_relative(timer_.get(), kLookInterval);
  }

  const SongPlayer& player_;
  const RequestServer& server_;
  std::function<void()> end_;
  EventSource timer_;
  int idle_looks_ = 0;
};

int Run(const Options& options) {
  LogFile log;
  if (!options.log.empty()) {
    log.reset(std::fopen(options.log.c_str(), "ae"));
    if (!log) {
      std::fprintf(stderr, "tallow-player: %s cannot be written.\n", options.log.c_str());
      return 1;
    }
    std::setvbuf(log.get(), nullptr, _IOLBF, BUFSIZ);
  }
  const int listening = ListeningSocket(options.handed_socket);
  if (listening < 0) return 1;

  sd_event* raw_loop = nullptr;
  Require(sd_event_default(&raw_loop), "the event loop");
  const EventLoop loop(raw_loop);
  // Ignore SIGPIPE: the reader of standard error may end before the player.
  std::signal(SIGPIPE, SIG_IGN);
  // Block the signals before threads are created; otherwise a thread might receive them.
  sigset_t ends;
  sigemptyset(&ends);
  for (const int signal : kEndSignals) sigaddset(&ends, signal);
  sigprocmask(SIG_BLOCK, &ends, nullptr);

  SongPlayer player(raw_loop, options.output);
  std::unique_ptr<RequestServer> server;
  std::unique_ptr<Mpris> mpris;
  std::function<void()> close = [&] {
    // A client that starts a player right after the answer must get a new player.
    server->StopListening();
    // Shutdown of the event loop would wait for a bus that does not answer.
    if (mpris) mpris->Leave();
    sd_event_exit(raw_loop, 0);
  };
  PlayerRequests requests(player, close);
  server = std::make_unique<RequestServer>(
      raw_loop, listening,
      [&](const PlayerRequestHead& head, const std::string& payload,
          const RequestServer::Answer& answer) {
        if (log) std::fprintf(log.get(), "%s\n", DescribeRequest(head, payload).c_str());
        return requests.Execute(head, payload, answer);
      });
  mpris = std::make_unique<Mpris>(raw_loop, player, close);
  player.OnChange([&](PlayerChange change) { mpris->Changed(change); });
  const IdleEnd idle_end(raw_loop, player, *server, close);
  for (const int signal : kEndSignals)
    Require(sd_event_add_signal(
                raw_loop, nullptr, signal,
                [](sd_event_source*, const signalfd_siginfo*, void* end) {
                  (*static_cast<std::function<void()>*>(end))();
                  return 0;
                },
                &close),
            "the event loop");
  Require(sd_event_loop(raw_loop), "the event loop");
  // Close the connections first, because shutting down the sound takes longer.
  server->CloseAll();
  player.OnChange({});
  return 0;
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  const tallow::Options options = tallow::ParseOptions(argc, argv);
  if (!options.error.empty()) {
    std::fprintf(stderr, "tallow-player: %s\n%s", options.error.c_str(), tallow::kUsage.data());
    return tallow::kUsageError;
  }
  if (options.help) {
    std::fputs(tallow::kUsage.data(), stdout);
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

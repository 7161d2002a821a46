// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdio>
#include <exception>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "player/substitute/idle_shutdown.h"
#include "player/substitute/player_front.h"
#include "player/substitute/player_options.h"
#include "player/substitute/player_requests.h"
#include "player/substitute/song_player.h"
#include "player/substitute/sound_engine.h"
#include "util/program_arguments.h"
#include "util/version.h"

namespace tallow {
namespace {

constexpr int kUsageError = 2;

/// The parts of the player, connected with each other.
class PlayerProcess {
 public:
  /// \param log may be closed
  /// \throws std::runtime_error when a part cannot be set up
  PlayerProcess(PlayerFront& front, const SoundOutput& output, std::ofstream log)
      : front_(front),
        log_(std::move(log)),
        engine_(front.Loop(), output),
        player_(front.Loop(), engine_),
        requests_(player_, [this] { Close(); }),
        idle_shutdown_(
            front.Loop(), [this] { return player_.Status() == kStopped && !front_.HasClients(); },
            [this] { Close(); }) {
    front_.Open(
        player_,
        [this](const PlayerRequestHead& head, const std::string& payload,
               const std::function<void(PlayerAnswer)>& answer,
               const std::function<void(std::string)>& answer_text) {
          if (log_.is_open()) log_ << DescribeRequest(head, payload) << std::endl;
          return requests_.Execute(head, payload, answer, answer_text);
        },
        [this] { Close(); });
    player_.OnChange([this](PlayerChange change) { front_.Announce(change); });
  }

  /// Runs the event loop until the player is closed.
  /// \returns the exit code
  int Run() {
    const int code = front_.Loop().Run();
    // Close the connections first, because shutting down the sound takes longer.
    front_.Close();
    player_.OnChange({});
    return code;
  }

  void Close() {
    front_.StopAccepting();
    front_.Loop().Exit(0);
  }

 private:
  PlayerFront& front_;
  std::ofstream log_;
  SoundEngine engine_;
  SongPlayer player_;
  PlayerRequests requests_;
  IdleShutdown idle_shutdown_;
};

/// \returns the exit code
int Run(const PlayerOptions& options) {
  std::ofstream log;
  if (!options.log.empty()) {
    log.open(options.log, std::ios::app);
    if (!log) {
      std::fprintf(stderr, "tallow-player: %s cannot be written.\n", options.log.c_str());
      return 1;
    }
  }
  const std::unique_ptr<PlayerFront> front = NewPlayerFront(options);
  if (!front) return 1;
  std::function<void()> close;
  front->Loop().CallAtEnd([&close] { close(); });
  PlayerProcess process(*front, options.output, std::move(log));
  close = [&process] { process.Close(); };
  return process.Run();
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  const tallow::PlayerOptions options = tallow::ParseOptions(tallow::ProgramArguments(argc, argv));
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

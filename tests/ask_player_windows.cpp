// SPDX-License-Identifier: GPL-3.0-or-later
// Sends one request to the running player of an application folder and prints its answer.
//
// Usage: ask_player.exe FOLDER MESSAGE WPARAM LPARAM   prints a number
//        ask_player.exe FOLDER JSON                    prints JSON, see tallow_player_requests.h
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "player/player_identifier.h"
#include "player/player_link.h"

int main(int argc, char** argv) {
  if (argc != 3 && argc != 5) return EXIT_FAILURE;
  const std::unique_ptr<tallow::PlayerLink> link =
      tallow::SystemPlayerLink(tallow::PlayerIdentifier(argv[1]));
  link->UseProgram("tallow-player.exe");
  const tallow::PlayerHandle player = link->Find();
  if (player == 0) {
    std::fputs("No player runs.\n", stderr);
    return EXIT_FAILURE;
  }
  if (argc == 5) {
    const auto message = static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10));
    std::printf("%lld\n", static_cast<long long>(link->Send(player, message, std::atoll(argv[3]),
                                                            std::atoll(argv[4]))));
    return EXIT_SUCCESS;
  }
  const std::optional<std::string> answer = link->Ask(player, argv[2]);
  if (!answer) return EXIT_FAILURE;
  std::puts(answer->c_str());
  return EXIT_SUCCESS;
}

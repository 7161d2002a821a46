// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/player_options.h"

namespace tallow {

PlayerOptions ParseOptions(int argc, char** argv) {
  PlayerOptions options;
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

}  // namespace tallow

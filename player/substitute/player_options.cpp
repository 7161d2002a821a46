// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/player_options.h"

#include <algorithm>
#include <cstdlib>

namespace tallow {
namespace {

constexpr double kMaxPace = 100;

/// Whether an identifier can be part of the names of files, windows and on the bus.
bool IsIdentifier(const std::string& text) noexcept {
  constexpr std::size_t kMaxLength = 32;
  return text.size() <= kMaxLength && std::all_of(text.begin(), text.end(), [](char c) {
           return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
         });
}

}  // namespace

PlayerOptions ParseOptions(const std::vector<std::string>& arguments) {
  PlayerOptions options;
  for (std::size_t i = 0; i < arguments.size() && options.error.empty(); ++i) {
    const std::string& argument = arguments[i];
    const auto value = [&](const char* what) -> std::string {
      if (i + 1 < arguments.size() && !arguments[i + 1].empty()) return arguments[++i];
      options.error = argument + " requires " + what + ".";
      return {};
    };
    const auto pace = [&]() -> double {
      const double speed =
          i + 1 < arguments.size() ? std::strtod(arguments[++i].c_str(), nullptr) : 0;
      if (speed >= 1 && speed <= kMaxPace) return speed;
      options.error = argument + " requires a speed from 1 to 100.";
      return 0;
    };
    if (argument == "--audio-file")
      options.output.file = value("a file");
    else if (argument == "--paced")
      options.output.pace = pace();
    else if (argument == "--silent")
      options.output.silent = true;
    else if (argument == "--log")
      options.log = value("a file");
    else if (argument == "--identifier")
      options.identifier = value("an identifier");
    else if (argument == "--listen")
      options.handed_socket = true;
    else if (argument == "--errors-later")
      options.handed_errors = true;
    else if (argument == "--help")
      options.help = true;
    else if (argument == "--version")
      options.version = true;
    else
      options.error = "Unknown option " + argument + ".";
  }
  if (options.error.empty() && !IsIdentifier(options.identifier))
    options.error = "--identifier requires up to 32 lower-case letters and digits.";
  return options;
}

}  // namespace tallow

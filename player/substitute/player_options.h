// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "player/substitute/sound_engine.h"

namespace tallow {

/// The text of --help; NUL-terminated.
inline constexpr const char* kUsage =
    "Usage: tallow-player [OPTION...]\n"
    "The player that Tallow starts. It has no window and takes its commands from a socket.\n"
    "\n"
    "  --audio-file FILE  write the sound to FILE (WAV), as fast as possible\n"
    "  --paced SPEED      write the file at SPEED times real time only\n"
    "  --silent           play without sound, in real time\n"
    "  --log FILE         append every message to FILE, one per line\n"
    "  --listen           receive messages on the socket that was handed over as descriptor 3\n"
    "  --errors-later     write messages to descriptor 4 when the player has started\n"
    "  --identifier ID    the player of one of several Tallows; ID is part of its names\n"
    "  --help, --version  print and exit\n";

/// The options of the command line.
struct PlayerOptions {
  SoundOutput output;
  std::string log;             ///< path of the log; empty for none
  std::string identifier;      ///< lower-case letters and digits; empty for none
  bool handed_socket = false;  ///< the socket to listen on is an open descriptor
  /// Standard error is only for the start; the usual one is an open descriptor.
  bool handed_errors = false;
  bool help = false;
  bool version = false;
  std::string error;  ///< what is wrong with the options; empty when they are valid
};

/// Stops at the first argument that is wrong, and names it in PlayerOptions::error.
/// \param arguments see ProgramArguments
PlayerOptions ParseOptions(const std::vector<std::string>& arguments);

}  // namespace tallow

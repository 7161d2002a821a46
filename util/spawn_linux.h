// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <sys/types.h>

namespace tallow {

/// The number under which a started program finds the descriptor that was handed to it.
inline constexpr int kHandedDescriptor = 3;

/// Starts a program that has nothing to do with this one from then on: it has a session of its own,
/// reads nothing on its standard input, and its end is the system's business.
///
/// \param arguments those behind the program's name
/// \param handed    a file descriptor that the program finds as number kHandedDescriptor; below 0
///                  for none
/// \returns the process id; 0 when the program cannot be run
pid_t Spawn(const std::string& path, std::span<const std::string> arguments, int handed = -1);

}  // namespace tallow

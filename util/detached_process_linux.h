// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <sys/types.h>

namespace tallow {

/// Descriptor number of the handed-over file in the started program.
inline constexpr int kHandedDescriptor = 3;

/// Starts a detached program: it has its own session, an empty standard input, and is reaped by
/// init.
///
/// \param arguments without the program name
/// \param handed    a file descriptor that the program gets as kHandedDescriptor; below 0 for none
/// \returns the process id; 0 when the program cannot be run
pid_t Spawn(const std::string& path, std::span<const std::string> arguments, int handed = -1);

}  // namespace tallow

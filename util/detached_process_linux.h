// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <sys/types.h>

namespace tallow {

/// Descriptor number of the handed-over file in the started program.
inline constexpr int kHandedDescriptor = 3;
/// Descriptor number of the usual standard error in a program that was started with another one.
inline constexpr int kUsualErrors = 4;

/// The files that a started program gets; a descriptor below 0 for none.
struct SpawnFiles {
  int handed = -1;  ///< it gets this as kHandedDescriptor
  int errors = -1;  ///< its standard error; it then gets that of this process as kUsualErrors
};

/// Starts a detached program: it has its own session, an empty standard input, and is reaped by
/// init.
///
/// \param arguments without the program name
/// \returns the process id; 0 when the program cannot be run
pid_t Spawn(const std::string& path, std::span<const std::string> arguments,
            const SpawnFiles& files = {});

}  // namespace tallow

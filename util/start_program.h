// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// How the first window of a started program comes up. Linux leaves that to the program.
enum class FirstWindow {
  kNormal,
  kMinimizedWithoutFocus,
};

/// Starts a program without arguments and does not wait for it. On Linux it gets a session of its
/// own, so that what ends Tallow does not end it, and reads nothing from Tallow's standard input.
///
/// \param path the program's full path
/// \returns whether there is a process now
bool StartProgram(const std::string& path, FirstWindow window);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// The state of a started program's first window. Linux ignores it.
enum class FirstWindow {
  kNormal,
  kMinimizedWithoutFocus,
};

/// Starts a program without arguments and does not wait for it. On Linux the program gets its own
/// session, so that it survives the end of Tallow, and an empty standard input.
///
/// \param path the program's full path
/// \returns whether the process was started
bool StartProgram(const std::string& path, FirstWindow window);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// The folder for user data of programs, ending in a separator: XDG_DATA_HOME or ~/.local/share on
/// Linux, LocalAppData on Windows. Empty when it cannot be determined.
std::string UserDataFolder();

/// The user's home folder, ending in a separator; empty when it cannot be determined.
std::string HomeFolder();

/// The full path of the running program; empty when it cannot be determined.
std::string ExecutablePath();

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// The folder for the data of the user's programs, ending in a separator: XDG_DATA_HOME or
/// ~/.local/share on Linux, LocalAppData on Windows. Empty when the system tells of none.
std::string UserDataFolder();

/// The full path of the running program; empty when the system does not tell.
std::string ExecutablePath();

}  // namespace tallow

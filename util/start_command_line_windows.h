// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Runs a command line with a normal window and does not wait for it.
/// \param command the program name, searched for as Windows does, and its arguments
/// \returns false when it could not be started
bool StartCommandLine(const std::string& command);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace tallow {

/// The command-line arguments without the program name: on Linux the raw bytes, on Windows
/// converted to UTF-8.
std::vector<std::string> ProgramArguments(int argc, const char* const* argv);

}  // namespace tallow

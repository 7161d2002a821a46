// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace tallow {

/// The program's arguments without its own name: on Linux the bytes that were given, on Windows the
/// command line as UTF-8.
std::vector<std::string> ProgramArguments(int argc, const char* const* argv);

/// Lets standard output and standard error reach the terminal that the program was started from. A Windows
/// program with windows does not have it by itself; one whose output goes to a file or a pipe keeps that.
void UseTerminal();

/// Says why the program ends before it has a window: on standard error, or where a Windows program has
/// none, in a message box.
void TellBeforeWindows(const std::string& text);

}  // namespace tallow

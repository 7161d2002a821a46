// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Connects standard output and standard error to the terminal that started the program. On Windows
/// a GUI program is not connected by itself. Streams redirected to a file or pipe stay as they are.
void UseTerminal();

/// Reports why the program exits before its first window: on standard error, or in a message box
/// where a Windows program has no standard error.
void ReportStartError(const std::string& text);

}  // namespace tallow

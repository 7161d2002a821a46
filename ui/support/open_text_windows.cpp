// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/open_text.h"
#include "util/start_command_line_windows.h"

namespace tallow {

void OpenText(const std::string& path) { StartCommandLine("notepad.exe " + path); }

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "app/help_file.h"
#include "util/file_system.h"
#include "util/start_command_line_windows.h"

namespace tallow {

bool OpenHelpFile(const std::string& path) {
  // Newer versions of Windows do not include WinHelp.exe.
  return FileExists(path) &&
         SearchPathW(nullptr, L"WinHelp.exe", nullptr, 0, nullptr, nullptr) != 0 &&
         StartCommandLine("WinHelp.exe " + path);
}

}  // namespace tallow

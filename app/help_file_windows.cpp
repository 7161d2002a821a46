// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "app/help_file.h"
#include "util/file_system.h"
#include "util/wide_text_windows.h"

namespace tallow {

bool OpenHelpFile(const std::string& path) {
  // Newer systems have left the program out.
  if (!FileExists(path) || SearchPathW(nullptr, L"WinHelp.exe", nullptr, 0, nullptr, nullptr) == 0)
    return false;
  std::wstring command = ToWide("WinHelp.exe " + path);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_SHOWNORMAL;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                      &process))
    return false;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/start_command_line_windows.h"

#include <windows.h>

#include "util/wide_text_windows.h"

namespace tallow {

bool StartCommandLine(const std::string& command) {
  std::wstring line = ToWide(command);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_SHOWNORMAL;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                      &process))
    return false;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

}  // namespace tallow

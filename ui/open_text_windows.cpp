// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "ui/open_text.h"
#include "util/wide_text_windows.h"

namespace tallow {

void OpenText(const std::string& path) {
  std::wstring command = L"notepad.exe " + ToWide(path);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_SHOWNORMAL;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                      &process))
    return;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
}

}  // namespace tallow

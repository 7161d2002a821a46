// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "util/path_text.h"
#include "util/start_program.h"
#include "util/wide_text_windows.h"

namespace tallow {

bool StartProgram(const std::string& path, FirstWindow window) {
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = window == FirstWindow::kNormal ? SW_SHOWNORMAL : SW_SHOWMINNOACTIVE;
  // A path in quotes is taken whole, and a Windows path holds no quote.
  std::wstring command_line = L"\"" + ToWide(path) + L"\"";
  const std::wstring folder = ToWide(FolderOfPath(path));
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      folder.empty() ? nullptr : folder.c_str(), &start, &process))
    return false;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return process.dwProcessId != 0;
}

}  // namespace tallow

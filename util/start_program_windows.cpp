// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>
// The one below needs what the one above declares.
#include <shellapi.h>

#include "util/path_text.h"
#include "util/start_program.h"
#include "util/wide_text_windows.h"

namespace tallow {

namespace {

/// ERROR_ELEVATION_REQUIRED, which not every header of the Windows API has.
constexpr DWORD kElevationRequired = 740;

bool StartFromShell(const std::string& path, int show) {
  // The call says success with a number above this one.
  constexpr INT_PTR kMaxErrors = 32;
  return reinterpret_cast<INT_PTR>(ShellExecuteW(nullptr, nullptr, ToWide(path).c_str(), nullptr,
                                                 nullptr, show)) > kMaxErrors;
}

}  // namespace

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
    // An installer may want more rights, which only the shell can ask the user for.
    return GetLastError() == kElevationRequired && StartFromShell(path, start.wShowWindow);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return process.dwProcessId != 0;
}

}  // namespace tallow

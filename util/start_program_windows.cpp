// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>
// shellapi.h needs the declarations of windows.h.
#include <shellapi.h>

#include "util/path_text.h"
#include "util/start_program.h"
#include "util/wide_text_windows.h"

namespace tallow {

namespace {

/// ERROR_ELEVATION_REQUIRED, which is missing from some Windows headers.
constexpr DWORD kElevationRequired = 740;

bool StartFromShell(const std::string& path, int show) {
  // ShellExecuteW returns a value above this on success.
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
  // The quotes keep a path with blanks in one piece; a Windows path cannot contain a quote.
  std::wstring command_line = L"\"" + ToWide(path) + L"\"";
  const std::wstring folder = ToWide(FolderOfPath(path));
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      folder.empty() ? nullptr : folder.c_str(), &start, &process))
    // An installer may require elevation, which only the shell can request from the user.
    return GetLastError() == kElevationRequired && StartFromShell(path, start.wShowWindow);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return process.dwProcessId != 0;
}

}  // namespace tallow

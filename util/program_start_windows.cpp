// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdio>
#include <windows.h>
// The one below needs what the one above declares.
#include <shellapi.h>

#include "util/program_start.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

void UseConsoleFor(DWORD output, std::FILE* stream) {
  const HANDLE given = GetStdHandle(output);
  const bool goes_elsewhere =
      given != nullptr && given != INVALID_HANDLE_VALUE && GetFileType(given) != FILE_TYPE_UNKNOWN;
  if (!goes_elsewhere && std::freopen("CONOUT$", "w", stream) != nullptr)
    std::setvbuf(stream, nullptr, _IONBF, 0);
}

}  // namespace

std::vector<std::string> ProgramArguments(int /*argc*/, const char* const* /*argv*/) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int k = 1; wide != nullptr && k < count; ++k) arguments.push_back(FromWide(wide[k]));
  LocalFree(wide);
  return arguments;
}

void UseTerminal() {
  if (!AttachConsole(ATTACH_PARENT_PROCESS)) return;
  UseConsoleFor(STD_OUTPUT_HANDLE, stdout);
  UseConsoleFor(STD_ERROR_HANDLE, stderr);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdio>
#include <cstdlib>
#include <io.h>
#include <windows.h>

#include "util/terminal.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

/// Whether a stream of the C library was connected when the program started.
bool IsConnected(std::FILE* stream) {
  const int descriptor = _fileno(stream);
  return descriptor >= 0 && _get_osfhandle(descriptor) >= 0;
}

UINT page_before = 0;

void GiveBackCodePage() { SetConsoleOutputCP(page_before); }

}  // namespace

void UseTerminal() {
  // Check before AttachConsole: after it, every handle looks connected.
  std::FILE* const streams[] = {stdout, stderr};
  const bool connected[] = {IsConnected(stdout), IsConnected(stderr)};
  if ((connected[0] && connected[1]) || !AttachConsole(ATTACH_PARENT_PROCESS)) return;
  for (int k = 0; k < 2; ++k)
    if (!connected[k] && std::freopen("CONOUT$", "w", streams[k]) != nullptr)
      std::setvbuf(streams[k], nullptr, _IONBF, 0);
  // Output is UTF-8; set the code page of the console accordingly.
  page_before = GetConsoleOutputCP();
  if (page_before != 0 && SetConsoleOutputCP(CP_UTF8)) std::atexit(GiveBackCodePage);
}

void ReportStartError(const std::string& text) {
  if (IsConnected(stderr))
    std::fprintf(stderr, "%s\n", text.c_str());
  else
    MessageBoxW(nullptr, ToWide(text).c_str(), L"Tallow", MB_OK | MB_ICONERROR);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>
// shellapi.h needs the declarations of windows.h.
#include <shellapi.h>

#include "util/program_arguments.h"
#include "util/wide_text_windows.h"

namespace tallow {

std::vector<std::string> ProgramArguments(int /*argc*/, const char* const* /*argv*/) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int k = 1; wide != nullptr && k < count; ++k) arguments.push_back(FromWide(wide[k]));
  LocalFree(wide);
  return arguments;
}

}  // namespace tallow

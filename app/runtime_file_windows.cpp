// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "app/runtime_file.h"
#include "util/path_text.h"
#include "util/wide_text_windows.h"

namespace tallow {

RuntimeFile RequiredRuntimeFile(const std::string& /*qt_plugin_folder*/) {
  wchar_t folder[MAX_PATH] = {};
  const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
  return {EnsureTrailingBackslash(FromWide({folder, length})) + "comctl32.dll",
          "Windows itself (\"sfc /scannow\" restores it)"};
}

}  // namespace tallow

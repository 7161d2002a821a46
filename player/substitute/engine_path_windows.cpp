// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "player/substitute/engine_path.h"
#include "util/wide_text_windows.h"

namespace tallow {

std::string EnginePath(const std::string& path) {
  // MAX_PATH includes the NUL at the end.
  return ToWide(path).size() < MAX_PATH ? path : FromWide(ToWidePath(path));
}

}  // namespace tallow

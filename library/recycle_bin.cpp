// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/recycle_bin.h"

#include <string>

#include "library/recycle_bin_platform.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {

bool IsInRecycleBin(std::string_view folder) {
  if (folder.find(':') != std::string_view::npos) {
    const std::string upper = ToUpper(folder);
    for (const std::string_view bin : {"RECYCLED", "$RECYCLE.BIN"})
      if (upper.find(std::string(":") + kSeparator + std::string(bin)) != std::string::npos)
        return true;
  }
  return IsInPlatformBin(folder);
}

}  // namespace tallow

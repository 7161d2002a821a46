// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/recycle_bin_platform.h"

namespace tallow {

bool IsInPlatformBin(std::string_view /*folder*/) { return false; }

}  // namespace tallow

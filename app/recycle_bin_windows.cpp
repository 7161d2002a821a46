// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/recycle_bin_platform.h"

namespace tallow {

bool IsInPlatformBin(std::string_view /*folder*/) { return false; }

}  // namespace tallow

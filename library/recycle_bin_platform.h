// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Whether a folder lies in a recycle bin that is specific to this platform.
bool IsInPlatformBin(std::string_view folder);

}  // namespace tallow

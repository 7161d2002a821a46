// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Whether a folder lies in a bin that only this platform has.
bool IsInPlatformBin(std::string_view folder);

}  // namespace tallow

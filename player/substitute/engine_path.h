// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Converts an absolute path for libmpv. Windows limits paths to 260 characters, except those with
/// the prefix \\?\, so a longer one gets this prefix.
std::string EnginePath(const std::string& path);

}  // namespace tallow

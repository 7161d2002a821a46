// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

namespace tallow {

// Time limits for a drive that does not answer a file system query.

/// After this time the user is shown that the program is waiting for the drive.
inline constexpr std::chrono::milliseconds kSlowAfter{1000};

/// After this time the drive is given up, unless the user gave it up before.
inline constexpr std::chrono::milliseconds kMaxWait{30000};

}  // namespace tallow

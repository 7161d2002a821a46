// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// The program's version, which the splash window shows as "Version  0.1".
inline constexpr int kMajorVersion = TALLOW_MAJOR_VERSION;
inline constexpr int kMinorVersion = TALLOW_MINOR_VERSION;

}  // namespace tallow

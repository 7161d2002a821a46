// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// Returns whether a display server is available, so that a window can be opened. Without one, Qt
/// ends the process.
bool HasDisplay();

}  // namespace tallow

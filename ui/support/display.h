// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// Whether a window can be opened. Qt itself only says so by ending the process.
bool HasDisplay();

}  // namespace tallow

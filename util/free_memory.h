// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// Returns freed memory of the heap to the system; takes a few milliseconds. For work that has
/// needed much more memory than it leaves.
void ReturnFreeMemory() noexcept;

}  // namespace tallow

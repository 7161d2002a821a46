// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// Gives the calling thread the lowest priority for the processor and for disks, until it ends.
/// Does nothing where the system refuses.
void LowerThreadPriority() noexcept;

}  // namespace tallow

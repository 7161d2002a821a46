// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// Resident memory of this process, KiB.
long ProcessMemory();

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/mounted_volumes.h"

namespace tallow {

/// What the system shows where now: on Linux the mount table, each file system known by its UUID or, on a
/// network, by its source; on Windows the drive letters, known by the share or the volume's serial number.
MountedVolumes SystemVolumes();

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/mounted_volumes.h"

namespace tallow {

/// The volumes that are mounted now: on Linux the mount table, each file system identified by its
/// UUID or, on a network, by its source; on Windows the drive letters, identified by the share or
/// by the volume's serial number.
MountedVolumes SystemVolumes();

}  // namespace tallow

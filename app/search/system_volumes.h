// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/mounted_volumes.h"
#include "library/new_folders.h"

namespace tallow {

/// The volumes that are mounted now: on Linux the mount table, each file system identified by its
/// UUID or, on a network, by its source; on Windows the drive letters, identified by the share or
/// by the volume's serial number.
MountedVolumes SystemVolumes();

/// The limits of the search for new folders on this computer: the user's home folder, and on Linux
/// all mount points, also those of the kernel's pseudo file systems. On Windows a volume that is
/// mounted in a folder is a link.
WalkLimits SystemWalkLimits();

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "app/search/drive_list.h"
#include "app/search/mount_table_linux.h"
#include "library/mounted_volumes.h"

namespace tallow {

/// Where the system describes its mounts and block devices. Tests use their own folders.
struct MountSources {
  std::string mount_table = "/proc/self/mountinfo";
  /// Contains a link for each block device, named after its number, to its folder in /sys; ends in
  /// a separator.
  std::string block_devices = "/sys/dev/block/";
  /// Contains a link for each file system, named after its UUID, to its device.
  std::string uuids = "/dev/disk/by-uuid";
  /// See DeviceNumberOf.
  std::function<std::string(const std::string& path)> device_number_of = DeviceNumberOf;
};

/// The text of the mount table; empty when it cannot be read.
std::string ReadMountTable(const MountSources& sources);

/// The drives of a mount table, see SystemDrives.
std::unique_ptr<DriveList> DrivesFrom(const MountSources& sources);

/// The volumes of a mount table, see SystemVolumes.
MountedVolumes VolumesFrom(const MountSources& sources);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "library/mounted_volumes.h"

namespace tallow {

/// One line of the kernel's mount table.
struct Mount {
  std::string device;  ///< the number of the device, "8:1"
  std::string root;    ///< the part of that device's file system that is mounted, "/" for all of it
  std::string point;   ///< the mount point, without a separator at the end ("/" itself excepted)
  std::string type;    ///< of the file system, "ext4"
  std::string source;  ///< the mounted device or share, "/dev/sda1" or "server:/music"
};

/// Parses the text of /proc/self/mountinfo. Skips malformed lines. Of two mounts at one mount point
/// only the later, which hides the earlier, is kept.
std::vector<Mount> ParseMountTable(std::string_view text);

/// Whether a file system of this type shows the state of the kernel instead of stored files.
bool IsPseudoFileSystem(std::string_view type) noexcept;

/// Whether a file system of this type is a compressed image that programs are distributed in.
bool IsProgramImage(std::string_view type) noexcept;

/// Properties of a block device.
struct BlockDevice {
  bool exists = false;     ///< the source of a mount is a block device
  bool removable = false;  ///< a removable medium, or a device on a USB port
};

/// The kind of drive that a mount is, see DriveType.
int TypeOfMount(const Mount& mount, const BlockDevice& device) noexcept;

/// The mounts that are drives, in order of mount point: without pseudo file systems and mounts on a
/// file; of several mounts of the same part of the same device only the first.
///
/// \param is_folder whether a mount point is a folder; called only for mounts on local disks,
///                  because the server of a network mount may not respond
std::vector<Mount> DrivesOf(const std::vector<Mount>& table,
                            const std::function<bool(const std::string&)>& is_folder);

/// The number of a block device, "8:1"; empty when the path is not a block device.
std::string DeviceNumberOf(const std::string& path);

/// Whether accessing files on a mount requires a server.
bool IsOnNetwork(const Mount& mount) noexcept;

/// The mounted volumes with the identities of their file systems: the UUID, or for a network file
/// system its source. Device names are not identities, since the next USB stick gets the same name.
///
/// \param uuid_of the UUID of a mount's file system; empty when unknown
MountedVolumes VolumesOf(const std::vector<Mount>& table,
                         const std::function<std::string(const Mount&)>& uuid_of);

/// Whether a check for the root of a drive of this type returns at once.
bool RespondsImmediately(int drive_type) noexcept;

}  // namespace tallow

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
  std::string root;    ///< which part of that device's file system is mounted, "/" for all of it
  std::string point;   ///< where, without a separator at the end ("/" itself excepted)
  std::string type;    ///< of the file system, "ext4"
  std::string source;  ///< what is mounted, "/dev/sda1" or "server:/music"
};

/// Reads the text of /proc/self/mountinfo. Lines that are not of its form are left out. Of two
/// mounts at one place only the later one, which hides the other, is kept.
std::vector<Mount> ParseMountTable(std::string_view text);

/// Whether a file system of this type shows the kernel's own state instead of anyone's files.
bool IsPseudoFileSystem(std::string_view type) noexcept;

/// What is known of a block device.
struct BlockDevice {
  bool exists = false;     ///< the source of a mount is a block device
  bool removable = false;  ///< a medium that can be taken out, or a device on a USB port
};

/// What kind of drive a mount is, see DriveType.
int TypeOfMount(const Mount& mount, const BlockDevice& device) noexcept;

/// The mounts that are drives, in order of mount point: no pseudo file systems, nothing that is
/// mounted on a file, and of the same part of the same device only the first.
///
/// \param is_folder tells whether a mount point is a folder; asked only of mounts on local disks, because
///        the server of another one may not answer
std::vector<Mount> DrivesOf(const std::vector<Mount>& table,
                            const std::function<bool(const std::string&)>& is_folder);

/// The number of a block device, "8:1"; empty where the path leads to none.
std::string DeviceNumberOf(const std::string& path);

/// Whether a server is asked for what lies on a mount.
bool IsOnNetwork(const Mount& mount) noexcept;

/// What is mounted where, with the identities of the file systems: the UUID, else of a network file system
/// its source. The names of devices are none, since another stick gets the same name.
///
/// \param uuid_of the UUID of a mount's file system; empty where it is not known
MountedVolumes VolumesOf(const std::vector<Mount>& table,
                         const std::function<std::string(const Mount&)>& uuid_of);

/// Whether a drive of this type answers at once when it is asked whether its root is there.
bool AnswersAtOnce(int drive_type) noexcept;

}  // namespace tallow

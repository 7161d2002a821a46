// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unordered_set>

#include "app/search/drive_list.h"
#include "app/search/mount_table_linux.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {
namespace {

std::string ReadMountTable() {
  try {
    return ReadWholeFile("/proc/self/mountinfo").value_or(std::string());
  } catch (const FileError&) {
    return {};
  }
}

/// Whether a device, or the disk that it is a partition of, is removable or on a USB port. A
/// composite device (encrypted, joined) is removable when one of its parts is.
///
/// \param folder the device's folder in /sys
/// \param depth  maximum number of further device layers to descend
bool IsRemovable(std::string folder, int depth) {
  if (folder.find("/usb") != std::string::npos) return true;
  if (depth == 0) return false;
  for (const SubfolderEntry& below :
       ListFolder(folder + "/slaves", {.subfolders = true}).subfolders)
    if (IsRemovable(AbsolutePath(folder + "/slaves/" + below.name), depth - 1)) return true;
  // A partition's folder lies in its disk's folder; only the disk's folder contains the flag.
  for (int level = 0; level < 2; ++level) {
    try {
      const auto mark = ReadWholeFile(folder + "/removable");
      if (mark) return mark->starts_with('1');
    } catch (const FileError&) {
      return false;
    }
    const std::string_view parent = FolderOfPath(folder);
    if (parent.size() < 2) return false;
    folder = std::string(parent.substr(0, parent.size() - 1));
  }
  return false;
}

bool IsRemovable(dev_t device) {
  constexpr int kMaxLayers = 4;
  const std::string link =
      "/sys/dev/block/" + std::to_string(major(device)) + ":" + std::to_string(minor(device));
  const std::string folder = AbsolutePath(link);
  return folder != link && IsRemovable(folder, kMaxLayers);
}

BlockDevice DeviceOf(const Mount& mount) {
  struct stat status {};
  if (!mount.source.starts_with('/') || stat(mount.source.c_str(), &status) != 0 ||
      !S_ISBLK(status.st_mode)) {
    // The source of the root mount may be a name without an entry in /dev. The device number still
    // identifies the device.
    const bool numbered = FolderExists("/sys/dev/block/" + mount.device);
    return {numbered, false};
  }
  return {true, IsRemovable(status.st_rdev)};
}

class MountedDrives : public DriveList {
 public:
  MountedDrives()
      : table_(ParseMountTable(ReadMountTable())), drives_(DrivesOf(table_, FolderExists)) {
    for (const Mount& mount : table_) points_.insert(EnsureTrailingBackslash(mount.point));
  }

  std::string GetLogicalDriveList() const override {
    std::string list;
    for (const Mount& drive : drives_)
      list.append(EnsureTrailingBackslash(drive.point)).push_back(0);
    return list.empty() ? list : list + '\0';
  }

  int TypeOf(const std::string& root) const override {
    const int type = ListedTypeOf(root);
    return RespondsImmediately(type) && !FolderExists(root) ? kNoDrive : type;
  }

  int ListedTypeOf(const std::string& root) const override {
    const auto drive = std::find_if(drives_.begin(), drives_.end(), [&](const Mount& mount) {
      return EnsureTrailingBackslash(mount.point) == root;
    });
    return drive == drives_.end() ? kUnknownDrive : TypeOfMount(*drive, DeviceOf(*drive));
  }

  bool IsMountPoint(const std::string& folder) const override { return points_.contains(folder); }

  bool MayFollow(const std::string& linked_folder) const override {
    const std::string target = EnsureTrailingBackslash(AbsolutePath(linked_folder));
    const Mount* nearest = nullptr;
    for (const Mount& mount : table_)
      if (target.starts_with(EnsureTrailingBackslash(mount.point)) &&
          (nearest == nullptr || mount.point.size() >= nearest->point.size()))
        nearest = &mount;
    return nearest == nullptr || !IsPseudoFileSystem(nearest->type);
  }

 private:
  std::vector<Mount> table_;
  std::vector<Mount> drives_;
  std::unordered_set<std::string> points_;
};

}  // namespace

std::unique_ptr<DriveList> SystemDrives() { return std::make_unique<MountedDrives>(); }

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "app/search/drive_list.h"
#include "app/search/mount_sources_linux.h"
#include "app/search/mount_table_linux.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {
namespace {

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

BlockDevice DeviceOf(const Mount& mount, const MountSources& sources) {
  constexpr int kMaxLayers = 4;
  const std::string number =
      mount.source.starts_with('/') ? sources.device_number_of(mount.source) : std::string();
  if (number.empty()) {
    // The source of the root mount may be a name without an entry in /dev. The device number still
    // identifies the device.
    const bool numbered = FolderExists(sources.block_devices + mount.device);
    return {numbered, false};
  }
  const std::string link = sources.block_devices + number;
  const std::string folder = AbsolutePath(link);
  return {true, folder != link && IsRemovable(folder, kMaxLayers)};
}

class MountedDrives : public DriveList {
 public:
  explicit MountedDrives(const MountSources& sources)
      : sources_(sources),
        table_(ParseMountTable(ReadMountTable(sources))),
        drives_(DrivesOf(table_, FolderExists)) {
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
    const Mount* const drive = DriveAt(root);
    return drive == nullptr ? kUnknownDrive : TypeOfMount(*drive, DeviceOf(*drive, sources_));
  }

  bool HoldsProgram(const std::string& root) const override {
    const Mount* const drive = DriveAt(root);
    return drive != nullptr && IsProgramImage(drive->type);
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
  /// The drive with this root; null for none.
  const Mount* DriveAt(const std::string& root) const {
    const auto drive = std::find_if(drives_.begin(), drives_.end(), [&](const Mount& mount) {
      return EnsureTrailingBackslash(mount.point) == root;
    });
    return drive == drives_.end() ? nullptr : &*drive;
  }

  const MountSources sources_;
  std::vector<Mount> table_;
  std::vector<Mount> drives_;
  std::unordered_set<std::string> points_;
};

}  // namespace

std::string ReadMountTable(const MountSources& sources) {
  try {
    return ReadWholeFile(sources.mount_table).value_or(std::string());
  } catch (const FileError&) {
    // Without a mount table no drives are known.
    return {};
  }
}

std::unique_ptr<DriveList> DrivesFrom(const MountSources& sources) {
  return std::make_unique<MountedDrives>(sources);
}

std::unique_ptr<DriveList> SystemDrives() { return DrivesFrom({}); }

}  // namespace tallow

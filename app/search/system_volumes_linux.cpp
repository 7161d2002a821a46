// SPDX-License-Identifier: GPL-3.0-or-later
#include <filesystem>
#include <map>
#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <system_error>

#include "app/search/mount_table_linux.h"
#include "app/search/system_volumes.h"
#include "util/errors.h"
#include "util/file_system.h"

namespace tallow {
namespace {

/// Maps device numbers, "8:1", to the UUIDs of their file systems.
std::map<std::string, std::string> UuidsByDevice() {
  std::map<std::string, std::string> uuids;
  std::error_code error;
  for (std::filesystem::directory_iterator link("/dev/disk/by-uuid", error), end;
       !error && link != end; link.increment(error))
    if (const std::string device = DeviceNumberOf(link->path().string()); !device.empty())
      uuids[device] = link->path().filename().string();
  return uuids;
}

}  // namespace

std::string DeviceNumberOf(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISBLK(status.st_mode)) return {};
  return std::to_string(major(status.st_rdev)) + ":" + std::to_string(minor(status.st_rdev));
}

MountedVolumes SystemVolumes() {
  std::string table;
  try {
    table = ReadWholeFile("/proc/self/mountinfo").value_or(std::string());
  } catch (const FileError&) {
    // Without a mount table no drives are known.
  }
  const std::map<std::string, std::string> uuids = UuidsByDevice();
  return VolumesOf(ParseMountTable(table), [&](const Mount& mount) -> std::string {
    auto found = uuids.find(mount.device);
    // A file system of several devices has its own device number, different from the devices'
    // numbers.
    if (found == uuids.end() && mount.source.starts_with('/'))
      found = uuids.find(DeviceNumberOf(mount.source));
    return found != uuids.end() ? found->second : std::string();
  });
}

}  // namespace tallow

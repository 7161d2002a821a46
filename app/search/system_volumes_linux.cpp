// SPDX-License-Identifier: GPL-3.0-or-later
#include <filesystem>
#include <map>
#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <system_error>
#include <vector>

#include "app/search/mount_sources_linux.h"
#include "app/search/mount_table_linux.h"
#include "app/search/system_volumes.h"
#include "util/path_text.h"
#include "util/user_folders.h"

namespace tallow {
namespace {

/// Maps device numbers, "8:1", to the UUIDs of their file systems.
std::map<std::string, std::string> UuidsByDevice(const MountSources& sources) {
  std::map<std::string, std::string> uuids;
  std::error_code error;
  for (std::filesystem::directory_iterator link(sources.uuids, error), end; !error && link != end;
       link.increment(error))
    if (const std::string device = sources.device_number_of(link->path().string()); !device.empty())
      uuids[device] = link->path().filename().string();
  return uuids;
}

}  // namespace

std::string DeviceNumberOf(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISBLK(status.st_mode)) return {};
  return std::to_string(major(status.st_rdev)) + ":" + std::to_string(minor(status.st_rdev));
}

MountedVolumes VolumesFrom(const MountSources& sources) {
  const std::vector<Mount> table = ParseMountTable(ReadMountTable(sources));
  const std::map<std::string, std::string> uuids = UuidsByDevice(sources);
  return VolumesOf(table, [&](const Mount& mount) -> std::string {
    auto found = uuids.find(mount.device);
    // A file system of several devices has its own device number, different from the devices'
    // numbers.
    if (found == uuids.end() && mount.source.starts_with('/'))
      found = uuids.find(sources.device_number_of(mount.source));
    return found != uuids.end() ? found->second : std::string();
  });
}

MountedVolumes SystemVolumes() { return VolumesFrom({}); }

WalkLimits SystemWalkLimits() {
  return {HomeFolder(), [] {
            std::vector<std::string> points;
            for (const Mount& mount : ParseMountTable(ReadMountTable({})))
              points.push_back(EnsureTrailingBackslash(mount.point));
            return points;
          }};
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

/// A folder of a file system, whatever path leads to it.
struct VolumeFolder {
  /// Which file system: "uuid 1234-ABCD", "source server:/music" or "serial 1A2B3C4D"; empty when nothing
  /// tells.
  std::string volume;
  /// The folder's path in it, with separators at both ends.
  std::string inside;
  bool operator==(const VolumeFolder&) const = default;
};

/// A place where the system shows a file system: a mount point, a drive letter or a share.
struct MountedVolume {
  std::string root;          ///< ends in a separator
  VolumeFolder folder;       ///< what is shown there
  bool automounter = false;  ///< nothing is shown yet: the first look at the place mounts it
  bool network = false;      ///< a server is asked, which may not answer
};

/// What is mounted where.
using MountedVolumes = std::vector<MountedVolume>;

/// Asks the system what is mounted where now.
using LookAtVolumes = std::function<MountedVolumes()>;

/// The place that a path lies on: the one with the longest root that the path begins with; null for none.
const MountedVolume* VolumeOf(const MountedVolumes& volumes, std::string_view path);

/// What folder of what file system a path leads to, links left out. Its volume is empty when nothing tells.
VolumeFolder VolumeFolderOf(const MountedVolumes& volumes, std::string_view folder);

/// Where a folder of a file system is shown now.
///
/// \param holds_something asks whether a folder has entries
/// \returns the path, ending in a separator; no value when it is shown nowhere, or holds nothing
std::optional<std::string> PlaceOf(const MountedVolumes& volumes, const VolumeFolder& folder,
                                   const std::function<bool(const std::string&)>& holds_something);

/// Whether a path begins with a folder, which ends in a separator, as texts of this system.
bool LiesBelow(std::string_view path, std::string_view folder);

}  // namespace tallow

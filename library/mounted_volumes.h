// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallow {

/// Identifies a folder in a file system, independent of where it is mounted.
struct VolumeFolder {
  /// Identity of the file system: "uuid 1234-ABCD", "source server:/music" or "serial 1A2B3C4D";
  /// empty when unknown.
  std::string volume;
  /// The folder's path inside the file system, with separators at both ends.
  std::string inside;
  bool operator==(const VolumeFolder&) const = default;
};

/// A mounted file system: a mount point, a drive letter or a share.
struct MountedVolume {
  std::string root;          ///< ends in a separator
  VolumeFolder folder;       ///< the file system and folder mounted there
  bool automounter = false;  ///< not mounted yet: the first access mounts it
  bool network = false;      ///< a network file system, whose server may not answer
};

/// The mount table.
using MountedVolumes = std::vector<MountedVolume>;

/// Callback that reads the current mount table.
using ReadMountedVolumes = std::function<MountedVolumes()>;

/// The mount that contains a path: the one with the longest root that the path begins with; null
/// for none.
const MountedVolume* VolumeOf(const MountedVolumes& volumes, std::string_view path);

/// The file system folder that a path leads to, without resolving links. Its volume is empty when
/// unknown.
VolumeFolder VolumeFolderOf(const MountedVolumes& volumes, std::string_view folder);

/// Finds where a file system folder is mounted now.
///
/// \param has_entries callback that returns whether a folder has entries
/// \returns the path, ending in a separator; no value when the folder is not mounted anywhere or is
/// empty
std::optional<std::string> PlaceOf(const MountedVolumes& volumes, const VolumeFolder& folder,
                                   const std::function<bool(const std::string&)>& has_entries);

/// Whether a path begins with a folder's path, which ends in a separator. Text comparison as in
/// IsSamePathText.
bool LiesBelow(std::string_view path, std::string_view folder);

}  // namespace tallow

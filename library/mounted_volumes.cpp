// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/mounted_volumes.h"

#include "util/path_text.h"
#include "util/text.h"

namespace tallow {

bool LiesBelow(std::string_view path, std::string_view folder) {
  return path.size() >= folder.size() && IsSamePathText(path.substr(0, folder.size()), folder);
}

const MountedVolume* VolumeOf(const MountedVolumes& volumes, std::string_view path) {
  const MountedVolume* longest = nullptr;
  for (const MountedVolume& volume : volumes)
    if ((longest == nullptr || volume.root.size() > longest->root.size()) &&
        LiesBelow(path, volume.root))
      longest = &volume;
  return longest;
}

VolumeFolder VolumeFolderOf(const MountedVolumes& volumes, std::string_view folder) {
  const MountedVolume* const volume = VolumeOf(volumes, folder);
  if (const std::string_view share = ShareOfPath(folder); volume == nullptr && !share.empty())
    return {"source " + ToLower(share.substr(0, share.size() - 1)),
            std::string(folder.substr(share.size() - 1))};
  if (volume == nullptr || volume->folder.volume.empty()) return {};
  return {volume->folder.volume,
          volume->folder.inside + std::string(folder.substr(volume->root.size()))};
}

std::optional<std::string> PlaceOf(const MountedVolumes& volumes, const VolumeFolder& folder,
                                   const std::function<bool(const std::string&)>& has_entries) {
  if (folder.volume.empty()) return std::nullopt;
  for (const MountedVolume& volume : volumes) {
    if (volume.folder.volume != folder.volume || !LiesBelow(folder.inside, volume.folder.inside))
      continue;
    std::string place = volume.root + folder.inside.substr(volume.folder.inside.size());
    // Skip a place that is hidden by another mount on top of it.
    if (VolumeFolderOf(volumes, place) == folder && has_entries(place)) return place;
  }
  return std::nullopt;
}

}  // namespace tallow

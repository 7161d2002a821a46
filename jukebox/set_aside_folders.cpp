// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/set_aside_folders.h"

#include <algorithm>

#include "jukebox/folder_tree.h"
#include "jukebox/special_folders.h"
#include "library/cls_main.h"

namespace tallow {
namespace {

/// What a folder and the folders below it hold.
enum class Holds {
  kOnlySetAside,  ///< songs, all of which are set aside
  kOther,         ///< other songs, or no songs
};

class Collector {
 public:
  Collector(const clsMain& library, std::vector<const Folder*>& found)
      : library_(library), found_(found) {}

  /// Adds the folders that are set aside, of a folder and of those below it.
  Holds Collect(const Folder& folder) {
    const std::size_t before = found_.size();
    bool only_set_aside = std::all_of(
        folder.Items().begin(), folder.Items().end(),
        [this](const SongEntry& entry) { return library_.Song(entry.SubItem()).IsSetAside(); });
    for (std::int32_t k = 0; k < folder.Children(); ++k)
      if (Collect(folder.ChildAt(k)) == Holds::kOther) only_set_aside = false;
    if (folder.Items().empty() && folder.Children() == 0) only_set_aside = false;
    if (!only_set_aside) return Holds::kOther;
    if (!IsSpecialFolder(folder)) {
      found_.resize(before);
      found_.push_back(&folder);
    }
    return Holds::kOnlySetAside;
  }

 private:
  const clsMain& library_;
  std::vector<const Folder*>& found_;
};

}  // namespace

std::vector<const Folder*> FoldersSetAside(const FolderTree& tree, const clsMain& library) {
  std::vector<const Folder*> found;
  if (!library.HasNamesakes()) return found;
  const Folder* const album = library.Switches().albums ? nullptr : FindAlbumFolder(tree);
  if (album != nullptr) found.push_back(album);
  const bool sets_songs_aside =
      !library.Switches().more_formats || !library.Switches().songs_by_path;
  Collector collector(library, found);
  for (std::int32_t k = 0; sets_songs_aside && k < tree.Children(); ++k)
    if (const Folder& folder = tree.ChildAt(k); &folder != album && IsSpecialFolder(folder))
      collector.Collect(folder);
  return found;
}

}  // namespace tallow

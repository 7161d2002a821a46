// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/ranking.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "jukebox/folder_tree.h"
#include "library/cls_main.h"

namespace tallow {
namespace {

/// The lowest rank that the menu stores.
constexpr int kWorstRank = 3;

}  // namespace

bool RankSongs(Folder& folder, const std::vector<int>& rows, int item, clsMain& library) {
  const int picture = kBestRank + 1 - item;
  const std::string rank = std::to_string(std::max(picture, kWorstRank));
  bool changed = false;
  for (const int row : rows) {
    if (row < 0 || static_cast<std::size_t>(row) >= folder.Items().size()) continue;
    SongEntry& entry = folder.Items()[static_cast<std::size_t>(row)];
    const std::int32_t record = entry.SubItem();
    if (!library.Song(record).Exists()) continue;
    library.Mp3Info(kSongRank, record, rank);
    entry.Icon(picture);
    changed = true;
  }
  return !changed || library.Save();
}

}  // namespace tallow

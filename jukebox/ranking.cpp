// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/ranking.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>

#include "jukebox/edit_history.h"
#include "jukebox/folder_tree.h"
#include "jukebox/rank_change.h"
#include "jukebox/step_name.h"
#include "library/cls_main.h"

namespace tallow {
namespace {

/// The lowest rank that the menu stores.
constexpr int kWorstRank = 3;

}  // namespace

bool RankSongs(EditHistory& history, Folder& folder, const std::vector<int>& rows,
               const std::function<NewRank(int rank)>& rank_of, clsMain& library) {
  RankChange change(library);
  std::size_t ranked = 0;
  for (const int row : rows) {
    if (row < 0 || static_cast<std::size_t>(row) >= folder.Items().size()) continue;
    SongEntry& entry = folder.Items()[static_cast<std::size_t>(row)];
    const SongView song = library.Song(entry.SubItem());
    if (!song.Exists()) continue;
    const NewRank rank = rank_of(song.Rank());
    entry.Icon(rank.picture);
    if (library.Mp3Info(kSongRank, entry.SubItem()) == rank.stored) continue;
    change.Add(entry.SubItem(), rank.stored);
    ++ranked;
  }
  // Ranks that could not be saved before are tried again.
  if (change.IsEmpty()) return library.SaveError().empty() || library.Save();
  history.Begin(&folder, NameOfSongStep("Rank", ranked));
  history.ChangeRanks(std::move(change));
  history.End();
  return library.Save();
}

bool RankSongs(EditHistory& history, Folder& folder, const std::vector<int>& rows, int item,
               clsMain& library) {
  const int picture = item == kNoRankItem ? kNeverRanked : kBestRank + 1 - item;
  const int stored = item == kNoRankItem ? kNeverRanked : std::max(picture, kWorstRank);
  const NewRank rank{std::to_string(stored), picture};
  return RankSongs(
      history, folder, rows, [&rank](int /*rank*/) -> const NewRank& { return rank; }, library);
}

void ShowRanksAtAllEntries(Folder& folder, const std::vector<int>& rows) {
  std::vector<SongEntry>& entries = folder.Items();
  std::unordered_map<std::int32_t, std::int32_t> pictures;
  for (const int row : rows)
    if (row >= 0 && static_cast<std::size_t>(row) < entries.size()) {
      const SongEntry& entry = entries[static_cast<std::size_t>(row)];
      pictures[entry.SubItem()] = entry.Icon();
    }
  for (SongEntry& entry : entries)
    if (const auto found = pictures.find(entry.SubItem()); found != pictures.end())
      entry.Icon(found->second);
}

}  // namespace tallow

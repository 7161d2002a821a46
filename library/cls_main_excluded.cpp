// SPDX-License-Identifier: GPL-3.0-or-later
// Songs that earlier versions added from folders that are excluded now (recycle bins and the like).
#include <string>
#include <unordered_map>

#include "library/cls_main.h"
#include "library/excluded_folders.h"
#include "util/text.h"

namespace tallow {

void clsMain::MoveOutOfExcludedFolders(std::int32_t old_count) {
  if (table_.rows() <= old_count) return;
  std::unordered_map<std::string, std::int32_t> excluded;
  bool is_excluded = false;
  for (std::int32_t row = 1; row <= old_count; ++row) {
    // Consecutive songs are usually in the same folder, so reuse the result.
    if (row == 1 || !table_.SameStoredText(kFileLocation, row - 1, row))
      is_excluded = HoldsNoSongs(Song(row).Folder());
    if (is_excluded && IsPresent(row)) excluded.emplace(ToLower(table_.Cell(kFileName, row)), row);
  }
  if (excluded.empty()) return;
  std::vector<char> is_removed(static_cast<std::size_t>(table_.rows()));
  for (std::int32_t row = old_count + 1; row <= table_.rows(); ++row) {
    const auto found = excluded.find(ToLower(table_.Cell(kFileName, row)));
    if (found == excluded.end()) continue;
    // Songs of one name can be different songs.
    if (switches_.songs_by_path && SizeOf(row) != SizeOf(found->second)) continue;
    for (const std::int16_t column : {kFileLocation, kFileName})
      table_.SetCell(column, found->second, table_.Cell(column, row));
    table_.Facts(found->second).size = table_.Facts(row).size;
    table_.Facts(found->second).away = 0;
    is_removed[static_cast<std::size_t>(row - 1)] = 1;
    // Only the first file of that name replaces the song; a second one is a duplicate.
    excluded.erase(found);
    folder_list_.IsStale(true);
  }
  table_.Remove(is_removed);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/records_by_path.h"

#include <bit>
#include <functional>

#include "library/cls_main.h"

namespace tallow {

RecordsByPath::RecordsByPath(const clsMain& library, const std::vector<std::int32_t>& records)
    : library_(library), slots_(std::bit_ceil(records.size() * 2 + 1)) {
  std::string path;
  for (const std::int32_t record : records) {
    const SongView song = library.Song(record);
    path.assign(song.Folder()).append(song.Name());
    std::size_t slot = SlotOf(path);
    while (slots_[slot] != 0) slot = Next(slot);
    slots_[slot] = record;
  }
}

std::size_t RecordsByPath::SlotOf(std::string_view path) const noexcept {
  return std::hash<std::string_view>()(path) & (slots_.size() - 1);
}

bool RecordsByPath::HasPath(std::int32_t record, std::string_view path) const {
  const SongView song = library_.Song(record);
  return path.size() == song.Folder().size() + song.Name().size() &&
         path.starts_with(song.Folder()) && path.ends_with(song.Name());
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/queue_restoring.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_map>

#include "app/playing/handed_over_songs.h"
#include "app/tallow.h"
#include "library/cls_main.h"

namespace tallow {
namespace {

/// The number of paths that fit into one record, at least 1.
std::size_t PathsInRecord(std::span<const std::string> paths) {
  std::size_t bytes = 0;
  std::size_t count = 0;
  while (count < paths.size() && TallowPlayer::FitsInRecord(bytes, paths[count]))
    bytes += TallowPlayer::RecordBytes(paths[count++]);
  return std::max<std::size_t>(count, 1);
}

}  // namespace

SavedSongs SongsToSave(const Tallow& tallow, std::span<const std::uint64_t> entries,
                       std::int64_t position) {
  SavedSongs saved;
  for (std::size_t k = 0; k < entries.size(); ++k) {
    const std::int32_t song = tallow.handed_over.SongOf(entries[k]);
    if (!tallow.library.IsPresent(song)) continue;
    saved.paths.push_back(tallow.library.Song(song).Path());
    if (k == 0) saved.position = std::max<std::int64_t>(position, 0);
  }
  return saved;
}

RestoredSongs SongsToRestore(const clsMain& library, const SavedSongs& saved) {
  RestoredSongs songs;
  if (saved.paths.empty()) return songs;
  std::unordered_map<std::string_view, std::int32_t> records;
  for (const std::string& path : saved.paths) records.emplace(path, 0);
  for (std::int32_t record = 1; record <= library.UBoundOfMp3Array(); ++record) {
    const SongView song = library.Song(record);
    if (!song.IsPresent() || song.IsAway()) continue;
    if (const auto found = records.find(song.Path()); found != records.end())
      found->second = record;
  }
  for (const std::string& path : saved.paths) {
    const std::int32_t record = records[path];
    if (record == 0) continue;
    songs.records.push_back(record);
    songs.paths.push_back(path);
  }
  if (!songs.paths.empty() && songs.paths.front() == saved.paths.front())
    songs.position = saved.position;
  return songs;
}

void CueSongs(TallowPlayer& player, const RestoredSongs& songs, HandedOverSongs& record,
              const WhileStarting& go_on) {
  record.Clear();
  std::span<const std::string> paths = songs.paths;
  std::size_t done = 0;
  while (!paths.empty()) {
    const std::size_t count = PathsInRecord(paths);
    const std::int64_t first = player.AddFiles(kAtEnd, paths.first(count));
    if (first <= 0) return;
    std::vector<HandedOverSong> added;
    for (std::size_t k = 0; k < count; ++k)
      added.push_back({songs.records[done + k], static_cast<std::uint64_t>(first) + k});
    record.Add(added, {});
    if (done == 0) player.Cue(static_cast<std::uint64_t>(first), songs.position);
    done += count;
    paths = paths.subspan(count);
    if (go_on && !go_on()) return;
  }
}

}  // namespace tallow

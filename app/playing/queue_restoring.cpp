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

/// The record numbers of songs that can be played, by path; 0 for the others.
using RecordsByPath = std::unordered_map<std::string_view, std::int32_t>;

/// \param paths have to outlive the result
RecordsByPath RecordsOf(const clsMain& library, std::span<const std::string> paths) {
  RecordsByPath records;
  for (const std::string& path : paths) records.emplace(path, 0);
  if (records.empty()) return records;
  for (std::int32_t record = 1; record <= library.UBoundOfMp3Array(); ++record) {
    const SongView song = library.Song(record);
    if (!song.IsPresent() || song.IsAway()) continue;
    if (const auto found = records.find(song.Path()); found != records.end())
      found->second = record;
  }
  return records;
}

}  // namespace

SavedSongs SongsToSave(const Tallow& tallow, std::span<const std::uint64_t> entries,
                       const PlayerReport& state) {
  SavedSongs saved;
  for (std::size_t k = 0; k < entries.size(); ++k) {
    const std::int32_t song = tallow.handed_over.SongOf(entries[k]);
    if (!tallow.library.IsPresent(song)) continue;
    saved.paths.push_back(tallow.library.Song(song).Path());
    saved.entries.push_back(entries[k]);
    if (k == 0) saved.position = std::max<std::int64_t>(state.position, 0);
  }
  if (!saved.paths.empty()) saved.list = state.count;
  return saved;
}

RestoredSongs SongsToRestore(const clsMain& library, const SavedSongs& saved) {
  RestoredSongs songs;
  if (saved.paths.empty()) return songs;
  RecordsByPath records = RecordsOf(library, saved.paths);
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

std::vector<HandedOverSong> SongsOfEntries(const clsMain& library, const SavedSongs& saved,
                                           std::span<const std::uint64_t> entries,
                                           std::size_t list) {
  if (saved.list != list) return {};
  RecordsByPath records = RecordsOf(library, saved.paths);
  std::unordered_map<std::uint64_t, std::int32_t> songs;
  for (std::size_t k = 0; k < saved.entries.size(); ++k)
    songs.emplace(saved.entries[k], records[saved.paths[k]]);
  std::vector<HandedOverSong> named;
  for (const std::uint64_t entry : entries) {
    const auto found = songs.find(entry);
    if (found == songs.end()) return {};
    if (found->second != 0) named.push_back({found->second, entry});
  }
  std::ranges::sort(named, {}, &HandedOverSong::entry);
  return named;
}

bool CueSongs(TallowPlayer& player, const RestoredSongs& songs, bool shuffled,
              HandedOverSongs& record, const HandOverProgress& progress) {
  record.Clear();
  std::span<const std::string> paths = songs.paths;
  std::vector<std::uint64_t> entries;
  while (!paths.empty()) {
    const std::size_t count = PathsInRecord(paths);
    const std::int64_t first = player.AddFiles(kAtEnd, paths.first(count));
    if (first <= 0) break;
    const std::size_t done = entries.size();
    std::vector<HandedOverSong> added;
    for (std::size_t k = 0; k < count; ++k) {
      entries.push_back(static_cast<std::uint64_t>(first) + k);
      added.push_back({songs.records[done + k], entries.back()});
    }
    record.Add(added, {});
    if (done == 0) player.Cue(entries.front(), songs.position);
    paths = paths.subspan(count);
    if (!paths.empty() && progress && !progress(entries.size(), songs.paths.size())) break;
  }
  // It has distributed them randomly.
  if (shuffled && entries.size() > 1) player.Move(std::span(entries).subspan(1), 0);
  return paths.empty();
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/size_finder.h"

#include <mutex>
#include <utility>

#include "library/cls_main.h"
#include "library/folder_scan.h"
#include "util/detached_thread.h"
#include "util/file_system.h"
#include "util/read_ahead.h"

namespace tallow {
namespace {

/// A song, and the size of its file once it is found.
struct Song {
  std::int32_t row;
  std::string folder;
  std::string name;
  std::int64_t size = kUnknownSize;
};

/// Number of sizes that a thread reads in one batch, see ReadAhead.
constexpr std::size_t kAtOnce = 64;

}  // namespace

struct SizeFinder::Work {
  std::vector<Song> songs;  ///< used by the thread that runs Find or FindAll
  std::size_t next = 0;     ///< next index in songs
  std::mutex mutex;         ///< guards all below
  std::vector<Song> found;
  bool is_done = false;
  bool stop = false;

  /// Reads the sizes of all songs, on as many threads as the disk can use.
  void FindAll() {
    try {
      ReadAhead(
          songs.size(), kAtOnce, [this](std::size_t k) { return songs[k].folder + songs[k].name; },
          [](const std::string& path) { return CheckFile(path); },
          [this](std::size_t k, const FileStatus& status) {
            if (!Store(songs[k], status)) throw Stopped();
          });
    } catch (const Stopped&) {
      return;
    }
    const std::lock_guard lock(mutex);
    is_done = true;
  }

  /// Stores the size of a song, if it was found. \returns false when to stop
  bool Store(Song& song, const FileStatus& status) {
    const std::lock_guard lock(mutex);
    if (stop) return false;
    if (status.presence != FilePresence::kThere) return true;
    song.size = static_cast<std::int64_t>(status.size);
    found.push_back(std::move(song));
    return true;
  }

  /// Reads the sizes of at most `max_songs` more songs.
  void Find(std::size_t max_songs) {
    for (std::size_t k = 0; k < max_songs && next < songs.size(); ++k) {
      Song& song = songs[next++];
      if (!Store(song, CheckFile(song.folder + song.name))) return;
    }
    const std::lock_guard lock(mutex);
    is_done = next == songs.size();
  }
};

SizeFinder::SizeFinder(const clsMain& library) : work_(std::make_shared<Work>()) {
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row) {
    const SongView song = library.Song(row);
    if (song.IsPresent() && !song.IsAway() && library.Facts(row).size == kUnknownSize)
      work_->songs.push_back(
          {row, std::string(song.Folder()), std::string(song.Name()), kUnknownSize});
  }
  work_->is_done = work_->songs.empty();
  if (work_->is_done) return;
  has_thread_ = StartDetachedThread([work = work_] { work->FindAll(); });
}

SizeFinder::~SizeFinder() {
  const std::lock_guard lock(work_->mutex);
  work_->stop = true;
}

bool SizeFinder::StoreSizes(clsMain& library) {
  // Without a worker thread, read a few sizes in each call.
  constexpr std::size_t kSongsPerCall = 200;
  if (!has_thread_ && !work_->is_done) work_->Find(kSongsPerCall);
  std::vector<Song> found;
  bool is_done = false;
  {
    const std::lock_guard lock(work_->mutex);
    found = std::exchange(work_->found, {});
    is_done = work_->is_done;
  }
  has_found_ = has_found_ || !found.empty();
  for (const Song& song : found) library.SetSize(song.row, song.folder, song.name, song.size);
  return !is_done;
}

}  // namespace tallow

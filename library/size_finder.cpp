// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/size_finder.h"

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "library/cls_main.h"
#include "util/file_system.h"

namespace tallow {
namespace {

/// A song, and once it is found the size of its file.
struct Song {
  std::int32_t row;
  std::string folder;
  std::string name;
  std::int64_t size = kUnknownSize;
};

}  // namespace

struct SizeFinder::Work {
  std::vector<Song> songs;  ///< the thread's own
  std::mutex mutex;         ///< guards all below
  std::vector<Song> found;
  bool is_done = false;
  bool stop = false;
};

SizeFinder::SizeFinder(const clsMain& library) : work_(std::make_shared<Work>()) {
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
    if (library.IsPresent(row) && !library.IsAway(row) && library.Facts(row).size == kUnknownSize)
      work_->songs.push_back({row, std::string(library.Mp3Info(kFileLocation, row)),
                              std::string(library.Mp3Info(kFileName, row)), kUnknownSize});
  work_->is_done = work_->songs.empty();
  if (work_->is_done) return;
  const auto run = [work = work_] {
    for (Song& song : work->songs) {
      const FileLook look = LookAtFile(song.folder + song.name);
      const std::lock_guard lock(work->mutex);
      if (work->stop) return;
      if (look.presence != FilePresence::kThere) continue;
      song.size = static_cast<std::int64_t>(look.size);
      work->found.push_back(std::move(song));
    }
    const std::lock_guard lock(work->mutex);
    work->is_done = true;
  };
  try {
    std::thread(run).detach();
  } catch (const std::system_error&) {
    // The system gives no more threads.
    run();
  }
}

SizeFinder::~SizeFinder() {
  const std::lock_guard lock(work_->mutex);
  work_->stop = true;
}

bool SizeFinder::TakeSizes(clsMain& library) {
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

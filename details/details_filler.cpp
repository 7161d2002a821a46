// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/details_filler.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

#include "details/tag_reader.h"
#include "util/detached_threads.h"
#include "util/thread_priority.h"

namespace tallow {

/// What the worker threads share with the filler. A thread that was abandoned keeps it alive.
struct DetailsFiller::State {
  struct Song {
    std::size_t index;
    std::string path;
  };
  struct Result {
    std::size_t index;
    SongDetails details;
  };

  /// The work of a thread.
  void Work();
  /// Waits for a song. \returns false when there is nothing more to do
  bool Take(Song& song);
  SongDetails Read(const Reader& reader, const std::string& path);
  /// Drops details of files that are gone for long, if all songs are done.
  void DropGone();
  /// Hands songs to the threads, as many as may wait. Requires the mutex to be locked.
  /// \param are_last no songs will be made ready later
  void TakeReady(bool are_last);

  std::shared_ptr<DetailsStore> store;
  MakeReader make_reader;
  std::atomic<bool> stopped = false;
  std::deque<Song> ready;  ///< songs to hand to the threads next; used by the caller alone
  std::mutex mutex;        ///< guards all below
  std::condition_variable changed;
  DetachedThreads threads{mutex};
  std::deque<Song> songs;
  std::vector<Result> results;
  std::size_t reading = 0;           ///< songs that threads are reading
  bool has_all_songs = false;        ///< no more songs will be added
  std::vector<std::size_t> present;  ///< hashes of the paths of files that are there
  bool has_dropped = false;          ///< DropGone was called
};

bool DetailsFiller::State::Take(Song& song) {
  std::unique_lock lock(mutex);
  changed.wait(lock, [this] {
    const bool has_room = results.size() + reading < kMaxWaiting;
    return stopped || (songs.empty() ? has_all_songs : has_room);
  });
  if (stopped || songs.empty()) return false;
  song = std::move(songs.front());
  songs.pop_front();
  ++reading;
  return true;
}

void DetailsFiller::State::TakeReady(bool are_last) {
  for (; songs.size() < kMaxWaiting && !ready.empty(); ready.pop_front())
    songs.push_back(std::move(ready.front()));
  has_all_songs = are_last && ready.empty();
}

SongDetails DetailsFiller::State::Read(const Reader& reader, const std::string& path) {
  const auto stamp = StampOf(path);
  if (!stamp) {
    // Missing or away; there is nothing to store.
    SongDetails details;
    details.failed = true;
    return details;
  }
  {
    const std::lock_guard lock(mutex);
    present.push_back(DetailsStore::HashOf(path));
  }
  if (auto stored = store->Find(path, *stamp)) return *std::move(stored);
  SongDetails details = reader(path, [this] { return stopped.load(); });
  // A file that could not be opened has no stamp, and is tried again at the next run.
  if (!stopped && details.stamp != FileStamp()) store->Put(path, details);
  return details;
}

void DetailsFiller::State::DropGone() {
  std::vector<std::size_t> all;
  {
    const std::lock_guard lock(mutex);
    if (stopped || has_dropped || !has_all_songs || !songs.empty() || reading > 0) return;
    has_dropped = true;
    all.swap(present);
  }
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  store->DropGone(std::move(all), std::chrono::floor<std::chrono::days>(now).count(),
                  [this] { return stopped.load(); });
}

void DetailsFiller::State::Work() {
  LowerThreadPriority();
  const Reader reader = make_reader();
  Song song;
  while (Take(song)) {
    SongDetails details = Read(reader, song.path);
    const std::lock_guard lock(mutex);
    --reading;
    results.push_back({song.index, std::move(details)});
  }
  DropGone();
  if (!stopped) store->Commit();
}

DetailsFiller::DetailsFiller(std::shared_ptr<DetailsStore> store, MakeReader make_reader,
                             unsigned threads)
    : store_(std::move(store)), make_reader_(std::move(make_reader)), threads_(threads) {
  if (make_reader_) return;
  make_reader_ = [] {
    return [](const std::string& path, const std::function<bool()>& stopped) {
      return ReadSongDetails(path, {.stopped = stopped});
    };
  };
}

DetailsFiller::~DetailsFiller() { Stop(); }

void DetailsFiller::Start(std::size_t total, PathAt path_at, bool are_all) {
  Stop();
  state_ = std::make_shared<State>();
  state_->store = store_;
  state_->make_reader = make_reader_;
  // Then there is nothing to drop at the end.
  state_->has_dropped = !are_all;
  path_at_ = std::move(path_at);
  next_ = 0;
  progress_ = {0, total};
}

DetailsFiller::Progress DetailsFiller::Poll(const Found& found) {
  if (state_ == nullptr) return progress_;
  for (; state_->ready.size() < kMaxWaiting && next_ < progress_.total; ++next_)
    state_->ready.push_back({next_, path_at_(next_)});
  std::vector<State::Result> results;
  unsigned missing = 0;
  {
    // A worker thread may be interrupted while it holds the mutex, and has to wait for a processor
    // because of its low priority. The caller must not wait with it.
    const std::unique_lock lock(state_->mutex, std::try_to_lock);
    if (!lock) return progress_;
    results.swap(state_->results);
    state_->TakeReady(next_ == progress_.total);
    if (!state_->songs.empty() && state_->threads.CountLocked() < threads_)
      missing = threads_ - state_->threads.CountLocked();
  }
  // The callbacks run without the mutex, so that they may take their time.
  for (const State::Result& result : results)
    if (found) found(result.index, result.details);
  progress_.done += results.size();
  state_->changed.notify_all();
  // If the system cannot create a thread, the next call tries again.
  for (; missing > 0; --missing) {
    state_->threads.Start([state = state_] {
      state->Work();
      const std::lock_guard lock(state->mutex);
      state->threads.RemoveLocked();
    });
  }
  return progress_;
}

bool DetailsFiller::Stop() {
  if (state_ == nullptr) return true;
  {
    const std::lock_guard lock(state_->mutex);
    state_->stopped = true;
  }
  state_->changed.notify_all();
  const bool all_ended = state_->threads.WaitForEnd(kAbandonAfter);
  state_.reset();
  return all_ended;
}

DetailsFiller::MakeReader ReadersInChildren(ChildSettings settings) {
  return [settings = std::move(settings)] {
    // Shared, because a function object has to be copyable.
    return [child = std::make_shared<ChildReader>(settings)](const std::string& path,
                                                             const std::function<bool()>& stopped) {
      return child->Read(path, stopped);
    };
  };
}

}  // namespace tallow

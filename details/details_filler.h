// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "details/child_reader.h"
#include "details/details_store.h"
#include "details/song_details.h"

namespace tallow {

/// Reads the details of all songs in the background, on threads of low priority, and stores them.
/// What is stored already is not read again, so that work that was stopped goes on at the next run.
///
/// Start, Poll and Stop are called by one thread, the caller. Few paths and results are in memory
/// at a time: the callbacks are called in Poll, and the worker threads wait when Poll is not
/// called.
class DetailsFiller {
 public:
  /// Reads one file on a worker thread. Must return soon after stopped() has become true; the
  /// result is then ignored.
  using Reader =
      std::function<SongDetails(const std::string& path, const std::function<bool()>& stopped)>;
  /// Creates the reader of a worker thread, on that thread.
  using MakeReader = std::function<Reader()>;
  /// The path of a song.
  /// \param index 0 to total - 1
  using PathAt = std::function<std::string(std::size_t index)>;
  /// Receives the details of a song, read or stored.
  using Found = std::function<void(std::size_t index, const SongDetails& details)>;

  struct Progress {
    std::size_t done = 0;
    std::size_t total = 0;
    bool IsFinished() const noexcept { return done == total; }
  };

  /// Paths that wait for a worker thread, paths that wait to be handed to them, and results that
  /// wait for Poll, each at most.
  static constexpr std::size_t kMaxWaiting = 1024;

  /// \param store       is kept alive while a worker thread is busy
  /// \param make_reader empty: a reader that reads in this process
  /// \param threads     from 1
  explicit DetailsFiller(std::shared_ptr<DetailsStore> store, MakeReader make_reader = {},
                         unsigned threads = 2);
  DetailsFiller(const DetailsFiller&) = delete;
  DetailsFiller& operator=(const DetailsFiller&) = delete;
  /// Stops.
  ~DetailsFiller();

  /// Starts with a list of songs, in place of the list before.
  ///
  /// \param path_at called in Poll, once for each index in ascending order
  /// \param are_all whether these are all songs, so that stored details of other files are of files
  ///                that are gone
  void Start(std::size_t total, PathAt path_at, bool are_all = true);

  /// Hands out the results since the last call, in any order, and gives the worker threads new
  /// songs. Never waits for a file or a worker thread: while one of them hands over a result, the
  /// call changes nothing.
  ///
  /// \param found may be empty
  Progress Poll(const Found& found);

  /// Stops, within 100 ms: a thread that is blocked by a disk is abandoned. Stored details stay
  /// stored; those of the last second are on the disk after DetailsStore::Close.
  /// \returns false when a thread was abandoned, which may still be using the store
  bool Stop();

 private:
  struct State;

  std::shared_ptr<DetailsStore> store_;
  MakeReader make_reader_;
  unsigned threads_;
  std::shared_ptr<State> state_;  ///< null before Start and after Stop
  PathAt path_at_;
  std::size_t next_ = 0;  ///< index of the next song to make ready for the worker threads
  Progress progress_;
};

/// Readers that read in child processes, one for each worker thread, see ChildReader.
DetailsFiller::MakeReader ReadersInChildren(ChildSettings settings);

}  // namespace tallow

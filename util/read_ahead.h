// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace tallow {

/// Most threads that ReadAhead starts, and the fewest: reading waits even on a machine of one core.
inline constexpr unsigned kMostReaders = 8;
inline constexpr unsigned kFewestReaders = 2;

/// How long a thread that has windows waits before it lets them live.
inline constexpr std::chrono::milliseconds kLiveEvery{40};

/// Makes things on several cores and uses them one after another.
///
/// For work whose parts wait on the disk but whose results have to be taken in order (the tags of
/// songs that are filed in record order, the listings of folders). A few threads call produce(i)
/// for i from 0 to count - 1, each thread a run of numbers at a time and never more than some runs
/// ahead; this thread calls consume(i, result) in the order of i. Both see every i exactly once.
///
/// \param count   how many there are
/// \param run     how many a thread takes at once; fewer than two runs in all start no thread
/// \param produce called from several threads at once, so it may only read what they share
/// \param consume called from the calling thread only
/// \param live    called from the calling thread again and again while there is nothing to consume yet, so
///                that a disk that does not answer does not keep a window from living. Without it this
///                thread just waits, and few things are made on it.
///
/// An exception of any of them ends the work and comes out of this call.
template <typename Produce, typename Consume>
void ReadAhead(std::size_t count, std::size_t run, const Produce& produce, const Consume& consume,
               const std::function<void()>& live = {}) {
  using Result = decltype(produce(std::size_t{0}));
  const std::size_t runs = (count + run - 1) / run;
  const std::size_t threads =
      std::clamp(std::thread::hardware_concurrency(), kFewestReaders, kMostReaders);
  if (count == 0) return;
  if (runs < 2 && !live) {
    for (std::size_t i = 0; i < count; ++i) consume(i, produce(i));
    return;
  }

  struct Slot {
    std::vector<Result> results;
    bool ready = false;
  };
  const std::size_t ahead = threads * 4;
  std::vector<Slot> slots(ahead);  // run number r lies in slot r modulo ahead
  std::mutex mutex;
  std::condition_variable changed;
  std::size_t next_run = 0;
  std::size_t consumed_runs = 0;
  std::atomic<bool> stop = false;
  std::exception_ptr failure;

  const auto work = [&] {
    for (;;) {
      std::size_t taken = 0;
      {
        std::unique_lock lock(mutex);
        changed.wait(lock,
                     [&] { return stop || next_run >= runs || next_run < consumed_runs + ahead; });
        if (stop || next_run >= runs) return;
        taken = next_run++;
      }
      std::vector<Result> results;
      std::exception_ptr error;
      try {
        results.reserve(run);
        for (std::size_t i = taken * run; i < std::min(count, (taken + 1) * run) && !stop; ++i)
          results.push_back(produce(i));
      } catch (...) {
        error = std::current_exception();
      }
      const std::lock_guard lock(mutex);
      if (error && !failure) {
        failure = error;
        stop = true;
      }
      slots[taken % ahead] = {std::move(results), true};
      changed.notify_all();
    }
  };

  std::vector<std::thread> workers;
  const auto join = [&] {
    {
      const std::lock_guard lock(mutex);
      stop = true;
      changed.notify_all();
    }
    for (std::thread& worker : workers) worker.join();
  };
  try {
    for (std::size_t k = 0; k < threads; ++k) workers.emplace_back(work);
    for (std::size_t r = 0; r < runs; ++r) {
      std::vector<Result> results;
      {
        std::unique_lock lock(mutex);
        Slot& slot = slots[r % ahead];
        const auto has_come = [&] { return slot.ready || failure; };
        while (live && !changed.wait_for(lock, kLiveEvery, has_come)) {
          lock.unlock();
          live();
          lock.lock();
        }
        changed.wait(lock, has_come);
        if (failure) break;
        results = std::move(slot.results);
        slot.ready = false;
        ++consumed_runs;
        changed.notify_all();
      }
      for (std::size_t k = 0; k < results.size(); ++k) consume(r * run + k, std::move(results[k]));
    }
  } catch (...) {
    join();
    throw;
  }
  join();
  if (failure) std::rethrow_exception(failure);
}

}  // namespace tallow

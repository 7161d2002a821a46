// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/folder_reader.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <utility>

#include "app/search/folder_lister.h"
#include "util/detached_threads.h"
#include "util/idle_wait.h"
#include "util/path_text.h"
#include "util/reader_count.h"

namespace tallow {

/// State shared by the walk and the worker threads; the last owner destroys it.
///
/// Invariant: the mutex guards all members that are not const, and every TreeFolder. A folder that
/// is claimed is listed by the thread that claimed it, with the mutex unlocked; its listing and
/// subfolders are written under the mutex, before it is done, and belong to the walk from then on.
/// If the listing has pending files, it is done once these are read: each thread claims some of
/// them, moves them out of the listing, and stores them again.
/// Functions named ...Locked require the mutex to be locked and leave it locked; all others lock it
/// themselves.
class FolderReader::Shared : public std::enable_shared_from_this<FolderReader::Shared> {
 public:
  using FolderPointer = std::shared_ptr<TreeFolder>;
  using Task = FolderTask;

  Shared(std::string pattern, bool recurse, std::function<bool(const std::string&)> enter,
         std::function<bool(const std::string&)> tails)
      : lister_(std::move(pattern), recurse, std::move(tails)),
        enter_(std::move(enter)),
        threads_(mutex_),
        count_(FirstThreads(recurse)) {}

  /// Starts threads that list folders ahead of the walk, until there are as many as the disk can
  /// use. With fewer, the walk lists the folders that no thread has listed.
  void StartWorkers() {
    while (AddWorker()) {
      if (Start([this] { ListAhead(); })) continue;
      const std::lock_guard lock(mutex_);
      count_.LimitTo(--workers_);
      return;
    }
  }

  void Stop() {
    RequestStop();
    // A thread that still waits for a disk accesses nothing but this object when the disk responds.
    threads_.WaitForEnd(kAbandonAfter);
  }

  /// Lists a folder on this thread. If another thread is listing it, lists other folders until that
  /// thread is done.
  void ListHere(const FolderPointer& folder) {
    Task task;
    while ((task = StoreAndClaimForWalk(std::move(task), folder)).folder) Do(task);
  }

  /// Waits for a folder without listing anything on this thread: a disk that does not respond would
  /// block the window.
  ///
  /// \returns false when `go_on` ended the wait
  bool WaitFor(const FolderPointer& folder, const std::function<bool()>& go_on) {
    const Request request = Ask(folder);
    if (request == Request::kListed) return true;
    if (request == Request::kClaimed) ReadOnNewThread(folder);
    const auto idle = [&] {
      // A folder that is still unclaimed: all worker threads are waiting for a disk.
      if (Claim(*folder)) ReadOnNewThread(folder);
      return go_on();
    };
    const auto finish = [&] {
      wanted_.reset();
      return HandOverLocked(*folder);
    };
    return WaitWithIdleCallback(
        mutex_, done_, [&] { return folder->IsDone(); }, idle, finish);
  }

  void Enter(TreeFolder& folder) {
    const std::lock_guard lock(mutex_);
    if (!folder.was_queued) QueueLocked(folder);
  }

 private:
  /// Maximum number of folders listed before the walk reaches them; bounds the memory of a slow
  /// walk.
  static constexpr std::size_t kMaxAhead = 4096;

  /// Maximum number of files whose tails a thread reads at a time. On a slow disk there are fewer,
  /// so that other threads can read the others.
  static constexpr std::size_t kFilesAtOnce = 16;
  static constexpr std::size_t kSlowFilesAtOnce = 4;

  /// What becomes of a folder that the walk asks for.
  enum class Request {
    kListed,   ///< it is listed
    kPending,  ///< a worker thread is listing it, or will
    kClaimed,  ///< there is no worker thread, so it was claimed for one that has to be started
  };

  bool Start(std::function<void()> work) {
    return threads_.Start([shared = shared_from_this(), work = std::move(work)] {
      work();
      const std::lock_guard lock(shared->mutex_);
      shared->threads_.RemoveLocked();
    });
  }

  void RequestStop() {
    const std::lock_guard lock(mutex_);
    stop_ = true;
    work_.notify_all();
  }

  static unsigned FirstThreads(bool recurse) {
    return recurse ? std::clamp(std::thread::hardware_concurrency(), 2U, 5U) : 1;
  }

  /// Counts another worker thread, unless there are as many as the disk can use.
  bool AddWorker() {
    const std::lock_guard lock(mutex_);
    if (stop_ || workers_ >= count_.Wanted()) return false;
    ++workers_;
    return true;
  }

  void ListAhead() {
    Task task;
    while ((task = StoreAndClaimAhead(std::move(task))).folder) Do(task);
  }

  /// Stores a result, and waits for the next task ahead of the walk. \returns nothing when the
  /// thread has to end
  Task StoreAndClaimAhead(Task done) {
    std::unique_lock lock(mutex_);
    if (done.folder) StoreLocked(std::move(done));
    for (;;) {
      work_.wait(lock, [this] { return stop_ || IsSurplusLocked() || HasTaskLocked(); });
      if (stop_ || IsSurplusLocked()) break;
      if (Task task = ClaimAheadLocked(); task.folder) return task;
    }
    --workers_;
    work_.notify_one();  // The wake-up may have been meant for a thread that goes on.
    return {};
  }

  bool IsSurplusLocked() const { return workers_ > std::max(count_.Wanted(), 1U); }

  bool HasTaskLocked() const {
    return wanted_ || !unread_.empty() || (!waiting_.empty() && ahead_ < kMaxAhead);
  }

  /// Stores a result, and claims the next task of the walk's thread: the folder that it needs, or
  /// files of that, or another task while other threads are reading that. Waits when there is none.
  ///
  /// \returns nothing once the needed folder is listed
  Task StoreAndClaimForWalk(Task done, const FolderPointer& needed) {
    std::unique_lock lock(mutex_);
    if (done.folder) StoreLocked(std::move(done));
    while (!needed->IsDone()) {
      if (Task task = ClaimNeededLocked(needed); task.folder) return task;
      if (Task task = ClaimAheadLocked(); task.folder) return task;
      done_.wait(lock, [&] { return needed->IsDone() || needed->HasPending(); });
    }
    HandOverLocked(*needed);
    return {};
  }

  /// Asks the worker threads for a folder.
  Request Ask(const FolderPointer& folder) {
    const std::lock_guard lock(mutex_);
    if (HandOverLocked(*folder)) return Request::kListed;
    if (folder->IsReading()) return Request::kPending;
    if (threads_.CountLocked() == 0 && folder->Claim()) return Request::kClaimed;
    wanted_ = folder;
    work_.notify_one();
    return Request::kPending;
  }

  /// \returns false when the folder is, or was, claimed by another thread
  bool Claim(TreeFolder& folder) {
    const std::lock_guard lock(mutex_);
    return folder.Claim();
  }

  /// Stores a result, and claims the next pending files of the same folder.
  /// \returns nothing when there are none
  Task StoreAndClaimPart(Task done) {
    const std::lock_guard lock(mutex_);
    const FolderPointer folder = done.folder;
    StoreLocked(std::move(done));
    return ClaimPartLocked(folder);
  }

  /// Lists a claimed folder on a thread of its own; on this one when the system creates no other.
  void ReadOnNewThread(const FolderPointer& folder) {
    const auto read = [this, folder] {
      for (Task task = ListingOf(folder); task.folder; task = StoreAndClaimPart(std::move(task)))
        Do(task);
    };
    if (!Start(read)) read();
  }

  Task ListingOf(const FolderPointer& folder) {
    const std::lock_guard lock(mutex_);
    return ListingOfLocked(folder);
  }

  /// The task of listing a claimed folder.
  Task ListingOfLocked(FolderPointer folder) const {
    Task task;
    task.folder = std::move(folder);
    task.max_tails = count_.IsSlow() ? 0 : kFilesAtOnce;
    task.must_start_workers = MustStartWorkersLocked();
    return task;
  }

  /// Whether the disk can use more threads than there are.
  bool MustStartWorkersLocked() const { return count_.IsSlow() && workers_ < count_.Wanted(); }

  /// Claims pending files of a folder; nothing when there are none.
  Task ClaimPartLocked(const FolderPointer& folder) {
    if (!folder->HasPending()) return {};
    Task task;
    task.folder = folder;
    task.must_start_workers = MustStartWorkersLocked();
    task.files = folder->ClaimFiles(count_.IsSlow() ? kSlowFilesAtOnce : kFilesAtOnce, task.first);
    if (!folder->HasPending()) std::erase(unread_, folder);
    return task;
  }

  /// Claims a folder for listing, or pending files of it; nothing when other threads have them.
  Task ClaimNeededLocked(const FolderPointer& folder) {
    return folder->Claim() ? ListingOfLocked(folder) : ClaimPartLocked(folder);
  }

  /// Claims what to read next ahead of the walk; nothing when there is nothing.
  Task ClaimAheadLocked() {
    FolderPointer folder = std::exchange(wanted_, nullptr);
    while (!folder || !folder->Claim()) {
      if (!unread_.empty()) return ClaimPartLocked(FolderPointer(unread_.front()));
      if (waiting_.empty() || ahead_ >= kMaxAhead) return {};
      folder = std::move(waiting_.back());
      waiting_.pop_back();
    }
    ++ahead_;
    folder->is_ahead = true;
    return ListingOfLocked(std::move(folder));
  }

  void QueueLocked(TreeFolder& folder) {
    folder.was_queued = true;
    waiting_.insert(waiting_.end(), folder.subfolders.rbegin(), folder.subfolders.rend());
    if (!folder.subfolders.empty()) work_.notify_all();
  }

  void StoreLocked(Task done) {
    count_.Add(done.begin, done.end, done.calls);
    if (done.files.empty())
      StoreListingLocked(done);
    else
      StorePartLocked(done);
  }

  void StoreListingLocked(Task& done) {
    TreeFolder& folder = *done.folder;
    folder.Store(stop_ ? FolderListing() : std::move(done.listing), enter_);
    if (folder.is_ahead) QueueLocked(folder);
    if (folder.HasPending()) {
      unread_.push_back(done.folder);
      work_.notify_all();
    }
    done_.notify_one();
  }

  void StorePartLocked(Task& done) {
    TreeFolder& folder = *done.folder;
    folder.StoreFiles(std::move(done.files), done.first, std::move(done.problem), done.has_memory);
    if (folder.IsDone()) done_.notify_one();
  }

  /// Leaves a listed folder to the walk, so that it is no longer counted as listed ahead.
  /// \returns false when the folder is not listed
  bool HandOverLocked(TreeFolder& folder) {
    if (!folder.IsDone()) return false;
    if (std::exchange(folder.is_ahead, false) && ahead_-- == kMaxAhead) work_.notify_all();
    return true;
  }

  /// Does a task, after it has started threads that the disk can use.
  void Do(Task& task) {
    if (task.must_start_workers) StartWorkers();
    lister_.Do(task);
  }

  const FolderLister lister_;
  const std::function<bool(const std::string&)> enter_;
  std::mutex mutex_;
  std::condition_variable work_;        ///< there is something to list ahead
  std::condition_variable done_;        ///< a folder has been listed; only the walk waits for it
  DetachedThreads threads_;             ///< all that have not ended
  ReaderCount count_;                   ///< of the worker threads
  unsigned workers_ = 0;                ///< threads in ListAhead
  std::vector<FolderPointer> unread_;   ///< listed, with pending files that no thread has claimed
  std::vector<FolderPointer> waiting_;  ///< stack: the folder that the walk reaches first is last
  FolderPointer wanted_;                ///< the folder that the walk waits for
  std::size_t ahead_ = 0;               ///< folders listed ahead that the walk has not reached
  bool stop_ = false;
};

FolderReader::FolderReader(std::string pattern, bool recurse,
                           std::function<bool(const std::string&)> enter,
                           std::function<bool(const std::string&)> tails)
    : shared_(std::make_shared<Shared>(std::move(pattern), recurse, std::move(enter),
                                       std::move(tails))) {
  if (recurse) shared_->StartWorkers();
}

FolderReader::~FolderReader() { shared_->Stop(); }

std::shared_ptr<TreeFolder> FolderReader::Root(std::string_view folder) const {
  return std::make_shared<TreeFolder>(EnsureTrailingBackslash(folder));
}

bool FolderReader::WaitFor(const std::shared_ptr<TreeFolder>& folder,
                           const std::function<bool()>& go_on) {
  if (go_on) return shared_->WaitFor(folder, go_on);
  shared_->ListHere(folder);
  return true;
}

void FolderReader::Enter(TreeFolder& folder) { shared_->Enter(folder); }

}  // namespace tallow

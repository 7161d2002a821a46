// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/folder_reader.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

#include "library/tag_layout.h"
#include "util/detached_threads.h"
#include "util/idle_wait.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// Minimum and maximum number of threads that list folders ahead of the walk.
constexpr unsigned kMinThreads = 2;
constexpr unsigned kMaxThreads = 5;

}  // namespace

/// State shared by the walk and the worker threads; the last owner destroys it.
///
/// Invariant: the mutex guards all members that are not const, and the state of every TreeFolder.
/// A folder that is claimed (kReading) is listed by the thread that claimed it, with the mutex
/// unlocked; its listing and subfolders are written under the mutex, before it becomes kDone, and
/// belong to the walk from then on. Functions named ...Locked require the mutex to be locked and
/// leave it locked; all others lock it themselves.
class FolderReader::Shared : public std::enable_shared_from_this<FolderReader::Shared> {
 public:
  using FolderPointer = std::shared_ptr<TreeFolder>;

  Shared(std::string pattern, bool recurse, std::function<bool(const std::string&)> enter,
         std::function<bool(const std::string&)> tails)
      : pattern_(std::move(pattern)),
        recurse_(recurse),
        enter_(std::move(enter)),
        tails_(std::move(tails)),
        threads_(mutex_) {}

  /// Starts a thread that lists folders ahead of the walk.
  /// \returns false when the system cannot create another thread
  bool StartWorker() {
    return Start([this] { ListAhead(); });
  }

  void Stop() {
    RequestStop();
    // A thread that still waits for a disk accesses nothing but this object when the disk responds.
    threads_.WaitForEnd(kAbandonAfter);
  }

  /// Lists a folder on this thread. If another thread is listing it, lists other folders until that
  /// thread is done.
  void ListHere(const FolderPointer& folder) {
    Listed listed;
    while (FolderPointer next = StoreAndClaimForWalk(std::move(listed), folder))
      listed = Read(std::move(next));
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
        mutex_, done_, [&] { return IsDoneLocked(*folder); }, idle, finish);
  }

  void Enter(TreeFolder& folder) {
    const std::lock_guard lock(mutex_);
    if (!folder.queued_) QueueLocked(folder);
  }

 private:
  /// Maximum number of folders listed before the walk reaches them; bounds the memory of a slow
  /// walk.
  static constexpr std::size_t kMaxAhead = 4096;

  /// A claimed folder that was listed; without a folder nothing was.
  struct Listed {
    FolderPointer folder;
    FolderListing listing;
  };

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

  void ListAhead() {
    Listed listed;
    while (FolderPointer next = StoreAndClaimAhead(std::move(listed)))
      listed = Read(std::move(next));
  }

  /// Stores a listing, and waits for the next folder to list ahead. \returns null when stopped
  FolderPointer StoreAndClaimAhead(Listed listed) {
    std::unique_lock lock(mutex_);
    if (listed.folder) StoreLocked(std::move(listed));
    for (;;) {
      work_.wait(lock,
                 [this] { return stop_ || wanted_ || (!waiting_.empty() && ahead_ < kMaxAhead); });
      if (stop_) return nullptr;
      if (FolderPointer folder = ClaimAheadLocked()) return folder;
    }
  }

  /// Stores a listing, and claims the folder that the walk's thread lists next: the one that it
  /// needs, or another one while a thread is listing that. Waits when there is no other.
  ///
  /// \returns null once the needed folder is listed
  FolderPointer StoreAndClaimForWalk(Listed listed, const FolderPointer& needed) {
    std::unique_lock lock(mutex_);
    if (listed.folder) StoreLocked(std::move(listed));
    if (ClaimLocked(*needed)) return needed;
    if (!IsDoneLocked(*needed))
      if (FolderPointer other = ClaimAheadLocked()) return other;
    done_.wait(lock, [&] { return IsDoneLocked(*needed); });
    HandOverLocked(*needed);
    return nullptr;
  }

  /// Asks the worker threads for a folder.
  Request Ask(const FolderPointer& folder) {
    const std::lock_guard lock(mutex_);
    if (HandOverLocked(*folder)) return Request::kListed;
    if (folder->state_ == TreeFolder::State::kReading) return Request::kPending;
    if (threads_.CountLocked() == 0 && ClaimLocked(*folder)) return Request::kClaimed;
    wanted_ = folder;
    work_.notify_one();
    return Request::kPending;
  }

  /// \returns false when the folder is, or was, claimed by another thread
  bool Claim(TreeFolder& folder) {
    const std::lock_guard lock(mutex_);
    return ClaimLocked(folder);
  }

  void Store(Listed listed) {
    const std::lock_guard lock(mutex_);
    StoreLocked(std::move(listed));
  }

  /// Lists a claimed folder on a thread of its own; on this one when the system creates no other.
  void ReadOnNewThread(const FolderPointer& folder) {
    const auto read = [this, folder] { Store(Read(folder)); };
    if (!Start(read)) read();
  }

  static bool IsDoneLocked(const TreeFolder& folder) {
    return folder.state_ == TreeFolder::State::kDone;
  }

  static bool ClaimLocked(TreeFolder& folder) {
    if (folder.state_ != TreeFolder::State::kWaiting) return false;
    folder.state_ = TreeFolder::State::kReading;
    return true;
  }

  /// Claims the folder to list next ahead of the walk; null when there is none.
  FolderPointer ClaimAheadLocked() {
    FolderPointer folder = std::exchange(wanted_, nullptr);
    while (!folder || !ClaimLocked(*folder)) {
      if (waiting_.empty() || ahead_ >= kMaxAhead) return nullptr;
      folder = std::move(waiting_.back());
      waiting_.pop_back();
    }
    ++ahead_;
    folder->is_ahead_ = true;
    return folder;
  }

  void QueueLocked(TreeFolder& folder) {
    folder.queued_ = true;
    waiting_.insert(waiting_.end(), folder.subfolders.rbegin(), folder.subfolders.rend());
    if (!folder.subfolders.empty()) work_.notify_all();
  }

  void StoreLocked(Listed listed) {
    TreeFolder& folder = *listed.folder;
    if (!stop_) UseListing(folder, std::move(listed.listing));
    folder.state_ = TreeFolder::State::kDone;
    done_.notify_one();
    if (folder.is_ahead_) QueueLocked(folder);
  }

  /// Leaves a listed folder to the walk, so that it is no longer counted as listed ahead.
  /// \returns false when the folder is not listed
  bool HandOverLocked(TreeFolder& folder) {
    if (!IsDoneLocked(folder)) return false;
    if (std::exchange(folder.is_ahead_, false) && ahead_-- == kMaxAhead) work_.notify_all();
    return true;
  }

  Listed Read(FolderPointer folder) const {
    FolderListing listing = List(folder->path);
    return {std::move(folder), std::move(listing)};
  }

  void UseListing(TreeFolder& folder, FolderListing listing) const {
    folder.listing = std::move(listing);
    try {
      for (const SubfolderEntry& entry : folder.listing.subfolders) {
        if (entry.linked) continue;
        auto subfolder = std::make_shared<TreeFolder>();
        subfolder->path.append(folder.path).append(entry.name).push_back(kSeparator);
        if (enter_(subfolder->path)) folder.subfolders.push_back(std::move(subfolder));
      }
    } catch (const std::bad_alloc&) {
      folder.subfolders.clear();
      folder.listing = Unlisted("there is not enough memory");
    }
  }

  /// The listing of a folder that cannot be listed.
  static FolderListing Unlisted(const char* problem) {
    FolderListing listing;
    listing.problem = problem;
    return listing;
  }

  FolderListing List(const std::string& path) const {
    if (path.size() > kMaxPathBytes) return Unlisted("its path is too long");
    try {
      return ListFolder(path, {.pattern = pattern_,
                               .subfolders = recurse_,
                               .sizes = true,
                               .tail_bytes = tails_(path) ? kTagBytes : 0});
    } catch (const std::bad_alloc&) {
      return Unlisted("there is not enough memory");
    }
  }

  const std::string pattern_;
  const bool recurse_;
  const std::function<bool(const std::string&)> enter_;
  const std::function<bool(const std::string&)> tails_;
  std::mutex mutex_;
  std::condition_variable work_;        ///< there is something to list ahead
  std::condition_variable done_;        ///< a folder has been listed; only the walk waits for it
  DetachedThreads threads_;             ///< all that have not ended
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
  if (!recurse) return;
  const unsigned threads =
      std::clamp(std::thread::hardware_concurrency(), kMinThreads, kMaxThreads);
  for (unsigned k = 0; k < threads; ++k)
    // With fewer threads, the walk lists the folders that no thread has listed.
    if (!shared_->StartWorker()) break;
}

FolderReader::~FolderReader() { shared_->Stop(); }

std::shared_ptr<TreeFolder> FolderReader::Root(std::string_view folder) const {
  auto root = std::make_shared<TreeFolder>();
  root->path = EnsureTrailingBackslash(folder);
  return root;
}

bool FolderReader::WaitFor(const std::shared_ptr<TreeFolder>& folder,
                           const std::function<bool()>& go_on) {
  if (go_on) return shared_->WaitFor(folder, go_on);
  shared_->ListHere(folder);
  return true;
}

void FolderReader::Enter(TreeFolder& folder) { shared_->Enter(folder); }

}  // namespace tallow

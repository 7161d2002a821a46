// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/folder_reader.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

#include "library/mp3_tag_editor.h"
#include "util/path_text.h"
#include "util/read_ahead.h"
#include "util/threads.h"

namespace tallow {

/// State shared by the walk and the worker threads; the last owner destroys it.
class FolderReader::Shared {
 public:
  using FolderPointer = std::shared_ptr<TreeFolder>;

  Shared(std::string pattern, bool recurse, std::function<bool(const std::string&)> enter,
         std::function<bool(const std::string&)> tails)
      : pattern_(std::move(pattern)),
        recurse_(recurse),
        enter_(std::move(enter)),
        tails_(std::move(tails)) {}

  /// \returns false when the system cannot create another thread
  static bool Start(const std::shared_ptr<Shared>& shared, std::function<void()> work) {
    {
      const std::lock_guard lock(shared->mutex_);
      ++shared->threads_;
    }
    std::thread thread = StartThread([shared, work = std::move(work)] {
      work();
      const std::lock_guard lock(shared->mutex_);
      --shared->threads_;
      shared->ended_.notify_one();
    });
    if (thread.joinable()) {
      thread.detach();
      return true;
    }
    const std::lock_guard lock(shared->mutex_);
    --shared->threads_;
    return false;
  }

  void Stop() {
    std::unique_lock lock(mutex_);
    stop_ = true;
    work_.notify_all();
    // A thread that still waits for a disk accesses nothing but this object when the disk responds.
    ended_.wait_for(lock, kAbandonAfter, [this] { return threads_ == 0; });
  }

  void Work() {
    std::unique_lock lock(mutex_);
    for (;;) {
      work_.wait(lock,
                 [this] { return stop_ || wanted_ || (!waiting_.empty() && ahead_ < kMaxAhead); });
      if (stop_) return;
      if (const FolderPointer folder = NextWaiting()) ReadAheadOne(*folder, lock);
    }
  }

  bool Take(const std::shared_ptr<Shared>& self, const FolderPointer& folder,
            const std::function<bool()>& process_events) {
    std::unique_lock lock(mutex_);
    if (process_events) {
      if (!WaitFor(self, folder, process_events, lock)) return false;
    } else {
      if (folder->state_ == TreeFolder::State::kWaiting) ReadOne(*folder, lock);
      // If another thread is listing the folder, lists other folders until that thread is done.
      while (folder->state_ != TreeFolder::State::kDone)
        if (const FolderPointer other = NextWaiting())
          ReadAheadOne(*other, lock);
        else
          done_.wait(lock, [&] { return folder->state_ == TreeFolder::State::kDone; });
    }
    if (std::exchange(folder->is_ahead_, false) && ahead_-- == kMaxAhead) work_.notify_all();
    return true;
  }

  void Enter(TreeFolder& folder) {
    const std::lock_guard lock(mutex_);
    if (!folder.queued_) Queue(folder);
  }

 private:
  /// Maximum number of folders listed before the walk reaches them; bounds the memory of a slow
  /// walk.
  static constexpr std::size_t kMaxAhead = 4096;

  // The caller of all functions below holds the lock; ReadOne releases it while it reads.

  void Queue(TreeFolder& folder) {
    folder.queued_ = true;
    waiting_.insert(waiting_.end(), folder.subfolders.rbegin(), folder.subfolders.rend());
    if (!folder.subfolders.empty()) work_.notify_all();
  }

  FolderPointer NextWaiting() {
    if (const FolderPointer wanted = std::exchange(wanted_, nullptr);
        wanted && wanted->state_ == TreeFolder::State::kWaiting)
      return wanted;
    while (!waiting_.empty() && ahead_ < kMaxAhead) {
      FolderPointer folder = std::move(waiting_.back());
      waiting_.pop_back();
      if (folder->state_ == TreeFolder::State::kWaiting) return folder;
    }
    return nullptr;
  }

  /// Waits for a folder without listing anything on this thread: a disk that does not respond would
  /// block the window.
  bool WaitFor(const std::shared_ptr<Shared>& self, const FolderPointer& folder,
               const std::function<bool()>& process_events, std::unique_lock<std::mutex>& lock) {
    const auto is_done = [&] { return folder->state_ == TreeFolder::State::kDone; };
    if (folder->state_ == TreeFolder::State::kWaiting) {
      wanted_ = folder;
      work_.notify_one();
      if (threads_ == 0) ReadOnNewThread(self, folder, lock);
    }
    while (!done_.wait_for(lock, kEventInterval, is_done)) {
      // All worker threads are waiting for a disk.
      if (folder->state_ == TreeFolder::State::kWaiting) ReadOnNewThread(self, folder, lock);
      lock.unlock();
      const bool go_on = process_events();
      lock.lock();
      if (!go_on && !is_done()) break;
    }
    wanted_.reset();
    return is_done();
  }

  void ReadOnNewThread(const std::shared_ptr<Shared>& self, const FolderPointer& folder,
                       std::unique_lock<std::mutex>& lock) {
    folder->state_ = TreeFolder::State::kReading;
    lock.unlock();
    const auto read = [self, folder] {
      std::unique_lock own(self->mutex_);
      self->ReadOne(*folder, own);
    };
    if (!Start(self, read)) read();
    lock.lock();
  }

  void ReadAheadOne(TreeFolder& folder, std::unique_lock<std::mutex>& lock) {
    ++ahead_;
    folder.is_ahead_ = true;
    ReadOne(folder, lock);
    Queue(folder);
  }

  void ReadOne(TreeFolder& folder, std::unique_lock<std::mutex>& lock) {
    folder.state_ = TreeFolder::State::kReading;
    lock.unlock();
    FolderListing listing = List(folder.path);
    lock.lock();
    if (!stop_) TakeListing(folder, std::move(listing));
    folder.state_ = TreeFolder::State::kDone;
    done_.notify_one();
  }

  void TakeListing(TreeFolder& folder, FolderListing listing) const {
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
  std::condition_variable ended_;       ///< a thread has ended
  std::vector<FolderPointer> waiting_;  ///< stack: the folder that the walk reaches first is last
  FolderPointer wanted_;                ///< the folder that the walk waits for
  std::size_t ahead_ = 0;
  unsigned threads_ = 0;
  bool stop_ = false;
};

FolderReader::FolderReader(std::string pattern, bool recurse,
                           std::function<bool(const std::string&)> enter,
                           std::function<bool(const std::string&)> tails)
    : shared_(std::make_shared<Shared>(std::move(pattern), recurse, std::move(enter),
                                       std::move(tails))) {
  if (!recurse) return;
  const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 2U, 5U);
  for (unsigned k = 0; k < threads; ++k)
    // With fewer threads, the walk lists the folders that no thread has listed.
    if (!Shared::Start(shared_, [shared = shared_.get()] { shared->Work(); })) break;
}

FolderReader::~FolderReader() { shared_->Stop(); }

std::shared_ptr<TreeFolder> FolderReader::Root(std::string_view folder) const {
  auto root = std::make_shared<TreeFolder>();
  root->path = EnsureTrailingBackslash(folder);
  return root;
}

bool FolderReader::Take(const std::shared_ptr<TreeFolder>& folder,
                        const std::function<bool()>& process_events) {
  return shared_->Take(shared_, folder, process_events);
}

void FolderReader::Enter(TreeFolder& folder) { shared_->Enter(folder); }

}  // namespace tallow

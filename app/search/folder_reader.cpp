// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/folder_reader.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "library/mp3_tag_editor.h"
#include "util/path_text.h"
#include "util/read_ahead.h"

namespace tallow {

FolderReader::FolderReader(std::string pattern, bool recurse,
                           std::function<bool(const std::string&)> enter,
                           std::function<bool(const std::string&)> tails)
    : pattern_(std::move(pattern)),
      recurse_(recurse),
      enter_(std::move(enter)),
      tails_(std::move(tails)) {
  if (!recurse_) return;
  // The walk itself keeps one core busy.
  const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 2U, 5U) - 1;
  try {
    for (unsigned k = 0; k < threads; ++k) workers_.emplace_back([this] { Work(); });
  } catch (const std::system_error&) {
    // The system gives no more threads: the walk lists what nobody has listed.
  }
}

FolderReader::~FolderReader() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
    work_.notify_all();
  }
  for (std::thread& worker : workers_) worker.join();
}

std::shared_ptr<TreeFolder> FolderReader::Root(std::string_view folder) const {
  auto root = std::make_shared<TreeFolder>();
  root->path = EnsureTrailingBackslash(folder);
  return root;
}

void FolderReader::WaitFor(TreeFolder& folder, const std::function<void()>& live,
                           std::unique_lock<std::mutex>& lock) {
  while (!done_.wait_for(lock, kLiveEvery,
                         [&] { return folder.state_ == TreeFolder::State::kDone; })) {
    is_quick_ = false;
    lock.unlock();
    live();
    lock.lock();
  }
}

void FolderReader::Take(TreeFolder& folder, const std::function<void()>& live) {
  std::unique_lock lock(mutex_);
  if (folder.state_ == TreeFolder::State::kWaiting) {
    // The first folder of a disk may have to wait until that runs.
    if (!live || (is_quick_ && folder.is_below_another_)) return ReadOne(folder, lock);
    folder.state_ = TreeFolder::State::kReading;
    std::thread reader([&] {
      List(folder);
      const std::lock_guard reader_lock(mutex_);
      folder.state_ = TreeFolder::State::kDone;
      done_.notify_one();
    });
    WaitFor(folder, live, lock);
    lock.unlock();
    reader.join();
    return;
  }
  // Another thread has it. Until that one is done there is other work to do.
  while (folder.state_ != TreeFolder::State::kDone) {
    const std::shared_ptr<TreeFolder> other = live && !is_quick_ ? nullptr : NextWaiting();
    if (other)
      ReadAheadOne(*other, lock);
    else if (live)
      WaitFor(folder, live, lock);
    else
      done_.wait(lock, [&] { return folder.state_ == TreeFolder::State::kDone; });
  }
  if (ahead_-- == kMostAhead) work_.notify_all();
}

void FolderReader::Work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    work_.wait(lock, [this] { return stop_ || (!waiting_.empty() && ahead_ < kMostAhead); });
    if (stop_) return;
    if (const std::shared_ptr<TreeFolder> folder = NextWaiting()) ReadAheadOne(*folder, lock);
  }
}

std::shared_ptr<TreeFolder> FolderReader::NextWaiting() {
  while (!waiting_.empty() && ahead_ < kMostAhead) {
    std::shared_ptr<TreeFolder> folder = std::move(waiting_.back());
    waiting_.pop_back();
    if (folder->state_ == TreeFolder::State::kWaiting) return folder;
  }
  return nullptr;
}

void FolderReader::ReadAheadOne(TreeFolder& folder, std::unique_lock<std::mutex>& lock) {
  ++ahead_;
  ReadOne(folder, lock);
  Queue(folder);
}

void FolderReader::ReadOne(TreeFolder& folder, std::unique_lock<std::mutex>& lock) {
  folder.state_ = TreeFolder::State::kReading;
  lock.unlock();
  List(folder);
  lock.lock();
  folder.state_ = TreeFolder::State::kDone;
  done_.notify_one();
}

void FolderReader::List(TreeFolder& folder) const {
  if (folder.path.size() > kMostPathBytes) return;
  try {
    folder.listing = ListFolder(folder.path, {.pattern = pattern_,
                                              .subfolders = recurse_,
                                              .sizes = true,
                                              .tail_bytes = tails_(folder.path) ? kTagBytes : 0});
    for (const SubfolderEntry& entry : folder.listing.subfolders) {
      if (entry.linked) continue;
      auto subfolder = std::make_shared<TreeFolder>();
      subfolder->is_below_another_ = true;
      subfolder->path.append(folder.path).append(entry.name).push_back(kSeparator);
      if (enter_(subfolder->path)) folder.subfolders.push_back(std::move(subfolder));
    }
  } catch (const std::bad_alloc&) {
    // A folder that does not fit in memory counts as one that cannot be read.
    folder.listing = {};
    folder.subfolders.clear();
  }
}

void FolderReader::Enter(TreeFolder& folder) {
  const std::lock_guard lock(mutex_);
  if (!folder.queued_) Queue(folder);
}

void FolderReader::Queue(TreeFolder& folder) {
  folder.queued_ = true;
  waiting_.insert(waiting_.end(), folder.subfolders.rbegin(), folder.subfolders.rend());
  if (!folder.subfolders.empty()) work_.notify_all();
}

}  // namespace tallow

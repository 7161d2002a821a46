// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "util/file_system.h"

namespace tallow {

/// A folder of a tree that is being walked.
struct TreeFolder {
  std::string path;       ///< ends in a separator
  FolderListing listing;  ///< filled once FolderReader::Take has returned
  /// The subfolders to enter, in the order of the listing: no links, no mount points.
  std::vector<std::shared_ptr<TreeFolder>> subfolders;

 private:
  friend class FolderReader;
  enum class State { kWaiting, kReading, kDone };
  State state_ = State::kWaiting;
  bool queued_ = false;  ///< its subfolders are, or were, waiting to be listed
  bool is_below_another_ = false;
};

/// Lists the folders of a tree ahead of a walk that goes through it depth first.
///
/// The walk takes its folders in its own order and on its own thread; other threads list meanwhile
/// what it will come to next. What the walk needs and nobody has begun is listed at once, so nothing
/// depends on how many threads there are.
class FolderReader {
 public:
  /// Longest path of a folder, in bytes. A song's folder has to fit a text of the library file.
  static constexpr std::size_t kMostPathBytes = 0xFFFF;

  /// \param pattern of the files to list, with their sizes
  /// \param recurse list subfolders too
  /// \param tails of the files of which folders the last bytes are read too; called from several
  ///         threads
  /// \param enter   whether a subfolder that is no link may be entered; called from several threads
  FolderReader(std::string pattern, bool recurse, std::function<bool(const std::string&)> enter,
               std::function<bool(const std::string&)> tails);
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;
  ~FolderReader();

  /// The folder that a walk begins at, not listed yet.
  std::shared_ptr<TreeFolder> Root(std::string_view folder) const;

  /// Returns when a folder is listed.
  /// \param live called again and again until then, so that a disk that does not answer does not keep a
  ///             window from living: the walk helps listing only as long as that is quick; may be empty
  void Take(TreeFolder& folder, const std::function<void()>& live = {});

  /// Tells that the walk goes on into a taken folder: its subfolders are listed ahead from now on.
  void Enter(TreeFolder& folder);

 private:
  /// Listed folders that the walk has not come to; bounds the memory of a walk that cannot keep up.
  static constexpr std::size_t kMostAhead = 4096;

  void Work();
  void List(TreeFolder& folder) const;
  // All of these need the lock, which ReadOne gives up while it reads.
  void Queue(TreeFolder& folder);
  std::shared_ptr<TreeFolder> NextWaiting();
  void WaitFor(TreeFolder& folder, const std::function<void()>& live,
               std::unique_lock<std::mutex>& lock);
  void ReadAheadOne(TreeFolder& folder, std::unique_lock<std::mutex>& lock);
  void ReadOne(TreeFolder& folder, std::unique_lock<std::mutex>& lock);

  const std::string pattern_;
  const bool recurse_;
  const std::function<bool(const std::string&)> enter_;
  const std::function<bool(const std::string&)> tails_;
  std::mutex mutex_;
  std::condition_variable work_;  ///< there is something to list ahead
  std::condition_variable done_;  ///< a folder has been listed; only the walk waits for it
  std::vector<std::shared_ptr<TreeFolder>> waiting_;  ///< the one the walk comes to first is last
  std::size_t ahead_ = 0;
  bool stop_ = false;
  bool is_quick_ = true;  ///< nothing had to be waited for long yet
  std::vector<std::thread> workers_;
};

}  // namespace tallow

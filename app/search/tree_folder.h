// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "util/file_system.h"

namespace tallow {

/// A folder of a tree that a walk goes through, and what threads have claimed of it.
///
/// Its listing and subfolders belong to the walk once FolderReader::WaitFor has returned true. All
/// functions are called by the FolderReader, with its mutex locked.
class TreeFolder {
 public:
  /// \param folder its path; ends in a separator
  explicit TreeFolder(std::string folder) : path(std::move(folder)) {}

  const std::string path;
  FolderListing listing;
  /// The subfolders to enter, in the order of the listing, without links and mount points.
  std::vector<std::shared_ptr<TreeFolder>> subfolders;

  /// Claims the folder for listing. \returns false when it is, or was, claimed by another thread
  bool Claim() noexcept;
  /// Whether a thread has claimed the folder, or its files, and has not finished.
  bool IsReading() const noexcept { return state_ == State::kReading; }
  /// Whether the folder is listed, and its pending files are read.
  bool IsDone() const noexcept { return state_ == State::kDone; }

  /// Stores the listing. The folder is then done, unless the listing has pending files.
  ///
  /// \param enter whether a subfolder that is not a link may be entered
  void Store(FolderListing found, const std::function<bool(const std::string&)>& enter);

  /// Whether there are pending files that no thread has claimed.
  bool HasPending() const noexcept;
  /// Claims the next files, at most `size`, and moves them out of the listing.
  ///
  /// \param first receives the index of the first one
  std::vector<FileEntry> ClaimFiles(std::size_t size, std::size_t& first);
  /// Stores claimed files again. The folder is done after the last ones.
  ///
  /// \param problem    why files could not be read; may be empty
  /// \param has_memory false when there was not enough memory for the files
  void StoreFiles(std::vector<FileEntry> files, std::size_t first, std::string problem,
                  bool has_memory);

  bool was_queued = false;  ///< its subfolders are, or were, queued for listing
  bool is_ahead = false;    ///< listed before the walk has reached the folder

 private:
  enum class State { kWaiting, kReading, kDone };

  void AddSubfolders(const std::function<bool(const std::string&)>& enter);
  void UseNothing();

  State state_ = State::kWaiting;
  std::size_t unclaimed_ = 0;  ///< index of the first file that no thread has claimed
  std::size_t parts_ = 0;      ///< claimed ranges of files that are not stored yet
};

}  // namespace tallow

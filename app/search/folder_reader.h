// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "app/search/tree_folder.h"

namespace tallow {

/// Lists the folders of a tree ahead of a depth-first walk.
///
/// The walk visits the folders in its own order and on its own thread; worker threads meanwhile
/// list the folders that the walk will reach next. The files of a large folder are divided among
/// them. There are as many threads as the disk can use, see ReaderCount. A folder that the walk
/// needs and no thread has begun to list is listed at once, so the result does not depend on the
/// number of threads. A worker thread that waits for a disk that does not respond stays detached
/// when the reader is destroyed.
class FolderReader {
 public:
  /// Maximum length of a folder's path in bytes. A song's folder has to fit into a text of the
  /// library file.
  static constexpr std::size_t kMaxPathBytes = 0xFFFF;

  /// \param pattern of the files to list, with their sizes
  /// \param recurse list subfolders too
  /// \param enter   whether a subfolder that is not a link may be entered; called from several
  ///                threads, one at a time, and never after the reader is destroyed
  /// \param tails   whether to read the last bytes of the files of a folder, too; called from
  ///                several threads, also after the reader is destroyed
  FolderReader(std::string pattern, bool recurse, std::function<bool(const std::string&)> enter,
               std::function<bool(const std::string&)> tails);
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;
  ~FolderReader();

  /// The folder that a walk starts at, not listed yet.
  std::shared_ptr<TreeFolder> Root(std::string_view folder) const;

  /// Waits until a folder is listed.
  ///
  /// \param go_on idle callback, called repeatedly while waiting; returns whether to keep waiting.
  ///              With a callback, this thread lists nothing itself, so a disk that does not
  ///              respond cannot block the window's events. May be empty
  /// \returns false when `go_on` stopped the wait before the folder was listed
  bool WaitFor(const std::shared_ptr<TreeFolder>& folder, const std::function<bool()>& go_on = {});

  /// Notifies the reader that the walk descends into a listed folder: lists its subfolders ahead
  /// from now on.
  void Enter(TreeFolder& folder);

 private:
  class Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace tallow

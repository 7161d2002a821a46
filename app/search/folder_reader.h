// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "util/file_system.h"

namespace tallow {

/// A folder of a tree that is being walked.
struct TreeFolder {
  std::string path;       ///< ends in a separator
  FolderListing listing;  ///< filled once FolderReader::Take has returned true
  /// The subfolders to enter, in the order of the listing: no links, no mount points.
  std::vector<std::shared_ptr<TreeFolder>> subfolders;

 private:
  friend class FolderReader;
  enum class State { kWaiting, kReading, kDone };
  State state_ = State::kWaiting;
  bool queued_ = false;    ///< its subfolders are, or were, waiting to be listed
  bool is_ahead_ = false;  ///< listed before the walk has come to it
};

/// Lists the folders of a tree ahead of a walk that goes through it depth first.
///
/// The walk takes its folders in its own order and on its own thread; other threads list meanwhile
/// what it will come to next. What the walk needs and nobody has begun is listed at once, so nothing
/// depends on how many threads there are. A thread that waits for a disk that does not answer is left alone
/// when the reader goes.
class FolderReader {
 public:
  /// Longest path of a folder, in bytes. A song's folder has to fit a text of the library file.
  static constexpr std::size_t kMaxPathBytes = 0xFFFF;

  /// \param pattern of the files to list, with their sizes
  /// \param recurse list subfolders too
  /// \param enter   whether a subfolder that is no link may be entered; called from several threads, one at a
  ///                time, and never once the reader is gone
  /// \param tails   of the files of which folders the last bytes are read too; called from several
  ///                threads, also when the reader is gone
  FolderReader(std::string pattern, bool recurse, std::function<bool(const std::string&)> enter,
               std::function<bool(const std::string&)> tails);
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;
  ~FolderReader();

  /// The folder that a walk begins at, not listed yet.
  std::shared_ptr<TreeFolder> Root(std::string_view folder) const;

  /// Returns when a folder is listed.
  ///
  /// \param go_on called again and again until then, so that a disk that does not answer does not keep a
  ///             window from living: then the walk lists nothing itself. Returns whether to go on waiting.
  ///             May be empty
  /// \returns false when it is not listed, because `process_events` did not want to wait for it
  bool Take(const std::shared_ptr<TreeFolder>& folder, const std::function<bool()>& go_on = {});

  /// Tells that the walk goes on into a taken folder: its subfolders are listed ahead from now on.
  void Enter(TreeFolder& folder);

 private:
  class Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "util/file_system.h"
#include "util/reader_count.h"

namespace tallow {

class TreeFolder;

/// What a thread of FolderReader has claimed: a folder to list, or a range of its pending files;
/// nothing without a folder.
struct FolderTask {
  std::shared_ptr<TreeFolder> folder;
  std::size_t first = 0;            ///< index of the first file
  std::vector<FileEntry> files;     ///< empty when the folder is to be listed
  std::size_t max_tails = 0;        ///< see ListRequest; for a folder to be listed
  bool must_start_workers = false;  ///< the disk can use more threads than there are

  // The result.
  FolderListing listing;
  std::string problem;     ///< of the files
  bool has_memory = true;  ///< false when there was not enough memory for the files
  std::size_t calls = 0;   ///< that the task needed, about
  ReaderCount::Clock::time_point begin;
  ReaderCount::Clock::time_point end;
};

/// Does the tasks of FolderReader; may be used on several threads at once.
class FolderLister {
 public:
  /// For the parameters see FolderReader.
  FolderLister(std::string pattern, bool recurse, std::function<bool(const std::string&)> tails);

  /// Lists a folder, or reads files, and stores the result in the task.
  void Do(FolderTask& task) const;

  /// The listing of a folder for which there is not enough memory.
  static FolderListing NoMemory();

 private:
  FolderListing List(const std::string& path, std::size_t max_tails) const;
  void ReadListing(FolderTask& task) const;

  const std::string pattern_;
  const bool recurse_;
  const std::function<bool(const std::string&)> tails_;
};

}  // namespace tallow

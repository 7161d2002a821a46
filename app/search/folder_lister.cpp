// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/folder_lister.h"

#include <algorithm>
#include <new>
#include <utility>

#include "app/search/folder_reader.h"
#include "library/song_formats.h"
#include "library/tag_layout.h"

namespace tallow {
namespace {

/// Calls for a folder: it is opened, and a block of its entries is read. As many for a file with a
/// tail: it is opened, and its end is read.
constexpr std::size_t kCalls = 2;

/// Files without tails are counted as one call for each block of entries, of about this many.
constexpr std::size_t kEntriesPerCall = 64;

/// The listing of a folder that cannot be listed.
FolderListing Unlisted(const char* problem) {
  FolderListing listing;
  listing.problem = problem;
  return listing;
}

std::size_t CallsFor(const std::vector<FileEntry>& files) {
  const auto has_tail = [](const FileEntry& file) { return !file.tail.empty(); };
  const auto tails = static_cast<std::size_t>(std::ranges::count_if(files, has_tail));
  return kCalls * (1 + tails) + (files.size() - tails) / kEntriesPerCall;
}

void ReadFiles(FolderTask& task) {
  task.calls = kCalls * task.files.size();
  try {
    task.problem = ReadPendingFiles(task.folder->path, kTagBytes, task.files);
  } catch (const std::bad_alloc&) {
    task.has_memory = false;
  }
}

}  // namespace

FolderLister::FolderLister(std::string pattern, bool recurse,
                           std::function<bool(const std::string&)> tails)
    : pattern_(std::move(pattern)), recurse_(recurse), tails_(std::move(tails)) {}

void FolderLister::Do(FolderTask& task) const {
  task.begin = ReaderCount::Clock::now();
  if (task.files.empty())
    ReadListing(task);
  else
    ReadFiles(task);
  task.end = ReaderCount::Clock::now();
}

FolderListing FolderLister::NoMemory() { return Unlisted("there is not enough memory"); }

void FolderLister::ReadListing(FolderTask& task) const {
  task.listing = List(task.folder->path, task.max_tails);
  task.calls = CallsFor(task.listing.files);
}

FolderListing FolderLister::List(const std::string& path, std::size_t max_tails) const {
  if (path.size() > FolderReader::kMaxPathBytes) return Unlisted("its path is too long");
  try {
    return ListFolder(path, {.pattern = pattern_,
                             .counted = OtherSongs(pattern_),
                             .subfolders = recurse_,
                             .sizes = true,
                             .tail_bytes = tails_(path) ? kTagBytes : 0,
                             .max_tails = max_tails});
  } catch (const std::bad_alloc&) {
    return NoMemory();
  }
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/tree_folder.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

#include "app/search/folder_lister.h"
#include "util/path_text.h"

namespace tallow {

bool TreeFolder::Claim() noexcept {
  if (state_ != State::kWaiting) return false;
  state_ = State::kReading;
  return true;
}

void TreeFolder::Store(FolderListing found, const std::function<bool(const std::string&)>& enter) {
  listing = std::move(found);
  AddSubfolders(enter);
  if (!listing.has_pending) {
    state_ = State::kDone;
    return;
  }
  unclaimed_ = static_cast<std::size_t>(
      std::ranges::find(listing.files, true, &FileEntry::is_pending) - listing.files.begin());
}

void TreeFolder::AddSubfolders(const std::function<bool(const std::string&)>& enter) {
  try {
    for (const SubfolderEntry& entry : listing.subfolders) {
      if (entry.linked) continue;
      std::string below = path;
      below.append(entry.name).push_back(kSeparator);
      if (enter(below)) subfolders.push_back(std::make_shared<TreeFolder>(std::move(below)));
    }
  } catch (const std::bad_alloc&) {
    UseNothing();
  }
}

void TreeFolder::UseNothing() {
  subfolders.clear();
  listing = FolderLister::NoMemory();
}

bool TreeFolder::HasPending() const noexcept {
  return IsReading() && listing.has_pending && unclaimed_ < listing.files.size();
}

std::vector<FileEntry> TreeFolder::ClaimFiles(std::size_t size, std::size_t& first) {
  first = unclaimed_;
  size = std::min(size, listing.files.size() - first);
  const auto begin = std::make_move_iterator(listing.files.data() + first);
  std::vector<FileEntry> files(begin, begin + static_cast<std::ptrdiff_t>(size));
  unclaimed_ += size;
  ++parts_;
  return files;
}

void TreeFolder::StoreFiles(std::vector<FileEntry> files, std::size_t first, std::string problem,
                            bool has_memory) {
  std::ranges::move(files, listing.files.begin() + static_cast<std::ptrdiff_t>(first));
  if (!problem.empty()) listing.problem = std::move(problem);
  if (!has_memory) listing.opened = false;
  --parts_;
  if (parts_ > 0 || HasPending()) return;
  // Files that do not exist any more are still pending.
  std::erase_if(listing.files, [](const FileEntry& file) { return file.is_pending; });
  if (!listing.opened) UseNothing();
  state_ = State::kDone;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/folder_list.h"

#include <algorithm>

#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/text_lines.h"

namespace tallow {

void FolderList::Clear() noexcept {
  content_.reset();
  is_unread_ = false;
}

void FolderList::Read(std::vector<std::string>& problems) {
  const std::string path = Path();
  try {
    content_ = ReadWholeFile(path, kMaxBytes);
  } catch (const FileError& error) {
    is_unread_ = true;
    problems.push_back(path + " cannot be read (" + error.reason() +
                       "), so it was not changed, and folders that only it names are not "
                       "processed. Make it readable and start Tallow again.");
  }
}

std::vector<std::string_view> FolderList::Lines() const {
  return content_ ? SplitLines(*content_) : std::vector<std::string_view>();
}

bool FolderList::IsDamaged() const {
  if (!content_ || content_->empty()) return false;
  return content_->back() != kLineEnd.back() ||
         !std::ranges::all_of(
             Lines(), [](std::string_view line) { return line == "0" || IsAbsolutePath(line); });
}

void FolderList::KeepDamaged(std::vector<std::string>& problems) {
  const std::string path = Path();
  try {
    KeepReplaced(path);
    problems.push_back(path + " is damaged. A copy was kept with .bak appended to its name.");
    is_stale_ = true;
  } catch (const FileError& error) {
    problems.push_back(path + " is damaged, and cannot be copied to a name that ends in .bak (" +
                       error.reason() + "), so it was not changed.");
    is_unread_ = true;
  }
}

void FolderList::Write(const std::string& lines) {
  error_.clear();
  if (is_unread_) return;
  const std::string path = Path();
  try {
    if (ReadWholeFile(path, kMaxBytes) != lines) WriteFileAtomically(path, lines);
  } catch (const FileError& error) {
    error_ = error.what();
  }
}

}  // namespace tallow

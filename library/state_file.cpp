// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/state_file.h"

#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"

namespace tallow {

void StateFile::Load(const std::string& path, const std::function<void(const std::string&)>& decode,
                     std::vector<std::string>& problems) {
  path_ = path;
  is_unreadable_ = true;
  std::string content;
  try {
    auto read = ReadWholeFile(path, kMaxBytes);
    is_unreadable_ = false;
    if (!read) return;
    content = *std::move(read);
  } catch (const FileTooLargeError&) {
    // Too large to have been written by this program, so it is damaged: decode the empty text,
    // which fails.
    is_unreadable_ = false;
  } catch (const FileError& error) {
    problems.push_back(path + " cannot be read (" + error.reason() +
                       "), so it was not changed. Make it readable and start Tallow again.");
    return;
  }
  try {
    decode(content);
  } catch (const std::exception&) {
    try {
      MoveToBackup(path);
      problems.push_back(path + " is damaged. It was renamed to end in .bak.");
    } catch (const FileError& error) {
      is_unreadable_ = true;
      problems.push_back(path + " is damaged, and cannot be renamed to end in .bak (" +
                         error.reason() + "), so it was not changed.");
    }
  }
}

void StateFile::Save(const std::string& bytes) const {
  if (is_unreadable_ || path_.empty()) return;
  WriteFileAtomically(path_, bytes);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "util/file_lock.h"
#include "util/open_file_linux.h"

namespace tallow {

struct FileLock::File : OpenFile {
  using OpenFile::OpenFile;
};

FileLock::FileLock() = default;
FileLock::~FileLock() = default;

FileLock::Answer FileLock::Acquire(const std::string& path) {
  // Retry when the file is deleted or replaced between open() and flock().
  constexpr int kMaxTries = 10;
  for (int tried = 0; tried < kMaxTries; ++tried) {
    // O_NONBLOCK: do not block when the path is a pipe or a device.
    auto file = std::make_unique<File>(Retry([&] {
      return open(path.c_str(), O_RDWR | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC,
                  S_IRUSR | S_IWUSR);
    }));
    struct stat opened {};
    if (!*file || fstat(file->descriptor(), &opened) != 0 || !S_ISREG(opened.st_mode))
      return Answer::kImpossible;
    if (Retry([&] { return flock(file->descriptor(), LOCK_EX | LOCK_NB); }) != 0)
      return errno == EWOULDBLOCK ? Answer::kInUse : Answer::kImpossible;
    struct stat there {};
    if (Retry([&] { return stat(path.c_str(), &there); }) != 0 || there.st_dev != opened.st_dev ||
        there.st_ino != opened.st_ino)
      continue;
    file_ = std::move(file);
    return Answer::kHeld;
  }
  return Answer::kImpossible;
}

}  // namespace tallow

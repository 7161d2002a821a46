// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

#include "util/file_lock.h"
#include "util/open_file_linux.h"

namespace tallow {

struct FileLock::File : OpenFile {
  using OpenFile::OpenFile;
};

FileLock::FileLock() = default;
FileLock::~FileLock() = default;

FileLock::Answer FileLock::Take(const std::string& path) {
  auto file =
      std::make_unique<File>(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!*file) return Answer::kImpossible;
  if (flock(file->descriptor(), LOCK_EX | LOCK_NB) != 0)
    return errno == EWOULDBLOCK ? Answer::kInUse : Answer::kImpossible;
  file_ = std::move(file);
  return Answer::kHeld;
}

}  // namespace tallow

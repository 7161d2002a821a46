// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "util/errors.h"
#include "util/open_file_linux.h"
#include "util/patch_file.h"

namespace tallow {

void PatchFileEnd(const std::string& path, std::size_t back, std::string_view bytes) {
  const OpenFile file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
  struct stat status {};
  if (!file || fstat(file.descriptor(), &status) != 0) throw FileError(path, std::strerror(errno));
  if (!S_ISREG(status.st_mode)) throw FileError(path, "is not a regular file");
  off_t at = status.st_size - static_cast<off_t>(back);
  if (at < 0) throw FileError(path, "is too short to hold a tag");
  while (!bytes.empty()) {
    const ssize_t written = pwrite(file.descriptor(), bytes.data(), bytes.size(), at);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw FileError(path, std::strerror(errno));
    bytes.remove_prefix(static_cast<std::size_t>(written));
    at += written;
  }
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/open_file_linux.h"
#include "util/path_text.h"

namespace tallow {
namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
  throw FileError(path, std::strerror(error));
}

void WriteAll(int descriptor, std::string_view content, const std::string& path) {
  while (!content.empty()) {
    const ssize_t written = write(descriptor, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail(path, errno);
    content.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

void WriteFileAtomically(const std::string& path, std::string_view content,
                         const std::function<void()>& before_replacing) {
  struct stat old {};
  const bool exists = stat(path.c_str(), &old) == 0;
  const std::string target = exists ? AbsolutePath(path) : path;
  if (exists && !S_ISREG(old.st_mode)) throw FileError(path, "is not a regular file");
  if (exists && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) Fail(path, errno);
  const std::string beside = target + std::string(kUnfinishedSuffix);
  // What an earlier writer has left goes; were it a link, another file would be written.
  if (unlink(beside.c_str()) != 0 && errno != ENOENT)
    Fail(errno == EISDIR || errno == EPERM ? beside : path, errno);
  const OpenFile file(open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file) Fail(path, errno);
  try {
    // A file system that keeps no permissions refuses; the content matters more.
    if (exists && fchmod(file.descriptor(), old.st_mode & 07777) != 0) errno = 0;
    WriteAll(file.descriptor(), content, path);
    if (fsync(file.descriptor()) != 0) Fail(path, errno);
    if (before_replacing) before_replacing();
  } catch (...) {
    unlink(beside.c_str());
    throw;
  }
  if (std::rename(beside.c_str(), target.c_str()) != 0) {
    const int error = errno;
    unlink(beside.c_str());
    Fail(path, error);
  }
  // The name itself is on the disk only once the folder is. A file system that cannot flush a
  // folder has done what it can.
  const std::string folder(FolderOfPath(target));
  const OpenFile directory(
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory) fsync(directory.descriptor());
}

void MoveToBackup(const std::string& path) {
  if (std::rename(path.c_str(), (path + std::string(kBackupSuffix)).c_str()) != 0)
    Fail(path, errno);
}

}  // namespace tallow

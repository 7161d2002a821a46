// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "util/atomic_file.h"
#include "util/atomic_file_platform.h"
#include "util/errors.h"
#include "util/open_file_linux.h"
#include "util/path_text.h"

namespace tallow {
namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
  throw FileError(path, std::strerror(error));
}

/// Whether a path exists and can be replaced.
///
/// \param status set to the status of the file
/// \throws FileError when the path cannot be checked, and when it is a dangling link
bool IsThere(const std::string& path, struct stat& status) {
  for (bool again = false;; again = true) {
    if (Retry([&] { return stat(path.c_str(), &status); }) == 0) return true;
    if (errno != ENOENT) Fail(path, errno);
    if (Retry([&] { return lstat(path.c_str(), &status); }) != 0) break;
    // Something is there now: a dangling link, or a file that was created a moment ago.
    if (again) throw FileError(path, "is a broken link");
  }
  if (errno != ENOENT) Fail(path, errno);
  return false;
}

/// The path of an existing file with every link resolved.
std::string RealPath(const std::string& path) {
  using Text = std::unique_ptr<char, decltype(&std::free)>;
  for (;;) {
    const Text real(realpath(path.c_str(), nullptr), &std::free);
    if (real) return real.get();
    if (errno != EINTR) Fail(path, errno);
  }
}

int Rename(const std::string& from, const std::string& to) noexcept {
  return Retry([&] { return std::rename(from.c_str(), to.c_str()); });
}

int Unlink(const std::string& path) noexcept {
  return Retry([&] { return unlink(path.c_str()); });
}

/// Whether an error means that the file system stores no permissions, or lets only the owner change
/// them.
bool KeepsNoPermissions(int error) noexcept {
  return error == EPERM || error == ENOTSUP || error == EOPNOTSUPP || error == ENOSYS ||
         error == EINVAL;
}

void WriteAll(int descriptor, std::string_view content, const std::string& path) {
  while (!content.empty()) {
    const ssize_t written = write(descriptor, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    // Fail when write() accepts no more bytes; retrying would loop forever.
    if (written <= 0) Fail(path, written < 0 ? errno : EIO);
    content.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

void WriteFileAtomically(const std::string& path, std::string_view content,
                         const std::function<void()>& before_replacing) {
  struct stat old {};
  const bool exists = IsThere(path, old);
  const std::string target = exists ? RealPath(path) : path;
  if (exists && !S_ISREG(old.st_mode)) throw FileError(path, "is not a regular file");
  if (exists && Retry([&] { return faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS); }) != 0)
    Fail(path, errno);
  const std::string beside = target + std::string(kTemporarySuffix);
  // Remove a temporary file left by an earlier writer. If it were a link, the write would go to
  // another file.
  if (Unlink(beside) != 0 && errno != ENOENT)
    Fail(errno == EISDIR || errno == EPERM ? beside : path, errno);
  const OpenFile file(
      Retry([&] { return open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666); }));
  if (!file) Fail(path, errno);
  try {
    // Saving the content matters more than the permissions, so a file system without permissions is
    // not an error.
    const mode_t permissions = old.st_mode & 07777;
    if (exists && Retry([&] { return fchmod(file.descriptor(), permissions); }) != 0 &&
        !KeepsNoPermissions(errno))
      Fail(path, errno);
    WriteAll(file.descriptor(), content, path);
    if (Retry([&] { return fsync(file.descriptor()); }) != 0) Fail(path, errno);
    if (before_replacing) before_replacing();
  } catch (...) {
    Unlink(beside);
    throw;
  }
  if (Rename(beside, target) != 0) {
    const int error = errno;
    Unlink(beside);
    Fail(path, error);
  }
  // The rename is durable only once the folder is flushed too. A file system that cannot flush a
  // folder is not an error.
  const std::string folder(FolderOfPath(target));
  const OpenFile directory(Retry([&] {
    return open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  }));
  if (directory) Retry([&] { return fsync(directory.descriptor()); });
}

bool LinkBackup(const std::string& path, const std::string& backup) noexcept {
  try {
    const std::string beside = backup + std::string(kTemporarySuffix);
    if (Unlink(beside) != 0 && errno != ENOENT) return false;
    // link() does not follow a link, so pass the resolved path.
    const std::string target = RealPath(path);
    if (Retry([&] { return link(target.c_str(), beside.c_str()); }) != 0) return false;
    const bool renamed = Rename(beside, backup) == 0;
    // rename() does nothing when both names are hard links to the same file, so remove the first
    // name.
    Unlink(beside);
    return renamed;
  } catch (const std::exception&) {
    return false;
  }
}

bool IsLinkToFile(const std::string& path) noexcept {
  struct stat status {};
  return Retry([&] { return lstat(path.c_str(), &status); }) == 0 && S_ISLNK(status.st_mode) &&
         Retry([&] { return stat(path.c_str(), &status); }) == 0 && S_ISREG(status.st_mode);
}

void MoveFileTo(const std::string& path, const std::string& other) {
  if (Rename(path, other) != 0) Fail(errno == EISDIR ? other : path, errno);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "util/open_file_linux.h"
#include "util/owner_file_platform.h"

namespace tallow {
namespace {

/// open() that retries when a signal interrupts it.
int Open(const std::string& path, int flags, mode_t mode = 0) {
  for (;;) {
    const int descriptor = open(path.c_str(), flags | O_CLOEXEC, mode);
    if (descriptor >= 0 || errno != EINTR) return descriptor;
  }
}

bool WriteAll(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = write(descriptor, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

CreateResult MakeExclusiveFile(const std::string& path, std::string_view content) {
  // 0644: other users who work on the folder must be able to read the file.
  const OpenFile file(Open(path, O_WRONLY | O_CREAT | O_EXCL, 0644));
  if (!file) return errno == EEXIST ? CreateResult::kExists : CreateResult::kImpossible;
  if (WriteAll(file.descriptor(), content)) return CreateResult::kMade;
  unlink(path.c_str());
  return CreateResult::kImpossible;
}

std::optional<std::string> ReadSmallFile(const std::string& path, std::size_t max_bytes) {
  const OpenFile file(Open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (!file || fstat(file.descriptor(), &status) != 0 || !S_ISREG(status.st_mode))
    return std::nullopt;
  std::string content(max_bytes + 1, '\0');
  std::size_t filled = 0;
  while (filled < content.size()) {
    const ssize_t got = read(file.descriptor(), content.data() + filled, content.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  if (filled > max_bytes) return std::nullopt;
  content.resize(filled);
  return content;
}

bool NameExists(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 || errno != ENOENT;
}

bool RenameOver(const std::string& from, const std::string& to) {
  int result = 0;
  do result = std::rename(from.c_str(), to.c_str());
  while (result != 0 && errno == EINTR);
  return result == 0;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/runtime_folder_linux.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

#include "util/errors.h"
#include "util/path_text.h"

namespace tallow {
namespace {

constexpr mode_t kOnlyTheUser = S_IRWXU;
constexpr mode_t kAllOthers = S_IRWXG | S_IRWXO;

/// Whether a path is a folder (not a link) that the user owns and that only the user can access.
bool IsPrivateFolder(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == geteuid() && (status.st_mode & kAllOthers) == 0;
}

std::string MakePrivateFolder(const std::string& path) {
  if (mkdir(path.c_str(), kOnlyTheUser) != 0 && errno != EEXIST)
    throw FileError(path, std::strerror(errno));
  if (!IsPrivateFolder(path))
    throw FileError(path, "it must be a folder that you own and only you can access");
  return EnsureTrailingBackslash(path);
}

}  // namespace

std::string RuntimeFolder() {
  const char* const variable = std::getenv("XDG_RUNTIME_DIR");
  if (variable != nullptr && IsAbsolutePath(variable)) {
    const std::string base = EnsureTrailingBackslash(variable);
    if (IsPrivateFolder(base)) return MakePrivateFolder(base + "tallow");
  }
  return MakePrivateFolder("/tmp/tallow-" + std::to_string(geteuid()));
}

}  // namespace tallow

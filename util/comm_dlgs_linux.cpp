// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

#include "util/comm_dlgs.h"

namespace tallow {

std::optional<FileProblem> ProblemOfFileDate(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return std::nullopt;
  const int error = errno;
  const std::string text = std::strerror(error);
  switch (error) {
    case ENOENT:
      return FileProblem{kFileNotFound, true, text};
    case ENOTDIR:
      return FileProblem{kPathNotFound, true, text};
    case ENODEV:
    case ENXIO:
      return FileProblem{kDeviceUnavailable, true, text};
    default:
      return FileProblem{error, false, text};
  }
}

}  // namespace tallow

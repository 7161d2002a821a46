// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

#include "util/comm_dlgs.h"

namespace tallow {

std::optional<FileProblem> ProblemOfFileDate(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return std::nullopt;
  return ProblemOfError(static_cast<unsigned long>(errno));
}

FileProblem ProblemOfError(unsigned long error) {
  const std::string text = std::strerror(static_cast<int>(error));
  switch (error) {
    case ENOENT:
      return FileProblem{kFileNotFound, true, text};
    case ENOTDIR:
      return FileProblem{kPathNotFound, true, text};
    case ENODEV:
    case ENXIO:
      return FileProblem{kDeviceUnavailable, true, text};
    default:
      return FileProblem{static_cast<std::int64_t>(error), false, text};
  }
}

}  // namespace tallow

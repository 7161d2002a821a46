// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "util/comm_dlgs.h"
#include "util/wide_text_windows.h"

namespace tallow {

std::optional<FileProblem> ProblemOfFileDate(const std::string& path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(ToWidePath(path).c_str(), GetFileExInfoStandard, &data))
    return std::nullopt;
  return ProblemOfError(GetLastError());
}

FileProblem ProblemOfError(unsigned long error) {
  const std::string text = SystemErrorText(error);
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
      return FileProblem{kFileNotFound, true, text};
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return FileProblem{kPathNotFound, true, text};
    case ERROR_NOT_READY:
    case ERROR_BAD_UNIT:
    case ERROR_DEV_NOT_EXIST:
      return FileProblem{kDeviceUnavailable, true, text};
    default:
      return FileProblem{static_cast<std::int64_t>(error), false, text};
  }
}

}  // namespace tallow

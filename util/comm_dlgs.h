// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "util/message.h"

namespace tallow {

/// Why the date of a file cannot be told.
struct FileProblem {
  /// 53 file not found, 68 device unavailable, 76 path not found; for all else the system's own
  /// number.
  std::int64_t number = 0;
  bool absent = false;  ///< one of the three above
  std::string text;     ///< the system's text for it
};

inline constexpr std::int64_t kFileNotFound = 53;
inline constexpr std::int64_t kDeviceUnavailable = 68;
inline constexpr std::int64_t kPathNotFound = 76;

/// Asks for the date a file was last modified.
///
/// On Linux ENOENT is 53, ENOTDIR 76, ENODEV and ENXIO are 68. On Windows a missing file is 53; a
/// missing folder, drive letter or share 76; a drive without a medium 68.
/// \returns what came of it instead; no value when the date was told
std::optional<FileProblem> ProblemOfFileDate(const std::string& path);

/// What an error number of the system is as a problem of a file's date.
FileProblem ProblemOfError(unsigned long error);

/// Whether a file exists, as far as anything can be said against it.
///
/// An absent file, device or path is missing without a message. Any other problem is shown, and the
/// file counts as present: it may only be unreadable at this moment.
bool FileExistsCheck(const std::string& path, const ShowMessage& show);

}  // namespace tallow

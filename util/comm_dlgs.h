// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "util/message.h"

namespace tallow {

/// Why the date of a file cannot be read.
struct FileProblem {
  /// 53 file not found, 68 device unavailable, 76 path not found; otherwise the system's error
  /// number.
  std::int64_t number = 0;
  bool absent = false;  ///< number is one of the three above
  std::string text;     ///< the system's message for the error
};

inline constexpr std::int64_t kFileNotFound = 53;
inline constexpr std::int64_t kDeviceUnavailable = 68;
inline constexpr std::int64_t kPathNotFound = 76;

/// Reads the date a file was last modified, and returns the error if that fails.
///
/// On Linux ENOENT is 53, ENOTDIR is 76, ENODEV and ENXIO are 68. On Windows a missing file is 53;
/// a missing folder, drive letter or share is 76; a drive without a medium is 68.
/// \returns the problem; no value when the date could be read
std::optional<FileProblem> ProblemOfFileDate(const std::string& path);

/// Maps an error number of the system to a FileProblem.
FileProblem ProblemOfError(unsigned long error);

/// Whether a file exists; errors other than "absent" count as existing.
///
/// An absent file, device or path returns false without a message. Any other problem is shown in a
/// message box and returns true, because the file may only be unreadable at this moment.
bool FileExistsCheck(const std::string& path, const ShowMessage& show);

}  // namespace tallow

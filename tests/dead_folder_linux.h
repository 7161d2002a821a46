// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Within its scope a folder is on a disk that does not answer: calls on paths in the folder
/// block until the end of the scope. All file calls of the program are interposed, see
/// dead_folder_linux.cpp. Only one such object may exist at a time.
class DeadFolder {
 public:
  /// \param folder ends in a separator
  explicit DeadFolder(const std::string& folder);
  DeadFolder(const DeadFolder&) = delete;
  DeadFolder& operator=(const DeadFolder&) = delete;
  /// Returns when no call is blocked any longer.
  ~DeadFolder();

  /// Number of calls on paths in the folder.
  int Asked() const;
};

/// Within its scope all calls on paths in a folder fail with an errno value.
class FailingFolder {
 public:
  FailingFolder(const std::string& folder, int error);
  FailingFolder(const FailingFolder&) = delete;
  FailingFolder& operator=(const FailingFolder&) = delete;
  ~FailingFolder();

  int Asked() const;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Within its scope a folder lies on a disk that does not answer: whoever looks at something in it waits until
/// the end of the scope. The calls of the whole program to the system pass through here, see
/// dead_folder_linux.cpp. One at a time.
class DeadFolder {
 public:
  /// \param folder ends in a separator
  explicit DeadFolder(const std::string& folder);
  DeadFolder(const DeadFolder&) = delete;
  DeadFolder& operator=(const DeadFolder&) = delete;
  /// Returns when nobody waits any longer.
  ~DeadFolder();

  /// How often something in it was asked for.
  int Asked() const;
};

/// Within its scope every look at something in a folder fails with an error number of the system.
class FailingFolder {
 public:
  FailingFolder(const std::string& folder, int error);
  FailingFolder(const FailingFolder&) = delete;
  FailingFolder& operator=(const FailingFolder&) = delete;
  ~FailingFolder();

  int Asked() const;
};

}  // namespace tallow

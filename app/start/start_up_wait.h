// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "library/folder_scan.h"
#include "util/file_system.h"

namespace tallow {

class StartUpWindows;
class Tallow;

/// Waits for drives during a start: the splash window processes events meanwhile, names a drive
/// that does not respond, and has a Cancel button that skips this drive only.
class StartUpWait {
 public:
  /// \param tallow, windows must outlive this object
  StartUpWait(Tallow& tallow, StartUpWindows& windows) : tallow_(tallow), windows_(windows) {}

  /// The callbacks for the library's scans; valid as long as this object.
  GoOn GoOnCallback();
  WaitForDrive WaitCallback();

  /// Processes window events.
  ///
  /// \param folder what has responded: ends the display of a slow drive. Empty when nothing has
  /// \returns false when the program is to end
  bool ProcessEvents(std::string_view folder);

  /// Checks a file, with a timeout for its drive. See clsMain::CheckPath.
  FileStatus CheckPath(const std::string& path);
  /// Checks a file as above. \returns the root of its drive if that is away or does not respond;
  /// empty otherwise
  std::string AwayRootOf(const std::string& path);
  /// Whether a path lies on a drive that was given up because it does not respond.
  bool IsUnresponsive(const std::string& path) const;

 private:
  bool KeepWaitingForDrive(std::string_view root);

  Tallow& tallow_;
  StartUpWindows& windows_;
  std::string slow_drive_;  ///< the drive that the splash window says it is waiting for
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/folder_scan.h"
#include "library/known_drives.h"
#include "library/unanswered_places.h"
#include "util/file_system.h"
#include "util/wait_decision.h"

namespace tallow {

/// Checks files and folders on disks that may not answer.
///
/// While a disk does not answer, the callbacks of the running scan are called, and the drive may be
/// given up: nothing below it is asked for until Clear, and its drive counts as away.
class DiskQueries {
 public:
  /// \param drives must outlive this object
  explicit DiskQueries(KnownDrives& drives) : drives_(drives) {}
  DiskQueries(const DiskQueries&) = delete;
  DiskQueries& operator=(const DiskQueries&) = delete;

  /// Sets the callbacks of a scan; both may be empty.
  ///
  /// \param go_on called with each folder checked, and with an empty text while waiting; returns
  ///              false to stop
  void SetCallbacks(GoOn go_on, WaitForDrive wait);

  /// Calls the scan's callback.
  ///
  /// \throws Stopped when it returns false
  void GoOnOrStop(std::string_view folder = {}) const;

  /// The status of a file; kUnknown when its disk does not answer.
  FileStatus CheckPath(const std::string& path);
  /// CheckPath with a timeout for local disks too.
  FileStatus CheckPathWithTimeout(const std::string& path);

  /// The state of a folder; kUnreadable when its disk does not answer.
  FolderState StateOf(const std::string& folder);
  /// The states of folders, in their order; no value for a folder whose disk does not answer.
  std::vector<std::optional<FolderState>> StatesOf(const std::vector<std::string>& folders);

  /// The callback for ReadAhead that runs while the disk has not answered, see clsMain::WaitingFor.
  WhileWaiting WaitingFor(std::function<std::string(std::size_t)> path_of, GoOn go_on,
                          WaitForDrive wait);
  /// WaitingFor with the callbacks of the scan.
  WhileWaiting WaitingFor(std::function<std::string(std::size_t)> path_of);

  /// Whether to skip a folder because checking it would take long and give no result.
  bool IsNotAsked(std::string_view folder) const;
  /// The root of the drive because of which a folder is skipped.
  std::string SkippedRootOf(std::string_view folder) const;

  /// The places given up since Clear.
  std::shared_ptr<const UnansweredPlaces> Unanswered() const { return unanswered_; }
  void Clear() { unanswered_->Clear(); }

 private:
  template <typename Answer>
  Answer Ask(const std::string& path, Answer (*ask)(const std::string&), const Answer& unanswered);
  template <typename Answer>
  Answer AskOnWorkerThread(const std::string& path, Answer (*ask)(const std::string&),
                           const Answer& unanswered);

  KnownDrives& drives_;
  GoOn go_on_;
  WaitForDrive wait_for_drive_;
  /// Shared with worker threads, which may be abandoned.
  std::shared_ptr<UnansweredPlaces> unanswered_ = std::make_shared<UnansweredPlaces>();
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/start_up_wait.h"

#include <utility>

#include "app/search/search_progress.h"
#include "app/system.h"
#include "app/tallow.h"
#include "library/scan_report.h"

namespace tallow {

GoOn StartUpWait::GoOnCallback() {
  return [this](std::string_view folder) { return ProcessEvents(folder); };
}

WaitForDrive StartUpWait::WaitCallback() {
  return [this](std::string_view root) { return KeepWaitingForDrive(root); };
}

bool StartUpWait::ProcessEvents(std::string_view folder) {
  if (!folder.empty() && !slow_drive_.empty()) {
    slow_drive_.clear();
    windows_.ShowCancelButton(false);
    if (SearchProgress* const splash = windows_.LoadedSplash()) splash->SetStatus({});
  }
  if (SearchProgress* const splash = windows_.LoadedSplash()) splash->VisitFolder({});
  return !tallow_.is_shutting_down;
}

bool StartUpWait::KeepWaitingForDrive(std::string_view root) {
  if (slow_drive_ != root) {
    tallow_.SearchCancelled = false;
    slow_drive_ = root;
    if (SearchProgress* const splash = windows_.LoadedSplash())
      splash->SetStatus(WaitingLine(root));
    windows_.ShowCancelButton(true);
  }
  // The cancel applies to this drive only.
  return !std::exchange(tallow_.SearchCancelled, false);
}

FileStatus StartUpWait::CheckPath(const std::string& path) {
  const FileStatus status = tallow_.library.CheckPath(path, GoOnCallback(), WaitCallback());
  ProcessEvents(path);
  return status;
}

std::string StartUpWait::AwayRootOf(const std::string& path) {
  CheckPath(path);
  std::string root = tallow_.library.Unanswered()->RootOf(path);
  if (root.empty() && IsGone(path)) root = tallow_.library.AwayRootOf(path);
  return root;
}

bool StartUpWait::IsUnresponsive(const std::string& path) const {
  return tallow_.library.Unanswered()->Covers(path);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// The checks of the library that call back while a disk does not answer.
#include "library/cls_main_asking.h"

#include <utility>

namespace tallow {

void clsMain::CheckToSeeIfFilesAreMissingAndMakeFalse(const GoOn& go_on, const WaitForDrive& wait) {
  const Asking asking(*this, go_on, wait);
  LoadMemory();
  try {
    CheckDrives();
    CheckPresence();
  } catch (const Stopped&) {
    // All songs stay as they are. Do not check the drives again in this scan.
    drives_were_checked_ = true;
  }
}

bool clsMain::AddAnyAdditionalMp3FromTheNormalDirectories(
    const GoOn& go_on, const WaitForDrive& wait, const std::function<void()>& search_all_drives) {
  const Asking asking(*this, go_on, wait);
  if (settings_.NumerOfRecordsInTheMain() < 1) {
    if (search_all_drives) search_all_drives();
    ImportFoundSongs(0);
  } else {
    AddFromRememberedFolders();
  }
  return false;
}

WhileWaiting clsMain::WaitingFor(std::function<std::string(std::size_t)> path_of, GoOn go_on,
                                 WaitForDrive wait) {
  return disk_.WaitingFor(std::move(path_of), std::move(go_on), std::move(wait));
}

FileStatus clsMain::CheckPath(const std::string& path, const GoOn& go_on,
                              const WaitForDrive& wait) {
  const Asking asking(*this, go_on, wait);
  return disk_.CheckPathWithTimeout(path);
}

void clsMain::CheckWithProgress(const GoOn& go_on, const std::function<void()>& act) {
  const Asking asking(*this, go_on, {});
  disk_.Clear();
  act();
}

void clsMain::CheckDrives() {
  if (read_volumes_)
    state_.Drives().CheckDrives(read_volumes_, [this](const std::vector<std::string>& folders) {
      return disk_.StatesOf(folders);
    });
  drives_were_checked_ = true;
}

std::uint32_t clsMain::SkippedReason(std::string_view folder) {
  return reasons_.NumberOf(AwayKind::kDrive, disk_.SkippedRootOf(folder));
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/winamp_search.h"

#include <atomic>
#include <memory>
#include <utility>

#include "app/search/drive_list.h"
#include "app/tallow.h"
#include "util/path_text.h"

namespace tallow {

WinampSearch::WinampSearch(Tallow& tallow, const DriveList& drives, SearchProgress* progress,
                           std::function<std::string()> nearby)
    : tallow_(tallow), drives_(drives), nearby_(std::move(nearby)), questions_(tallow, progress) {}

bool WinampSearch::SearchDrivesForWinamp() {
  const std::optional<std::string> found = Find();
  if (!found) return false;
  if (!found->empty()) Store(*found);
  return true;
}

std::optional<std::string> WinampSearch::Find() {
  std::string found = nearby_();
  std::string list = found.empty() ? drives_.GetLogicalDriveList() : std::string();
  while (found.empty() && !IsEndOfDriveList(list)) {
    const std::string root = NextDriveFromList(list);
    questions_.Report("Looking for WinAmp in " + root);
    if (questions_.IsSearched(drives_, root).value_or(false)) {
      found = FindUnder(root);
      if (!found.empty()) break;
    }
    if (questions_.WasStopped()) {
      questions_.EndStopped();
      return std::nullopt;
    }
    if (questions_.PauseAndTestForCancel()) return std::nullopt;
  }
  return found;
}

std::string WinampSearch::FindUnder(const std::string& root) {
  // Runs on another thread, because searching a disk takes minutes.
  const auto go_on = std::make_shared<std::atomic<bool>>(true);
  const auto found = questions_.Ask<std::string>([go_on, root, drives = &drives_] {
    return FindWinampUnder(root, *drives, [&go_on] { return go_on->load(); });
  });
  *go_on = false;
  return found.value_or(std::string());
}

void WinampSearch::Store(const std::string& path) {
  if (questions_.Shown() != nullptr) questions_.Report("Found WinAmp!!");
  // The settings file holds one path per line.
  if (HasLineBreak(path)) return;
  tallow_.settings.LocOfWinAmpExe(path);
  tallow_.SaveSettings();
}

}  // namespace tallow

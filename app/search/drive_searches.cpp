// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/drive_searches.h"

#include <utility>

#include "app/search/drive_list.h"
#include "app/search/file_search.h"
#include "app/search/winamp_search.h"
#include "app/tallow.h"

namespace tallow {

DriveSearches::DriveSearches(Tallow& tallow, const DriveList& drives,
                             std::function<std::string()> nearby)
    : tallow_(tallow), drives_(drives), nearby_(std::move(nearby)) {}

DriveSearches::~DriveSearches() = default;

std::shared_ptr<const DriveList> DriveSearches::DrivesNow() const {
  // Given drives belong to the owner of this object's drives.
  if (tallow_.has_given_drives) return {std::shared_ptr<void>(), &drives_};
  return SystemDrives();
}

bool DriveSearches::SearchForSongs(SearchProgress& progress) {
  return FileSearch(tallow_, drives_, &progress).SearchDrivesForMp3s(true, {});
}

bool DriveSearches::SearchForPlayer(SearchProgress& progress) {
  const bool is_finished =
      WinampSearch(tallow_, drives_, &progress, nearby_).SearchDrivesForWinamp();
  tallow_.player_path = tallow_.settings.LocOfWinAmpExe();
  return is_finished;
}

std::optional<std::string> DriveSearches::SearchDisksForPlayer(SearchProgress& progress) {
  return WinampSearch(tallow_, drives_, &progress, [] { return std::string(); }).Find();
}

}  // namespace tallow

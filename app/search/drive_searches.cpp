// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/drive_searches.h"

#include <utility>

#include "app/search/file_search.h"
#include "app/search/winamp_search.h"
#include "app/tallow.h"

namespace tallow {

DriveSearches::DriveSearches(Tallow& tallow, const DriveList& drives,
                             std::function<std::string()> nearby)
    : tallow_(tallow), drives_(drives), nearby_(std::move(nearby)) {}

DriveSearches::~DriveSearches() = default;

bool DriveSearches::SearchForSongs(SearchProgress& progress) {
  return FileSearch(tallow_, drives_, &progress).SearchDrivesForMp3s(true, {});
}

bool DriveSearches::SearchForPlayer(SearchProgress& progress) {
  const bool is_finished =
      WinampSearch(tallow_, drives_, &progress, nearby_).SearchDrivesForWinamp();
  tallow_.player_path = tallow_.settings.LocOfWinAmpExe();
  return is_finished;
}

}  // namespace tallow

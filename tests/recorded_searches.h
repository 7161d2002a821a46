// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/search/drive_searches.h"
#include "tests/recorded_progress.h"

namespace tallow {

/// Searches of the whole computer that find nothing, or what a test lets them find.
class RecordedSearches : public DriveSearches {
 public:
  explicit RecordedSearches(Tallow& tallow) : DriveSearches(tallow, none_) {}

  bool SearchForSongs(SearchProgress& progress) override {
    return !for_songs || for_songs(progress);
  }
  bool SearchForPlayer(SearchProgress& /*progress*/) override {
    if (for_player) for_player();
    return true;
  }

  std::optional<std::string> SearchDisksForPlayer(SearchProgress& progress) override {
    return for_disks ? for_disks(progress) : std::string();
  }

  std::shared_ptr<const DriveList> DrivesNow() const override {
    return std::make_shared<TestDrives>(drives_now);
  }

  TestDrives drives_now{{}};
  std::function<bool(SearchProgress&)> for_songs;
  std::function<void()> for_player;
  std::function<std::optional<std::string>(SearchProgress&)> for_disks;

 private:
  TestDrives none_{{}};
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/data_paths.h"
#include "app/system.h"
#include "jukebox/jukebox.h"
#include "tests/library_fixture.h"
#include "tests/recorded_windows.h"
#include "tests/tagged_file.h"

namespace tallow {

/// Starts the program repeatedly on one application folder and one drive of real files.
class SystemTest : public testing::Test {
 protected:
  SystemTest() {
    MakeSong("a/one.mp3", {.artist = "ABBA", .year = "1976", .genra = 13});
    MakeSong("a/two.mp3", {.artist = "Queen", .year = "1985", .genra = 17});
    MakeSong("b/three.mp3", {.artist = "Queen", .year = "2005", .genra = 17});
    // On Windows the start searches the drives for the player.
    music.File("z/winamp.exe");
  }

  void MakeSong(const std::string& inside, const TagTexts& texts) {
    music.File(inside, Audio(400) + Tag(texts));
  }

  /// Runs one whole start-up. Its objects remain available until the next call.
  bool Start(bool answer = true) {
    windows.emplace();
    windows->answer = answer;
    tallow.emplace(application.path());
    system.emplace(*tallow, drives, *windows);
    return system->Main(runtime_file);
  }

  std::string RankOf(const std::string& name) const {
    for (std::int32_t row = 1; row <= tallow->library.UBoundOfMp3Array(); ++row)
      if (tallow->library.Mp3Info(2, row) == name)
        return std::string(tallow->library.Mp3Info(5, row));
    return "no such song";
  }

  /// Gives each of the three songs a different rank, and saves them as ranking does.
  void Rank() {
    for (std::int32_t row = 1; row <= tallow->library.UBoundOfMp3Array(); ++row)
      tallow->library.Mp3Info(5, row, std::to_string(2 + row));
    tallow->library.Save();
    ranked.clear();
    for (const char* name : {"one.mp3", "two.mp3", "three.mp3"})
      ranked.emplace_back(name, RankOf(name));
  }
  void ExpectRanks() const {
    for (const auto& [name, rank] : ranked) EXPECT_EQ(RankOf(name), rank) << name;
  }

  std::size_t SongsOnShow(const std::string& text = "All Songs") const {
    return windows->open.at(0)->Nodes().Find(text)->Items().size();
  }
  std::string Library() const { return GroupingFolder(application.path()) + "FileLocNames.lmz"; }
  std::string Settings() const { return SettingsPath(application.path()); }
  bool Searched() const {
    for (const std::string& line : windows->progress.status)
      if (line.starts_with("Looking for Mp3s in ")) return true;
    return false;
  }

  TempFolder application;
  TempFolder music;
  TestDrives drives{{{music.path()}}};
  RuntimeFile runtime_file;
  std::optional<RecordedWindows> windows;
  std::optional<Tallow> tallow;
  std::optional<System> system;
  std::vector<std::pair<std::string, std::string>> ranked;
};

}  // namespace tallow

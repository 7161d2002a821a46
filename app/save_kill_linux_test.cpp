// SPDX-License-Identifier: GPL-3.0-or-later
#include <chrono>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "app/system.h"
#include "library/library_file.h"
#include "tests/library_fixture.h"
#include "tests/recorded_windows.h"

namespace tallow {
namespace {

class SaveKill : public LibraryTest {
 protected:
  static constexpr int kSongs = 400;
  static constexpr int kKills = 250;

  void MakeLibrary() {
    for (int k = 1; k <= kSongs; ++k) {
      const std::string name = "song " + std::to_string(k) + ".mp3";
      music.File("m/" + name);
      AddSong(music / "m/", name, "1", "2");
    }
    library.Save();
    library.WriteOutMp3DirectoryLocations();
  }

  /// Stamps of the library file and of its new version written beside it.
  std::pair<std::optional<FileStamp>, std::optional<FileStamp>> Stamps() const {
    return {StampOf(LibraryPath()), StampOf(LibraryPath() + ".new")};
  }

  /// Simulates a user: ranks every song and saves in a loop; adds songs from time to time.
  [[noreturn]] void RankForever() {
    tallow.settings.GetandLoadIniInfo(tallow.settings_path);
    tallow.settings.NumerOfRecordsInTheMain(InspectLibrary(LibraryPath()).usable);
    library.LoadMain();
    for (int round = 0;; ++round) {
      for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
        library.Mp3Info(5, row, std::to_string(2 + round % 6));
      if (round % 7 == 6) AddSong("0", "0", "0", std::to_string(2 + round % 6));
      library.Save();
      if (round % 5 == 4) library.WriteOutMp3DirectoryLocations();
    }
  }
};

TEST_F(SaveKill, AfterAKillAtAnyMomentEverySongAndRankIsThere) {
  MakeLibrary();
  const TestDrives drives({{music.path()}});
  std::mt19937 random(97);
  int changed = 0;
  for (int kill_number = 0; kill_number < kKills; ++kill_number) {
    const auto before = ReadWholeFile(LibraryPath());
    const auto stamps = Stamps();
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) RankForever();
    // Two thirds of the kills wait until the child has begun to save, even in a slow build; the
    // others happen at any moment of its start.
    for (int wait = 0; kill_number % 3 != 0 && Stamps() == stamps && wait < 10000; ++wait)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 12000));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child ended by itself";
    changed += ReadWholeFile(LibraryPath()) != before;

    Tallow next(application.path());
    RecordedWindows windows;
    ASSERT_TRUE(System(next, drives, windows).Main({}));
    ASSERT_TRUE(windows.asked.empty()) << windows.asked[0];
    ASSERT_TRUE(windows.messages.empty()) << windows.messages[0];
    ASSERT_GE(next.library.UBoundOfMp3Array(), kSongs);
    const std::string rank(next.library.Mp3Info(5, 1));
    for (std::int32_t row = 1; row <= next.library.UBoundOfMp3Array(); ++row) {
      ASSERT_EQ(next.library.Mp3Info(5, row), rank) << "row " << row;
      ASSERT_EQ(next.library.Mp3Info(4, row), std::to_string(row));
      const std::string name = row <= kSongs ? "song " + std::to_string(row) + ".mp3" : "0";
      ASSERT_EQ(next.library.Mp3Info(2, row), name);
    }
  }
  EXPECT_GT(changed, kKills / 50) << "the kills came before anything was saved";
}

}  // namespace
}  // namespace tallow

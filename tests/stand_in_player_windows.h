// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <vector>
#include <windows.h>

#include "player/player_messages.h"
#include "player/winamp_control.h"
#include "tests/recorded_messages.h"
#include "tests/temp_folder.h"
#include "tests/wait_until.h"
#include "util/user_folders.h"
#include "util/wide_text_windows.h"

namespace tallow {

/// Runs the stand-in for Winamp as a separate process; it logs its messages and answers them from a
/// list.
class OtherPlayer : public testing::Test {
 protected:
  OtherPlayer() {
    path = std::string(FolderOfPath(ExecutablePath())) + "winamp_stand_in.exe";
    SetEnvironmentVariableW(L"TALLOW_STAND_IN_LOG", ToWide(folder / "log").c_str());
    SetEnvironmentVariableW(L"TALLOW_STAND_IN_ANSWERS", ToWide(folder.File("answers",
                                                                           "1024 0 0=0x2081\n"
                                                                           "1024 1 105=60\n"
                                                                           "1024 0 105=61999\n"
                                                                           "1024 0 104=1\n"))
                                                            .c_str());
  }
  ~OtherPlayer() override { EndPlayer(); }

  /// Starts the player, waits for its window, and plays a song of 60 seconds.
  void StartSong() {
    ASSERT_TRUE(player.StartWinamp());
    ASSERT_TRUE(WaitUntil([&] { return player.FindWinamp(); }));
    song = folder.File("a.mp3");
    player.AddFileToWinamp(song);
    player.SendWinampCommand(kPlay);
    EXPECT_EQ(player.GetTrackLength(), 60);
    ReceivedMessages();
  }
  /// The messages that the player received since the last call, in order.
  std::vector<std::string> ReceivedMessages() {
    std::vector<std::string> lines;
    std::istringstream text(ReadWholeFile(folder / "log").value_or(""));
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    const std::size_t before = std::exchange(lines_read_, lines.size());
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
    return lines;
  }
  /// The message that adds the song.
  std::string AddedSong() const { return "74 0 100 \"" + link->TextOfPath(song) + "\\0\""; }
  void EndPlayer() {
    if (!player.FindWinamp()) return;
    player.SendWinampCommand(kClosePlayer);
    EXPECT_TRUE(WaitUntil([&] { return link->Find() == 0; }));
  }

  TempFolder folder;
  std::string path;
  std::string song;
  std::unique_ptr<PlayerLink> link = SystemPlayerLink();
  RecordedMessages messages;
  WinAMP_Control player{*link, [this] { return path; }, messages.Shower()};

 private:
  std::size_t lines_read_ = 0;
};

}  // namespace tallow

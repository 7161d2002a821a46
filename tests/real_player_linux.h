// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "player/player_messages.h"
#include "player/player_socket_linux.h"
#include "player/winamp_control.h"
#include "tests/recorded_messages.h"
#include "tests/temp_folder.h"
#include "tests/wait_until.h"

namespace tallow {

/// Runs the built tallow-player with a temporary runtime folder and without a session bus. By
/// default it plays without sound, in real time.
class RealPlayer : public testing::Test {
 protected:
  RealPlayer() {
    chmod(runtime.path().c_str(), S_IRWXU);
    setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    UseOptions("--silent");
  }
  ~RealPlayer() override {
    EndPlayer();
    if (!HasFailure()) return;
    for (const std::string& pid : Lines("pids")) kill(static_cast<pid_t>(std::stol(pid)), SIGKILL);
  }

  /// Sets the options of the next player. The player logs every message.
  void UseOptions(const std::string& options) {
    UseScript("echo $$ >> " + Quote(folder / "pids") + "\nexec " + Quote(TALLOW_PLAYER) +
              " --log " + Quote(folder / "log") + " " + options + " \"$@\"\n");
  }
  /// Sets the script that runs in place of the player.
  void UseScript(const std::string& lines) {
    path = folder.File("tallow-player", "#!/bin/sh\n" + lines);
    chmod(path.c_str(), S_IRWXU);
  }
  static std::string Quote(const std::string& text) { return "'" + text + "'"; }

  void StartPlayer() {
    ASSERT_TRUE(player.StartWinamp());
    ASSERT_TRUE(player.FindWinamp());
  }
  void Play(const std::vector<std::string>& files) {
    for (const std::string& file : files) player.AddFileToWinamp(file);
    player.SendWinampCommand(kPlay);
  }
  bool WaitForStatus(const std::string& status) {
    return WaitUntil([&] { return player.GetWinampStatus() == status; });
  }
  bool IsRunning() { return PlayerRuns(PlayerSocketPath()); }
  /// The lines of a file in `folder`.
  std::vector<std::string> Lines(const std::string& name) {
    std::vector<std::string> lines;
    std::istringstream text(ReadWholeFile(folder / name).value_or(""));
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }
  /// The player process that was started last.
  pid_t LastPid() { return static_cast<pid_t>(std::stol(Lines("pids").back())); }

  void EndPlayer() {
    if (!player.FindWinamp()) return;
    player.SendWinampCommand(kClosePlayer);
    EXPECT_TRUE(WaitUntil([&] { return !IsRunning(); }));
  }

  TempFolder runtime;
  TempFolder folder;
  std::string path;
  std::unique_ptr<PlayerLink> link = SystemPlayerLink();
  RecordedMessages messages;
  WinAMP_Control player{*link, [this] { return path; }, messages.Shower()};
};

}  // namespace tallow

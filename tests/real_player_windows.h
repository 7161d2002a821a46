// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>
#include <windows.h>

#include "player/player_identifier.h"
#include "player/player_messages.h"
#include "player/winamp_control.h"
#include "tests/recorded_messages.h"
#include "tests/temp_folder.h"
#include "tests/wait_until.h"
#include "util/user_folders.h"
#include "util/wide_text_windows.h"

namespace tallow {

/// Runs the built tallow-player.exe with a temporary identifier. By default it plays without sound,
/// in real time.
class RealPlayer : public testing::Test {
 protected:
  RealPlayer() { UseOptions("--silent"); }
  ~RealPlayer() override { EndPlayer(); }

  /// Sets the options of the next player. The player logs every message.
  void UseOptions(const std::string& options) {
    options_ = "--log " + Quote(folder / "log") + " --identifier " + identifier + " " + options;
  }
  static std::string Quote(const std::string& text) { return "\"" + text + "\""; }

  void StartPlayer() {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    std::wstring command_line = ToWide(Quote(path) + " " + options_);
    ASSERT_TRUE(CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                               nullptr, &start, &process));
    CloseHandle(process.hThread);
    process_ = process.hProcess;
    ASSERT_TRUE(WaitUntil([&] { return player.FindWinamp() || !IsRunning(); }));
    ASSERT_TRUE(IsRunning());
  }
  void Play(const std::vector<std::string>& files) {
    for (const std::string& file : files) player.AddFileToWinamp(file);
    player.SendWinampCommand(kPlay);
  }
  bool WaitForStatus(const std::string& status) {
    return WaitUntil([&] { return player.GetWinampStatus() == status; });
  }
  /// Whether the process of the player runs.
  bool IsRunning() const {
    return process_ != nullptr && WaitForSingleObject(process_, 0) == WAIT_TIMEOUT;
  }
  /// The lines of a file in `folder`.
  std::vector<std::string> Lines(const std::string& name) {
    std::vector<std::string> lines;
    std::istringstream text(ReadWholeFile(folder / name).value_or(""));
    for (std::string line; std::getline(text, line);) {
      if (line.ends_with('\r')) line.pop_back();
      lines.push_back(line);
    }
    return lines;
  }

  void EndPlayer() {
    if (process_ == nullptr) return;
    if (player.FindWinamp()) player.SendWinampCommand(kClosePlayer);
    EXPECT_TRUE(WaitUntil([&] { return !IsRunning(); }));
    // A player that has not ended would disturb the next test.
    if (IsRunning()) TerminateProcess(process_, 1);
    CloseHandle(std::exchange(process_, nullptr));
  }

  TempFolder folder;
  const std::string identifier = PlayerIdentifier(folder.path());
  std::string path = std::string(FolderOfPath(ExecutablePath())) + "tallow-player.exe";
  std::unique_ptr<PlayerLink> link = SystemPlayerLink(identifier);
  RecordedMessages messages;
  WinAMP_Control player{*link, [this] { return path; }, messages.Shower()};

 private:
  std::string options_;
  HANDLE process_ = nullptr;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/play_commands.h"
#include "player/winamp_control.h"

namespace tallow {

class BusyFrame;
class FrameMessages;
class PanelWindow;

/// The frame window's commands for the player: they hand songs to it, or control it directly. Opens
/// the player panel when songs are to be played.
class FramePlayer : private PlayWindows {
 public:
  /// The parameters have to outlive this object.
  FramePlayer(Tallow& tallow, PlayerLink& link, PanelWindow& panel, FrameMessages& messages,
              BusyFrame& busy);

  /// See PlayCommands.
  bool CheckPlayer() { return play_commands_.CheckPlayer(); }
  void Play(std::vector<std::int32_t> songs);
  /// Sends a command to the player.
  /// \param command see PlayerCommand
  void Send(std::int32_t command);

 private:
  MessageAnswer Show(const Message& message) override;
  void ShowStatus(const std::string& text) override;
  void EnableFrame(bool enabled) override;
  void PlayOnPanel() override;
  std::unique_ptr<LongWork> BeginWork(std::string_view text) override;
  bool Start(const std::string& program) override;

  void OpenPanel();

  Tallow& tallow_;
  PanelWindow& panel_;
  FrameMessages& messages_;
  BusyFrame& busy_;
  WinAMP_Control player_;
  PlayCommands play_commands_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/play_commands.h"
#include "player/winamp_control.h"
#include "ui/frame/frame_windows_base.h"

namespace tallow {

class DriveSearches;
class PanelWindow;

/// The frame window's commands for the player: they hand songs to it, or control it directly. Opens
/// the player panel when songs are to be played.
class FramePlayer : private FrameWindows<PlayWindows> {
 public:
  /// The parameters have to outlive this object.
  FramePlayer(Tallow& tallow, PlayerLink& link, DriveSearches& searches, JukeboxArea& jukeboxes,
              PanelWindow& panel, FrameMessages& messages, BusyFrame& busy);

  /// See PlayCommands.
  bool CheckPlayer();
  void Play(std::vector<std::int32_t> songs);
  /// Sends a command to the player.
  /// \param command see PlayerCommand
  void Send(std::int32_t command);

 private:
  void ShowStatus(const std::string& text) override;
  void EnableFrame(bool enabled) override;
  void PlayOnPanel() override;
  bool Start(const std::string& program) override;

  void OpenPanel();
  /// Runs the player search and shows its progress in the splash window.
  void SearchForPlayer();

  Tallow& tallow_;
  DriveSearches& searches_;
  PanelWindow& panel_;
  WinAMP_Control player_;
  PlayCommands play_commands_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "player/player_link.h"
#include "util/message.h"

namespace tallow {

/// Remote control of the player: every operation is one message.
///
/// An operation before the player was found looks for it; one that runs already, of an earlier Tallow maybe, is
/// found at once. Where there is none, nothing is sent, "WinAMP window not found yet..." is said, and a query
/// gives the empty text or 0. A player that has been closed since it was found is not noticed: the messages go
/// nowhere.
class WinAMP_Control {
 public:
  /// \param link        has to outlive the object
  /// \param player_path gives the full path of the player's program; empty when it is not known
  WinAMP_Control(PlayerLink& link, std::function<std::string()> player_path, ShowMessage show);

  /// Looks for the player and keeps it for all other operations.
  bool FindWinamp();

  /// Starts the player; whether its window is there already is not waited for.
  /// \returns false when its path is not known or it cannot be run
  bool StartWinamp();

  /// The player that was found last, to tell it from another one; 0 when none was.
  PlayerHandle Window() const noexcept { return window_; }

  /// \param id see PlayerCommand
  void SendWinampCommand(std::int32_t id);
  void ClearWinampPlaylist();
  /// Whether the player that was found last is still there.
  bool IsThere() { return window_ != 0 && link_.IsThere(window_); }
  /// Looks for a player anew where the one that was found last has ended: before a command of the user.
  void FindAgainIfEnded() {
    if (window_ != 0 && !IsThere()) FindWinamp();
  }
  /// Appends a file to the player's list.
  /// \returns false when the list has no room for it
  bool AddFileToWinamp(const std::string& path);

  /// "PLAYING", "PAUSED" or "STOPPED".
  std::string GetWinampStatus();
  /// Where the track is, in whole seconds; -1 when nothing plays.
  std::int32_t GetTrackPosition();
  /// How long the track is, in seconds; -1 when nothing plays.
  std::int32_t GetTrackLength();
  /// Moves to a place of the track; nothing is sent when there is no such place.
  /// \param seconds 0 to GetTrackLength()
  void SetTrackPosition(std::int32_t seconds);
  /// \param volume 0 to 255; nothing is sent for others
  void SetVolume(std::int32_t volume);
  /// \param balance -127 (left) to 127 (right); nothing is sent for others
  void SetBalance(std::int32_t balance);
  /// "2.081"; "UNKNOWN" when the player gives a number of fewer than four hexadecimal digits.
  std::string GetWinampVersion();

 private:
  /// Whether there is a player to send to; says so where there is none.
  bool HasWindow();
  std::int64_t Ask(std::int64_t wParam, std::int64_t lParam);

  PlayerLink& link_;
  std::function<std::string()> player_path_;
  ShowMessage show_;
  PlayerHandle window_ = 0;  ///< set by FindWinamp only
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "player/player_link.h"
#include "player/tallow_player.h"
#include "util/message.h"

namespace tallow {

/// Remote control of the player: each operation sends a message.
///
/// If no player has been found yet, an operation looks for one first; this also finds a player that
/// is already running, for example from an earlier run of Tallow. If there is none, nothing is
/// sent, the message "WinAMP window not found yet..." is shown, and queries return an empty text or
/// 0. An operation does not check whether the player that was found has ended meanwhile; messages
/// to an ended player are dropped.
class WinAMP_Control {
 public:
  /// \param link        must outlive this object
  /// \param player_path returns the full path of the player's program; empty when it is unknown
  WinAMP_Control(PlayerLink& link, std::function<std::string()> player_path, ShowMessage show);

  /// Looks for the player and stores its handle for all other operations.
  bool FindWinamp();

  /// Starts the player without waiting for its window.
  /// \returns false when the path is unknown or the program cannot be run
  bool StartWinamp();

  /// How far the player that was started has got, see PlayerLink::FollowStart. Stores the handle of
  /// a player that answers, as FindWinamp does.
  PlayerStart FollowStart();
  /// The full path of the player's program; empty when it is unknown.
  std::string Program() const { return player_path_(); }

  PlayerLink& Link() noexcept { return link_; }
  /// The kind of the player that was found last; kWinamp for none.
  PlayerKind Kind() { return window_ == 0 ? PlayerKind::kWinamp : link_.KindOf(window_); }
  /// The requests to the player that was found last, which must be of the kind kTallowPlayer. They
  /// are for this player only, even if another is found later.
  TallowPlayer OwnPlayer() { return {link_, window_}; }

  /// The handle of the player that was found last; 0 for none.
  PlayerHandle Window() const noexcept { return window_; }

  /// \param id see PlayerCommand
  void SendWinampCommand(std::int32_t id);
  void ClearWinampPlaylist();
  /// Whether the player that was found last is still running.
  bool IsRunning() { return window_ != 0 && link_.IsRunning(window_); }
  /// Looks for a player again if the one found last has ended. Call this before a command of the
  /// user.
  void FindAgainIfEnded() {
    if (window_ != 0 && !IsRunning()) FindWinamp();
  }
  /// Appends a file to the player's list.
  /// \returns false when the player's list is full
  bool AddFileToWinamp(const std::string& path);

  /// "PLAYING", "PAUSED" or "STOPPED".
  std::string GetWinampStatus();
  /// The position in the track, in whole seconds; -1 when nothing plays.
  std::int32_t GetTrackPosition();
  /// The length of the track, in seconds; -1 when nothing plays.
  std::int32_t GetTrackLength();
  /// Seeks in the track; sends nothing when the position is out of range.
  /// \param seconds 0 to GetTrackLength()
  void SetTrackPosition(std::int32_t seconds);
  /// \param volume 0 to 255; other values are ignored
  void SetVolume(std::int32_t volume);
  /// \param balance -127 (left) to 127 (right); other values are ignored
  void SetBalance(std::int32_t balance);
  /// The number of files in the player's list.
  std::int32_t GetListLength();
  /// The place in the list, from 0, of the current track.
  std::int32_t GetListPlace();
  /// Sets the track that the next kPlay begins with; negative places are ignored.
  /// \param place from 0
  void SetListPlace(std::int32_t place);
  bool IsShuffled();
  void SetShuffle(bool on);
  /// Whether the list is repeated or, by Tallow's own player, the track.
  bool IsRepeated();
  /// Whether to repeat the list.
  void SetRepeat(bool on);
  /// The player's version, as in "2.081"; "UNKNOWN" when the answer has fewer than four hexadecimal
  /// digits.
  std::string GetWinampVersion();

 private:
  /// Looks for a player if none has been found yet; shows a message when there is none.
  /// \returns whether there is a player to send to
  bool RequireWindow();
  /// \param lParam see PlayerRequest
  std::int64_t SendUserMessage(std::int64_t wParam, std::int64_t lParam);

  PlayerLink& link_;
  std::function<std::string()> player_path_;
  ShowMessage show_;
  PlayerHandle window_ = 0;  ///< set by FindWinamp, and cleared by FollowStart
};

}  // namespace tallow

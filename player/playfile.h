// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "player/winamp_control.h"
#include "util/message.h"

namespace tallow {

class clsMain;

/// Callbacks to the player panel during a hand-over of songs to the player.
class HandOffPanel {
 public:
  virtual ~HandOffPanel() = default;
  /// The player was found. It may be another player than before.
  virtual void PlayerFound() {}
  /// The file of the first song is missing, so nothing is played.
  virtual void FirstSongIsGone(const std::string& /*path*/) {}
  /// The first song is playing: the position bar starts at 0.
  /// \param length of the first song, in seconds; -1 when the player does not know it
  virtual void TrackStarted(std::int32_t length) = 0;
  /// The hand-over has ended: all songs are handed over, or no more will be.
  virtual void HandedOver() = 0;
  /// The hand-over was cancelled; called before HandedOver.
  /// \param songs number of songs that the player has
  virtual void Cancelled(std::size_t /*songs*/, std::size_t /*of*/) {}
  /// Songs were skipped because their drive does not answer; called before HandedOver.
  virtual void DiskTimedOut(std::size_t /*songs*/, const std::string& /*first*/) {}
};

using HandOverProgress = std::function<bool(std::size_t done, std::size_t songs)>;

/// Starts and finds the player; shows a message on failure.
bool ReachPlayer(WinAMP_Control& player, const ShowMessage& show);

/// Replaces the player's list by songs and plays the first one.
///
/// Skips songs whose files are missing. If the file of the first song is missing, does nothing
/// else. Hands over songs whose files cannot be checked for another reason; one message then names
/// the first five. If the player's list gets full, plays the songs before the first that does not
/// fit, and shows a message.
/// \param songs    record numbers, in play order
/// \param progress called repeatedly with the number of songs processed so far; returns false to
///                 cancel. May be empty. The player keeps the songs that it already has
void HandOver(std::span<const std::int32_t> songs, clsMain& library, WinAMP_Control& player,
              const ShowMessage& show, HandOffPanel& panel, const HandOverProgress& progress = {});

}  // namespace tallow

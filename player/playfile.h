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

/// What starting a hand-off changes on the player panel.
class HandOffPanel {
 public:
  virtual ~HandOffPanel() = default;
  /// The player was found; not always the same as last time.
  virtual void PlayerFound() {}
  /// The file of the first song is not there, so nothing is played.
  virtual void FirstSongIsGone(const std::string& /*path*/) {}
  /// The first song plays: the position bar starts at 0.
  /// \param length of the first track, in seconds; -1 when the player does not know
  virtual void TrackStarted(std::int32_t length) = 0;
  /// All songs are handed over, or no more are to be.
  virtual void HandedOver() = 0;
  /// The hand-over was cancelled; comes before HandedOver.
  /// \param songs that the player has
  virtual void Cancelled(std::size_t /*songs*/, std::size_t /*of*/) {}
  /// Songs were left out because their drive does not answer; comes before HandedOver.
  virtual void DoNotAnswer(std::size_t /*songs*/, const std::string& /*first*/) {}
};

using HandOverProgress = std::function<bool(std::size_t done, std::size_t songs)>;

/// Starts and finds the player; says so when that fails.
bool ReachPlayer(WinAMP_Control& player, const ShowMessage& show);

/// Replaces the player's list by songs and starts the first one.
///
/// Songs whose files are missing are left out; when the first one is missing nothing is done at all. Songs
/// that cannot be looked at for another reason are handed over, and one message names the first five. Where the
/// player's list has no room for all, those up to the first that does not fit are played, and a message says so.
/// \param songs    record numbers, in play order
/// \param progress is told how many songs the player has, or is not to have, again and again, and says whether
///                 to go on; may be empty. The player keeps those that it has
void HandOver(std::span<const std::int32_t> songs, clsMain& library, WinAMP_Control& player,
              const ShowMessage& show, HandOffPanel& panel, const HandOverProgress& progress = {});

/// The full path of a song; empty when the library has no such row.
std::string PathOfSong(const clsMain& library, std::int32_t record);

}  // namespace tallow

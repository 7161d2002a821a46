// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "player/reach_player.h"
#include "player/song_sender.h"
#include "player/winamp_control.h"
#include "util/message.h"

namespace tallow {

class clsMain;

/// Callbacks to the caller during a hand-over of songs to the player.
class HandOffPanel {
 public:
  virtual ~HandOffPanel() = default;
  /// The player was found. It may be another player than before.
  virtual void PlayerFound() {}
  /// The file of the first song is missing, so nothing is played.
  virtual void FirstSongIsGone(const std::string& /*path*/) {}
  /// The player's list was cleared; what it plays now is not known until SongsAdded.
  virtual void ListCleared() {}
  /// The player has further songs. With `before` 0 they are the last of its list or, when they were
  /// handed over as kPlayNext, behind the current song and behind earlier ones.
  /// \param before number of the entry that they were added before
  virtual void SongsAdded(std::span<const HandedOverSong> /*songs*/, std::uint64_t /*before*/) {}
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

/// Where songs go in the player's list.
enum class HandOverTo {
  kReplace,   ///< they replace the list, and the first one plays
  kPlayNext,  ///< behind the current song, and behind earlier ones that were handed over so
  kAtEnd,
};

/// What to hand over.
struct HandOverOrder {
  std::span<const std::int32_t> songs;  ///< record numbers, in play order
  HandOverTo to = HandOverTo::kReplace;
  /// Index of the song that plays first. It is handed over first, then those that follow, then
  /// those that precede it. Tallow's own player gets the preceding ones before it, so its list is
  /// in the order of `songs`; in the list of Winamp they are the last. Only for kReplace.
  std::size_t first = 0;
};

/// What the player has got.
struct HandOverResult {
  bool reached = false;               ///< the player was found
  bool replaced = false;              ///< its list was cleared: it has nothing but `songs`
  std::vector<HandedOverSong> songs;  ///< in the order of the player's list
};

/// Hands songs over to the player.
///
/// Skips songs whose files are missing. If the file of the song to play first is missing, does
/// nothing else. Hands over songs whose files cannot be checked for another reason; one message
/// then names the first five. If the player's list gets full, hands over the songs before the first
/// that does not fit, and shows a message. Play Next and adding at the end leave alone what plays;
/// with Winamp, both add at the end.
/// \param progress called repeatedly with the number of songs processed so far, at least every 50
///                 ms; returns false to cancel. May be empty. The player keeps the songs that it
///                 has
/// \param while_starting see ReachPlayer
HandOverResult HandOver(const HandOverOrder& order, clsMain& library, WinAMP_Control& player,
                        const ShowMessage& show, HandOffPanel& panel,
                        const HandOverProgress& progress = {},
                        const WhileStarting& while_starting = {});

/// Replaces the player's list by songs and plays the first one.
void HandOver(std::span<const std::int32_t> songs, clsMain& library, WinAMP_Control& player,
              const ShowMessage& show, HandOffPanel& panel, const HandOverProgress& progress = {});

}  // namespace tallow

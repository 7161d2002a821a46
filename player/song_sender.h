// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "player/tallow_player.h"
#include "player/winamp_control.h"

namespace tallow {

/// A song that the player has.
struct HandedOverSong {
  std::int32_t song = 0;    ///< record number
  std::uint64_t entry = 0;  ///< number of its entry in Tallow's own player; 0 with Winamp

  friend bool operator==(const HandedOverSong&, const HandedOverSong&) = default;
};

/// What became of songs that were sent.
enum class Sent { kAccepted, kListIsFull, kNoAnswer, kPlayerHasEnded };

/// Adds songs to the list of the player that was found last: to Winamp one by one; to Tallow's own
/// player as many at once as fit into a record, but at least every tenth of a second.
class SongSender {
 public:
  /// Called with songs that the player has accepted, and the place where they were added.
  using Accepted = std::function<void(std::span<const HandedOverSong> songs, std::int64_t at)>;

  /// \param player must outlive this object
  SongSender(WinAMP_Control& player, Accepted accepted);

  /// Sets where the next songs are added; Winamp adds all at the end, and so does Tallow's own
  /// player when the entry to add them before is gone. There must be no song that waits to be sent.
  /// \param at see AddFilesAt
  void AddAt(std::int64_t at) noexcept { at_ = at; }

  /// Sends a song now, or with later ones.
  /// \param number identifies the song for Refused()
  Sent Add(std::int32_t song, const std::string& path, std::size_t number);
  /// Sends the songs that wait.
  Sent Flush();
  /// Sends the songs that wait if the first has waited for a tenth of a second.
  Sent FlushIfDue();

  /// The number of songs that the player has accepted.
  std::size_t Count() const noexcept { return count_; }
  /// The number of the first song that the player had no room for.
  std::size_t Refused() const noexcept { return refused_; }
  /// The entry of the song that was accepted last; 0 with Winamp.
  std::uint64_t LastEntry() const noexcept { return last_entry_; }

 private:
  using Clock = std::chrono::steady_clock;

  struct Waiting {
    std::int32_t song = 0;
    std::size_t number = 0;
  };

  Sent SendToWinamp(const Waiting& song, const std::string& path);
  /// Sends some of the songs that wait; if there is no room for all, as many as fit.
  Sent SendPart(std::size_t from, std::size_t count);
  Sent WhyNoAnswer();
  void Accept(std::span<const HandedOverSong> songs);

  WinAMP_Control& player_;
  const Accepted accepted_;
  std::optional<TallowPlayer> own_;  ///< none with Winamp
  std::int64_t at_ = kAtEnd;
  std::vector<Waiting> waiting_;
  std::vector<std::string> paths_;  ///< of waiting_
  std::size_t bytes_ = 0;           ///< of paths_ in a record
  Clock::time_point since_;         ///< when the first of waiting_ came
  std::size_t count_ = 0;
  std::size_t refused_ = 0;
  std::uint64_t last_entry_ = 0;
};

}  // namespace tallow

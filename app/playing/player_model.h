// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "player/player_messages.h"
#include "player/tallow_player.h"

namespace tallow {

class Jukebox;

/// The folder that songs were handed over from.
struct SongsOrigin {
  const Jukebox* jukebox = nullptr;  ///< may have been closed since; null for none
  std::uint32_t folder = 0;          ///< its key in the jukebox; 0 for none

  friend bool operator==(const SongsOrigin&, const SongsOrigin&) = default;
};

/// What the player does, as of the last Update.
struct Playing {
  bool is_running = false;  ///< a player was found and has not ended
  PlayerKind kind = PlayerKind::kWinamp;
  PlayerStatus status = kStopped;
  /// Record number of the song that plays or is paused; 0 when nothing does, or when the player's
  /// list is not what was handed over.
  std::int32_t song = 0;
  /// Identifies the entry of the list that plays or is paused; 0 like `song`. A song that is in the
  /// list twice has two.
  std::uint64_t entry = 0;
  SongsOrigin origin = {};     ///< of the song
  std::int32_t position = -1;  ///< in s; -1 when nothing plays
  std::int32_t length = -1;    ///< in s; -1 when unknown
  bool shuffle = false;
  RepeatMode repeat = RepeatMode::kOff;  ///< kOne only with Tallow's own player
  /// Changes when the queue has changed, see PlayerModel::QueueLength.
  std::uint64_t queue_revision = 0;
  /// Changes when another list has replaced that of the player, so that an entry may have the
  /// number of another one.
  std::uint64_t queue_generation = 0;
  /// Changes when PlayerModel::TextOf may return other texts than before.
  std::uint64_t texts_revision = 0;
  /// Changes when a song could not be played, or plays after all.
  std::uint64_t failures_revision = 0;
  bool can_go_next = false;
  bool can_go_previous = false;

  friend bool operator==(const Playing&, const Playing&) = default;
};

/// Follows a PlayerModel.
class PlayerListener {
 public:
  virtual ~PlayerListener() = default;
  /// Something has changed.
  virtual void PlayingChanged(const Playing& before, const Playing& now) = 0;
  /// The volume or balance was set.
  virtual void VolumeChanged() {}
};

/// Something that only Tallow's own player can do.
enum class PlayerFeature { kPlayNext, kRearrange, kRepeatOne, kReplayGain, kSoundDevice };

/// The player as the panel, the player bar, the queue and the lists show it. There is one for the
/// program. Not thread-safe.
///
/// Without a player the commands on what plays do nothing; they show no message.
class PlayerModel {
 public:
  virtual ~PlayerModel() = default;

  virtual void AddListener(PlayerListener& listener) = 0;
  virtual void RemoveListener(PlayerListener& listener) = 0;

  /// Asks the player for its state and tells the listeners what has changed. The frame window calls
  /// this every kUpdateInterval.
  virtual void Update() = 0;
  virtual const Playing& Now() const = 0;

  /// Title and artist of a song, from its details, else its file name; "Title - Artist".
  virtual std::string TextOf(std::int32_t song) const = 0;

  // Commands on what plays.

  /// Plays when stopped, resumes when paused, pauses when playing.
  virtual void PlayOrPause() = 0;
  virtual void Next() = 0;
  virtual void Previous() = 0;
  /// \param seconds 0 to the length of the song
  virtual void Seek(std::int32_t seconds) = 0;
  virtual std::int32_t Volume() const = 0;   ///< 0 to 255
  virtual std::int32_t Balance() const = 0;  ///< -127 to 127
  virtual void SetVolume(std::int32_t volume) = 0;
  virtual void SetBalance(std::int32_t balance) = 0;
  virtual void SetShuffle(bool on) = 0;
  virtual void SetRepeat(RepeatMode mode) = 0;
  virtual void SetGain(ReplayGain mode) = 0;

  /// Whether the player that runs, or would be started, can do something.
  virtual bool Can(PlayerFeature feature) const = 0;
  /// A sentence that says why it cannot; empty if it can.
  virtual std::string WhyNot(PlayerFeature feature) const = 0;

  // The queue: what will play after the current song, in this order. Empty when the player's list
  // is not what was handed over, and with Winamp in random order.

  struct QueueRow {
    std::uint64_t entry = 0;
    std::int32_t song = 0;  ///< record number; 0 when unknown
  };
  virtual std::size_t QueueLength() const = 0;
  /// \param row from 0; below QueueLength(). Rows are asked for in blocks
  virtual QueueRow QueueAt(std::size_t row) = 0;
  /// \param entries upcoming ones, in their new order
  /// \param before  an upcoming entry; 0: to the end
  virtual void MoveInQueue(std::span<const std::uint64_t> entries, std::uint64_t before) = 0;
  virtual void RemoveFromQueue(std::span<const std::uint64_t> entries) = 0;
  virtual void PlayFromQueue(std::uint64_t entry) = 0;
  /// The songs of the whole queue, in order; songs that are unknown are left out.
  virtual std::vector<std::int32_t> SongsOfQueue() = 0;

  /// Why a song could not be played when it was last tried in this run; empty when it could, or was
  /// not tried.
  virtual std::string FailureOf(std::int32_t song) const = 0;
  virtual std::string FailureOfEntry(std::uint64_t entry) const = 0;
};

}  // namespace tallow

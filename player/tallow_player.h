// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "player/player_link.h"
#include "player/player_messages.h"
#include "player/tallow_player_requests.h"

namespace tallow {

/// A file that the player could not play.
struct PlayFailure {
  std::uint64_t number = 0;  ///< ascending from 1
  std::uint64_t entry = 0;
  std::string reason;  ///< empty when the file has played after all
};

/// The state of Tallow's own player, as its answer to "state" says.
struct TallowPlayerState {
  PlayerStatus status = kStopped;
  std::int64_t position = -1;  ///< in ms; -1 when nothing plays
  std::int64_t length = -1;    ///< in ms; -1 when unknown
  std::uint64_t entry = 0;     ///< number of the current entry; 0 for an empty list
  std::size_t place = 0;       ///< of the current entry in the list, from 0
  std::size_t count = 0;       ///< of the list
  std::size_t upcoming = 0;    ///< entries that will play after the current one
  bool ended = false;          ///< the list has ended, and nothing was played or added since
  std::uint64_t revision = 0;  ///< changes with the list, its order, and the current entry
  std::int32_t volume = 0;     ///< 0 to 255
  std::int32_t balance = 0;    ///< -127 to 127
  bool shuffle = false;
  RepeatMode repeat = RepeatMode::kOff;
  ReplayGain gain = ReplayGain::kOff;
  std::string device;           ///< "auto" for the system's
  bool device_missing = false;  ///< the track plays silently: the device cannot be opened
  bool stops_after = false;
  std::vector<PlayFailure> failures;
};

/// A part of what will play.
struct UpcomingEntries {
  std::uint64_t revision = 0;
  std::size_t upcoming = 0;  ///< number of all entries that will play
  std::vector<std::uint64_t> entries;
};

/// The requests that only Tallow's own player knows, see tallow_player_requests.h. A request to a
/// player that does not answer has no effect.
class TallowPlayer {
 public:
  static constexpr std::size_t kMaxAsked = 4096;  ///< entries in one Upcoming

  /// \param link   must outlive this object
  /// \param player of the kind kTallowPlayer
  TallowPlayer(PlayerLink& link, PlayerHandle player) : link_(link), player_(player) {}

  /// \param failures_after the number of the last failure that is known; 0 for none
  std::optional<TallowPlayerState> State(std::uint64_t failures_after = 0);
  /// \param from  from 0, the entry after the current one
  /// \param count at most kMaxAsked
  std::optional<UpcomingEntries> Upcoming(std::size_t from, std::size_t count);

  /// Adds files: all, or none.
  /// \param at see AddFilesAt
  /// \param paths absolute; few enough for one record, see FitsInRecord
  /// \returns the number of the first new entry; kListHasNoRoom; kNoSuchEntry; 0 when the player
  ///          does not answer
  std::int64_t AddFiles(std::int64_t at, std::span<const std::string> paths);

  /// Whether a path fits into a record after other ones.
  /// \param bytes size of the other paths, see RecordBytes
  static bool FitsInRecord(std::size_t bytes, std::string_view path) noexcept {
    return bytes + RecordBytes(path) <= kMaxPayload - sizeof(std::int64_t);
  }
  /// The bytes of a record that a path uses.
  static std::size_t RecordBytes(std::string_view path) noexcept { return path.size() + 1; }

  /// Upcoming entries, sent in as many requests as needed.
  void Move(std::span<const std::uint64_t> entries, std::uint64_t before);
  void Remove(std::span<const std::uint64_t> entries);
  void Play(std::uint64_t entry);
  /// \param position in ms
  void Cue(std::uint64_t entry, std::int64_t position);
  void SetRepeat(RepeatMode mode);
  void SetGain(ReplayGain mode);
  std::vector<SoundDevice> Devices();
  void SetDevice(const std::string& name);

 private:
  PlayerLink& link_;
  PlayerHandle player_;
};

}  // namespace tallow

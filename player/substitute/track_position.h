// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "player/substitute/playback_engine.h"

namespace tallow {

/// The position in the current track, and the seek that changes it. Times are in s.
///
/// After a seek the position is its target at once. Until the engine has carried out the seek, its
/// reports of the position are ignored:
///
/// | Seek     | Event                | Next     | Action              |
/// |----------|----------------------|----------|---------------------|
/// | any      | a track begins       | none     | the position is 0   |
/// | any      | SeekWhenOpen         | pending  |                     |
/// | any      | SeekNow              | sent     | send the seek       |
/// | pending  | the track is open    | sent     | send the seek       |
/// | pending  | ... and too short    | none     | the position is 0   |
/// | sent     | reply: success       | restarts |                     |
/// | sent     | reply: failure       | none     |                     |
/// | restarts | playback restarts    | none     |                     |
/// | none     | report               | none     | store the position  |
class TrackPosition {
 public:
  /// \param engine must outlive this object
  explicit TrackPosition(PlaybackEngine& engine) noexcept : engine_(engine) {}

  double Seconds() const noexcept { return seconds_; }
  /// The target of the last seek in this track; 0 for none.
  double SeekTarget() const noexcept { return seek_target_; }

  /// Call this when another track begins, or the same one again.
  void Reset() noexcept;
  /// Seeks in an open track.
  void SeekNow(double target);
  /// Defers a seek until the track is open, because the engine cannot seek before.
  void SeekWhenOpen(double target) noexcept;
  /// Sends a deferred seek. Drops it when its target is past the end of the track.
  /// \param length of the track; no value when unknown
  /// \returns false when a seek was dropped
  bool SendPendingSeek(std::optional<double> length);

  /// Call this when a command has been executed.
  /// \returns whether it was the last seek
  bool OnReply(CommandNumber command, bool succeeded) noexcept;
  void OnPlaybackRestarted() noexcept;
  /// Call this when the engine reports its position.
  void OnReport(double seconds, bool paused) noexcept;

 private:
  enum class SeekState { kNone, kPending, kSent, kRestarts };

  void SendSeek();

  PlaybackEngine& engine_;
  double seconds_ = 0;
  double seek_target_ = 0;
  SeekState seek_state_ = SeekState::kNone;
  CommandNumber seek_command_ = 0;  ///< in state kSent
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/track_position.h"

namespace tallow {

void TrackPosition::Reset() noexcept {
  seconds_ = seek_target_ = 0;
  seek_state_ = SeekState::kNone;
}

void TrackPosition::SeekNow(double target) {
  seconds_ = seek_target_ = target;
  SendSeek();
}

void TrackPosition::SeekWhenOpen(double target) noexcept {
  seconds_ = seek_target_ = target;
  seek_state_ = SeekState::kPending;
}

bool TrackPosition::SendPendingSeek(std::optional<double> length) {
  if (seek_state_ != SeekState::kPending) return true;
  if (length && seek_target_ > *length) {
    Reset();
    return false;
  }
  SendSeek();
  return true;
}

void TrackPosition::SendSeek() {
  seek_command_ = engine_.Seek(seek_target_);
  seek_state_ = seek_command_ != 0 ? SeekState::kSent : SeekState::kNone;
}

bool TrackPosition::OnReply(CommandNumber command, bool succeeded) noexcept {
  if (seek_state_ != SeekState::kSent || command != seek_command_) return false;
  seek_state_ = succeeded ? SeekState::kRestarts : SeekState::kNone;
  return true;
}

void TrackPosition::OnPlaybackRestarted() noexcept {
  if (seek_state_ == SeekState::kRestarts) seek_state_ = SeekState::kNone;
}

void TrackPosition::OnReport(double seconds, bool paused) noexcept {
  if (seek_state_ != SeekState::kNone) return;
  // Right after a seek, the engine's position accounts for audio that the device has buffered but
  // not played. While paused, the position therefore stays slightly before the target.
  constexpr double kMaxBefore = 0.5;
  const bool just_before = seconds < seek_target_ && seconds > seek_target_ - kMaxBefore;
  // While paused the position cannot move back. Such a report was made before the seek.
  if (paused && seconds <= seek_target_ - kMaxBefore) return;
  seconds_ = just_before ? seek_target_ : seconds;
}

}  // namespace tallow

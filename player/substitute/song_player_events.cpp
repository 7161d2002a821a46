// SPDX-License-Identifier: GPL-3.0-or-later
// The events of the engine.
#include <algorithm>
#include <cstdio>

#include "player/substitute/song_player.h"

namespace tallow {
namespace {

/// Maximum number of bytes of a path that are shown on the terminal.
constexpr std::size_t kMaxShownPath = 4096;

/// Makes a path printable on the terminal. Truncates paths that are longer than any file's path.
std::string Printable(std::string path) {
  if (path.size() > kMaxShownPath) path.replace(kMaxShownPath, std::string::npos, "...");
  std::replace_if(
      path.begin(), path.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
  return path;
}

}  // namespace

void SongPlayer::OnReply(CommandNumber command, bool succeeded, EntryNumber entry) {
  if (position_.OnReply(command, succeeded)) return;
  if (!engine_list_.StoreReply(command, entry)) {
    if (following_outdated_) UpdateFollowing();
    return;
  }
  if (!engine_list_.KnowsCurrent()) return EndTrack(PlayerState::kStopped);
  Enter(PlayerState::kLoaded);
  SendFollowing();
}

void SongPlayer::OnTrackStarted(EntryNumber entry) {
  if (!HasEntry()) return;
  if (engine_list_.IsCurrent(entry)) return Enter(PlayerState::kOpening);
  const PlayList::Following next = After(1);
  const bool is_next = engine_list_.IsNext(entry);
  if (is_next && engine_list_.FollowingTrack(0) == next.number) {
    // Gapless transition. The finished track is removed from the engine's playlist.
    engine_.RemoveFirst();
    engine_list_.Advance();
    ContinueInEngine();
    return UpdateFollowing();
  }
  // The next track started before the engine processed the command to stop.
  if (after_track_ == AfterTrack::kStop) return FinishList(PlayerState::kStopped);
  if (!is_next && !engine_list_.MayHaveStarted(entry)) return;
  // A track started before the engine processed the command to remove it, or before that was sent.
  // The right one plays in its place, without a gap. Which entries the engine's playlist still has
  // is not known.
  if (next.number == 0) return FinishList(PlayerState::kStopped);
  engine_.Redirect(*next.path);
  RemoveFollowing(0);
  engine_list_.ReplaceCurrent(entry, next.number);
  ContinueInEngine();
  SendFollowing();
}

void SongPlayer::ContinueInEngine() {
  list_.GoToFollowing();
  goes_back_ = false;
  position_.Reset();
  ResetTrack();
  Enter(PlayerState::kOpening);
  Changed(PlayerChange::kTrack);
}

void SongPlayer::OnTrackOpened() {
  if (state_ != PlayerState::kOpening) return;
  Enter(PlayerState::kOpen);
  engine_.RequestProperties();
}

void SongPlayer::StoreResult(const char* error) {
  if (error == nullptr) {
    failures_in_row_ = 0;
    goes_back_ = false;
    return failures_.EntryPlays(list_.CurrentNumber());
  }
  const std::string path = list_.CurrentPath();
  std::fprintf(stderr, "tallow-player: %s cannot be played and is skipped: %s\n",
               Printable(path).c_str(), error);
  ++failures_in_row_;
  failures_.Add(list_.CurrentNumber(), failure_reasons_.Of(path, error));
}

bool SongPlayer::MayContinueAfterFailure() {
  if (after_track_ == AfterTrack::kStop) return true;
  if (goes_back_ && list_.HasPrevious()) {
    GoBack();
    return false;
  }
  // From the first track it goes forwards, past tracks that have failed on the way back.
  if (goes_back_) failures_in_row_ = 1;
  if (list_.Repeat() == RepeatMode::kOff) return true;
  if (failures_in_row_ >= list_.Size() || !HasNext()) {
    FinishList(PlayerState::kRanOut);
    return false;
  }
  if (list_.Repeat() == RepeatMode::kAll) return true;
  list_.GoToNext();
  LoadCurrent(paused_);
  return false;
}

void SongPlayer::OnTrackEnded(EntryNumber entry, const char* error) {
  if (!HasEntry() || !engine_list_.IsCurrent(entry)) return;
  // A seek to the very end leaves no audio either, but is no failure.
  const bool failed = error != nullptr && !(IsOpen() && position_.SeekTarget() > 0);
  StoreResult(failed ? error : nullptr);
  if (failed && !MayContinueAfterFailure()) return;
  // If the engine got the next track in time, it continues without a command.
  if (engine_list_.HasFollowing()) return;
  if (ContinuesWithNext()) return LoadNext();
  end_ = {.time = Clock::now(), .was_open = IsOpen(), .failed = failed};
  Enter(PlayerState::kDraining);
}

void SongPlayer::OnIdle() {
  // In kLoading, the engine was idle before it loaded the track.
  if (!HasEntry()) return;
  if (ContinuesWithNext()) return LoadNext();
  const bool failed = state_ == PlayerState::kDraining && end_.failed;
  FinishList(failed && after_track_ == AfterTrack::kContinue ? PlayerState::kRanOut
                                                             : PlayerState::kStopped);
}

void SongPlayer::OnPosition(double seconds) {
  if (state_ != PlayerState::kOpen) return;
  position_.OnReport(seconds, paused_);
  if (seconds > 0) StoreResult(nullptr);
}

void SongPlayer::OnLength(double seconds) {
  if (!IsOpen()) return;
  track_.length = seconds;
  Changed(PlayerChange::kTrack);
}

void SongPlayer::OnTags(TrackTags tags) {
  if (!IsOpen()) return;
  if (tags.title) track_.title = std::move(*tags.title);
  if (tags.artist) track_.artist = std::move(*tags.artist);
  Changed(PlayerChange::kTrack);
}

void SongPlayer::OnPropertiesReported() {
  if (!IsOpen()) return;
  length_callbacks_.CallAll();
  if (!position_.SendPendingSeek(track_.length)) Changed(PlayerChange::kSeeked);
}

}  // namespace tallow

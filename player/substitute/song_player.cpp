// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/song_player.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

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

SongPlayer::SongPlayer(EventLoop& loop, PlaybackEngine& engine)
    : engine_(engine), position_(engine), length_callbacks_(loop, [this] { return Length(); }) {
  engine_.SetListener(*this);
}

// Transitions that several events share.

void SongPlayer::Changed(PlayerChange change) const {
  if (on_change_) on_change_(change);
}

void SongPlayer::Enter(PlayerState state, bool paused) {
  const PlayerStatus before = Status();
  state_ = state;
  paused_ = paused;
  if (Status() != before) Changed(PlayerChange::kStatus);
}

void SongPlayer::ResetTrack() {
  track_ = {};
  track_.path = list_.CurrentPath();
}

void SongPlayer::LoadCurrent(bool paused) {
  position_.Reset();
  ResetTrack();
  engine_.Pause(paused);
  const CommandNumber load = engine_.Load(track_.path);
  engine_list_.SetCurrent(load);
  if (load == 0) return EndTrack(PlayerState::kStopped);
  Enter(PlayerState::kLoading, paused);
  Changed(PlayerChange::kTrack);
}

void SongPlayer::LoadCurrentAt(std::int64_t ms, bool paused) {
  LoadCurrent(paused);
  if (HasTrack()) Seek(ms);
}

void SongPlayer::LoadNext() {
  list_.GoToNext();
  LoadCurrent(paused_);
}

void SongPlayer::EndTrack(PlayerState state) {
  engine_.Stop();
  engine_list_.Clear();
  after_track_ = AfterTrack::kContinue;
  ResetTrack();
  length_callbacks_.CallAll();
  Enter(state);
  Changed(PlayerChange::kTrack);
}

void SongPlayer::FinishList(PlayerState state) {
  list_.GoToNextOrFirst();
  EndTrack(state);
}

void SongPlayer::AppendFollowing() {
  if (!HasEntry()) return;
  while (after_track_ == AfterTrack::kContinue &&
         engine_list_.Following() < EnginePlaylist::kMaxFollowing) {
    const std::string* const path = list_.PathAfterCurrent(engine_list_.Following() + 1);
    if (path == nullptr) return;
    const CommandNumber append = engine_.Append(*path);
    if (append == 0) return;
    engine_list_.AddFollowing(append);
  }
}

void SongPlayer::CurrentHasChanged() {
  after_track_ = AfterTrack::kContinue;
  if (HasTrack()) return LoadCurrent(paused_);
  ResetTrack();
  Changed(PlayerChange::kTrack);
}

// Commands.

void SongPlayer::Play() {
  if (list_.IsEmpty()) return;
  if (Status() == kPaused) return Resume();
  after_track_ = AfterTrack::kContinue;
  length_callbacks_.DeferCalls();
  LoadCurrent(false);
}

void SongPlayer::Resume() {
  if (!HasTrack()) return Play();
  if (!paused_) return;
  engine_.Pause(false);
  Enter(state_, false);
}

void SongPlayer::TogglePause() {
  if (!HasTrack()) return;
  if (paused_) return Resume();
  // The engine has finished the track, so load it again.
  if (state_ == PlayerState::kDraining) return LoadCurrentAt(Position(), true);
  engine_.Pause(true);
  Enter(state_, true);
}

void SongPlayer::Stop() {
  if (HasTrack()) return EndTrack(PlayerState::kStopped);
  Enter(PlayerState::kStopped);
}

void SongPlayer::Next() {
  if (!HasNext()) return;
  list_.GoToNext();
  CurrentHasChanged();
}

void SongPlayer::Previous() {
  if (list_.IsEmpty()) return;
  list_.GoToPrevious();
  CurrentHasChanged();
}

void SongPlayer::StopAfterCurrent() {
  if (!HasTrack()) return;
  after_track_ = AfterTrack::kStop;
  engine_.RemoveFollowing();
  engine_list_.RemoveFollowing();
}

void SongPlayer::Clear() {
  list_.Clear();
  if (HasTrack()) return EndTrack(PlayerState::kStopped);
  Enter(PlayerState::kStopped);
  ResetTrack();
  Changed(PlayerChange::kTrack);
}

bool SongPlayer::Add(std::string path) {
  if (!list_.Add(std::move(path))) return false;
  if (list_.Size() == 1) ResetTrack();
  if (state_ == PlayerState::kRanOut) {
    list_.GoToLast();
    LoadCurrent(false);
  } else {
    AppendFollowing();
  }
  Changed(PlayerChange::kList);
  return true;
}

bool SongPlayer::Seek(std::int64_t ms) {
  if (!HasTrack()) return false;
  const double target = static_cast<double>(ms) / 1000;
  if (ms < 0 || (track_.length && target > *track_.length)) return false;
  if (state_ == PlayerState::kDraining) {
    // The engine has finished the track, so load it again.
    LoadCurrentAt(ms, paused_);
    return true;
  }
  if (state_ == PlayerState::kOpen)
    position_.SeekNow(target);
  else
    position_.SeekWhenOpen(target);
  Changed(PlayerChange::kSeeked);
  return true;
}

void SongPlayer::SetVolume(std::int32_t volume) {
  volume_ = std::clamp(volume, 0, kMaxVolume);
  engine_.SetVolume(volume_);
  Changed(PlayerChange::kVolume);
}

void SongPlayer::SetBalance(std::int32_t balance) {
  engine_.SetBalance(std::clamp(balance, -kMaxBalance, kMaxBalance));
}

// Queries.

PlayerStatus SongPlayer::Status() const noexcept {
  if (!HasTrack()) return kStopped;
  return paused_ ? kPaused : kPlaying;
}

std::int64_t SongPlayer::Position() const noexcept {
  if (!HasTrack()) return -1;
  double position = position_.Seconds();
  if (state_ == PlayerState::kDraining && track_.length) {
    // The engine does not report the position any more.
    const std::chrono::duration<double> since = Clock::now() - end_.time;
    position = std::min(position + since.count(), *track_.length);
  }
  return std::max<std::int64_t>(0, std::llround(position * 1000));
}

std::int64_t SongPlayer::Length() const noexcept {
  if (!HasTrack() || !track_.length) return -1;
  return static_cast<std::int64_t>(*track_.length);
}

bool SongPlayer::IsOpen() const noexcept {
  return state_ == PlayerState::kOpen || (state_ == PlayerState::kDraining && end_.was_open);
}

// Events of the engine.

void SongPlayer::OnReply(CommandNumber command, bool succeeded, EntryNumber entry) {
  if (position_.OnReply(command, succeeded)) return;
  if (!engine_list_.StoreReply(command, entry)) return;
  if (!engine_list_.KnowsCurrent()) return EndTrack(PlayerState::kStopped);
  Enter(PlayerState::kLoaded);
  AppendFollowing();
}

void SongPlayer::OnTrackStarted(EntryNumber entry) {
  if (!HasEntry()) return;
  if (engine_list_.IsCurrent(entry)) return Enter(PlayerState::kOpening);
  if (!engine_list_.IsNext(entry)) {
    // The next track started before the engine processed the command to stop.
    if (after_track_ == AfterTrack::kStop) FinishList(PlayerState::kStopped);
    return;
  }
  // Gapless transition to the next track. The finished one is removed from the engine's playlist.
  engine_.RemoveFirst();
  engine_list_.Advance();
  list_.GoToNext();
  position_.Reset();
  ResetTrack();
  Enter(PlayerState::kOpening);
  AppendFollowing();
  Changed(PlayerChange::kTrack);
}

void SongPlayer::OnTrackOpened() {
  if (state_ != PlayerState::kOpening) return;
  Enter(PlayerState::kOpen);
  engine_.RequestProperties();
}

void SongPlayer::OnTrackEnded(EntryNumber entry, const char* error) {
  if (!HasEntry() || !engine_list_.IsCurrent(entry)) return;
  // A seek to the very end leaves no audio either, but is no failure.
  const bool failed = error != nullptr && !(IsOpen() && position_.SeekTarget() > 0);
  if (failed)
    std::fprintf(stderr, "tallow-player: %s cannot be played and is skipped: %s\n",
                 Printable(list_.CurrentPath()).c_str(), error);
  // If the engine got the next track in time, it continues without a command.
  if (engine_list_.KnowsNext()) return;
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
  if (state_ == PlayerState::kOpen) position_.OnReport(seconds, paused_);
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

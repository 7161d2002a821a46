// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/song_player.h"

#include <algorithm>
#include <cmath>

namespace tallow {

SongPlayer::SongPlayer(EventLoop& loop, PlaybackEngine& engine, std::mt19937::result_type seed)
    : engine_(engine),
      list_(seed),
      position_(engine),
      length_callbacks_(loop, [this] { return Length(); }) {
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
  has_ended_ = false;
  goes_back_ = false;
  position_.Reset();
  ResetTrack();
  engine_.Pause(paused);
  const CommandNumber load = engine_.Load(track_.path);
  engine_list_.SetCurrent(load, list_.CurrentNumber());
  if (load == 0) return EndTrack(PlayerState::kStopped);
  Enter(PlayerState::kLoading, paused);
  Changed(PlayerChange::kTrack);
}

void SongPlayer::LoadCurrentAt(std::int64_t ms, bool paused) {
  LoadCurrent(paused);
  if (HasTrack()) Seek(ms);
}

void SongPlayer::LoadNext() {
  list_.GoToFollowing();
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
  has_ended_ = !HasNext();
  list_.GoToNext();
  EndTrack(state);
}

void SongPlayer::UpdateFollowing() {
  if (!HasEntry()) return;
  following_outdated_ = !engine_list_.IsSettled();
  if (!following_outdated_) SendFollowing();
}

void SongPlayer::SendFollowing() {
  following_outdated_ = false;
  std::size_t same = 0;
  while (same < engine_list_.Following() &&
         engine_list_.FollowingTrack(same) == After(same + 1).number)
    ++same;
  const PlayList::Following first = After(1);
  if (same == 0 && engine_list_.Following() > 0 && first.number != 0) return ReplaceNext(first);
  if (same < engine_list_.Following()) RemoveFollowing(same);
  while (engine_list_.Following() < EnginePlaylist::kMaxFollowing) {
    const PlayList::Following next = After(engine_list_.Following() + 1);
    if (next.number == 0) return;
    const CommandNumber append = engine_.Append(*next.path);
    if (append == 0) return;
    engine_list_.AddFollowing(append, next.number);
  }
}

void SongPlayer::ReplaceNext(const PlayList::Following& next) {
  RemoveFollowing(1);
  const CommandNumber append = engine_.Append(*next.path);
  if (append == 0) return;
  engine_.MoveBehindFirst(2);
  engine_list_.AddNext(append, next.number);
  following_outdated_ = true;
}

void SongPlayer::RemoveFollowing(std::size_t keep) {
  if (keep == 0) return engine_list_.RemoveFollowing(engine_.RemoveFollowing());
  // The last one first: the engine may just be starting the next one.
  for (std::size_t index = engine_list_.Following(); index > keep; --index) engine_.RemoveAt(index);
  engine_list_.KeepFollowing(keep);
}

void SongPlayer::ListHasChanged() {
  UpdateFollowing();
  Changed(PlayerChange::kList);
}

void SongPlayer::CurrentHasChanged() {
  has_ended_ = false;
  after_track_ = AfterTrack::kContinue;
  if (HasTrack()) return LoadCurrent(paused_);
  ResetTrack();
  Changed(PlayerChange::kTrack);
}

void SongPlayer::GoBack() {
  const bool moves = list_.HasPrevious();
  list_.GoToPrevious();
  CurrentHasChanged();
  goes_back_ = moves && HasTrack();
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
  if (!list_.IsEmpty()) GoBack();
}

void SongPlayer::StopAfterCurrent() {
  if (!HasTrack()) return;
  after_track_ = AfterTrack::kStop;
  RemoveFollowing(0);
}

void SongPlayer::Clear() {
  has_ended_ = false;
  list_.Clear();
  failures_.ForgetEntries();
  failures_in_row_ = 0;
  if (HasTrack()) return EndTrack(PlayerState::kStopped);
  Enter(PlayerState::kStopped);
  ResetTrack();
  Changed(PlayerChange::kTrack);
}

ListNumber SongPlayer::AddFiles(std::vector<std::string> paths, std::int64_t at) {
  const bool was_empty = list_.IsEmpty();
  const ListNumber first = list_.Add(std::move(paths), at);
  if (first == 0) return 0;
  has_ended_ = false;
  if (was_empty) ResetTrack();
  // Files that are added before another one precede what was played.
  if (state_ == PlayerState::kRanOut && at <= kAtEnd) {
    list_.GoTo(first);
    LoadCurrent(false);
  } else {
    UpdateFollowing();
  }
  Changed(PlayerChange::kList);
  return first;
}

void SongPlayer::Move(const std::vector<ListNumber>& entries, ListNumber before) {
  list_.Move(entries, before);
  ListHasChanged();
}

void SongPlayer::Remove(const std::vector<ListNumber>& entries) {
  list_.Remove(entries);
  ListHasChanged();
}

void SongPlayer::PlayEntry(ListNumber entry) {
  if (!list_.GoTo(entry)) return;
  after_track_ = AfterTrack::kContinue;
  length_callbacks_.DeferCalls();
  LoadCurrent(false);
}

void SongPlayer::Cue(ListNumber entry, std::int64_t ms) {
  if (!list_.GoTo(entry)) return;
  after_track_ = AfterTrack::kContinue;
  length_callbacks_.DeferCalls();
  if (ms > 0)
    LoadCurrentAt(ms, true);
  else
    LoadCurrent(true);
}

void SongPlayer::SetPlace(std::size_t place) {
  if (list_.GoToPlace(place)) CurrentHasChanged();
}

void SongPlayer::SetShuffle(bool shuffle) {
  list_.SetShuffle(shuffle);
  ListHasChanged();
}

void SongPlayer::SetRepeat(RepeatMode mode) {
  list_.SetRepeat(mode);
  ListHasChanged();
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
  balance_ = std::clamp(balance, -kMaxBalance, kMaxBalance);
  engine_.SetBalance(balance_);
}

void SongPlayer::SetGain(ReplayGain mode) {
  gain_ = mode;
  engine_.SetGain(mode);
}

void SongPlayer::SetDevice(const std::string& name) {
  device_ = name;
  engine_.SetDevice(name);
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

std::int64_t SongPlayer::LengthInMs() const noexcept {
  return HasTrack() && track_.length ? std::llround(*track_.length * 1000) : -1;
}

std::int64_t SongPlayer::Length() const noexcept {
  if (!HasTrack() || !track_.length) return -1;
  return static_cast<std::int64_t>(*track_.length);
}

bool SongPlayer::IsOpen() const noexcept {
  return state_ == PlayerState::kOpen || (state_ == PlayerState::kDraining && end_.was_open);
}

}  // namespace tallow

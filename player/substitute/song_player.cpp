// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/song_player.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <utility>

#include "library/tag_text.h"
#include "player/player_socket_linux.h"
#include "util/text.h"

namespace tallow {
namespace {

/// How long a query of the length waits for the track to open, in µs.
constexpr std::uint64_t kLengthTimeout = 2'000'000;

/// Maximum number of bytes of a path that are shown on the terminal.
constexpr std::size_t kMaxShownPath = 4096;

/// Makes a path printable on the terminal. Truncates paths that are longer than any file's path.
std::string Printable(std::string path) {
  if (path.size() > kMaxShownPath) path.replace(kMaxShownPath, std::string::npos, "...");
  std::replace_if(
      path.begin(), path.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
  return path;
}

/// Returns the number of the playlist entry that a command has added to mpv; kNoEntry for none.
std::int64_t NumberOfEntry(const mpv_event& reply) {
  const mpv_node& result = static_cast<mpv_event_command*>(reply.data)->result;
  if (result.format != MPV_FORMAT_NODE_MAP) return kNoEntry;
  for (int k = 0; k < result.u.list->num; ++k)
    if (std::strcmp(result.u.list->keys[k], "playlist_entry_id") == 0)
      return result.u.list->values[k].u.int64;
  return kNoEntry;
}

/// Converts the text of a tag to UTF-8.
std::string TextOfTag(const char* bytes) {
  std::string text(bytes);
  return IsValidUtf8(text) ? text : DecodeTagField(text);
}

}  // namespace

SongPlayer::SongPlayer(sd_event* loop, const SoundOutput& output)
    : loop_(loop), engine_(loop, output, [this](const mpv_event& event) { TakeEvent(event); }) {}

void SongPlayer::Changed(PlayerChange change) const {
  if (told_) told_(change);
}

void SongPlayer::SetStatus(PlayerStatus status) {
  if (status_ == status) return;
  status_ = status;
  Changed(PlayerChange::kStatus);
}

void SongPlayer::ShowTrack() {
  track_ = {};
  if (current_ < list_.size()) track_.path = list_[current_].path;
}

void SongPlayer::BeginTrack(Opening opening) {
  opening_ = opening;
  draining_ = false;
  failed_ = false;
  position_ = 0;
  seek_ = 0;
  seek_restarts_ = false;
  seek_waits_ = false;
  seek_target_ = 0;
  ShowTrack();
}

void SongPlayer::StartTrack(std::size_t index, bool paused) {
  current_ = index;
  ran_out_ = false;
  following_.clear();
  BeginTrack(Opening::kWaits);
  engine_.Pause(paused);
  playing_ = {engine_.Command({"loadfile", list_[index].path.c_str(), "replace"}), kNoEntry};
  if (playing_.reply == 0) return EndTrack(false);
  SetStatus(paused ? kPaused : kPlaying);
  Changed(PlayerChange::kTrack);
}

void SongPlayer::QueueFollowing() {
  if (playing_.number == kNoEntry) return;
  while (!stop_after_current_ && following_.size() < kMaxFollowing &&
         current_ + 1 + following_.size() < list_.size()) {
    const std::string& path = list_[current_ + 1 + following_.size()].path;
    const std::uint64_t reply = engine_.Command({"loadfile", path.c_str(), "append"});
    if (reply == 0) return;
    following_.push_back({reply, kNoEntry});
  }
}

void SongPlayer::EndTrack(bool list_ran_out_on_error) {
  engine_.Command({"stop"});
  playing_ = {};
  following_.clear();
  opening_ = Opening::kWaits;
  draining_ = false;
  stop_after_current_ = false;
  ran_out_ = list_ran_out_on_error;
  ShowTrack();
  TellLength();
  SetStatus(kStopped);
  Changed(PlayerChange::kTrack);
}

void SongPlayer::Play() {
  if (list_.empty()) return;
  if (status_ == kPaused) return Resume();
  stop_after_current_ = false;
  length_is_asked_ = true;
  StartTrack(current_, false);
}

void SongPlayer::Resume() {
  if (status_ == kStopped) return Play();
  if (status_ != kPaused) return;
  engine_.Pause(false);
  SetStatus(kPlaying);
}

void SongPlayer::TogglePause() {
  if (status_ == kPaused) return Resume();
  if (status_ != kPlaying) return;
  if (draining_) return StartAgainAt(Position(), true);
  engine_.Pause(true);
  SetStatus(kPaused);
}

void SongPlayer::StartAgainAt(std::int64_t ms, bool paused) {
  StartTrack(current_, paused);
  if (status_ != kStopped) Seek(ms);
}

void SongPlayer::Stop() {
  ran_out_ = false;
  if (status_ != kStopped) EndTrack(false);
}

void SongPlayer::Next() {
  if (!HasNext()) return;
  stop_after_current_ = false;
  if (status_ != kStopped) return StartTrack(current_ + 1, status_ == kPaused);
  ++current_;
  ShowTrack();
  Changed(PlayerChange::kTrack);
}

void SongPlayer::Previous() {
  if (list_.empty()) return;
  stop_after_current_ = false;
  const std::size_t before = HasPrevious() ? current_ - 1 : 0;
  if (status_ != kStopped) return StartTrack(before, status_ == kPaused);
  current_ = before;
  ShowTrack();
  Changed(PlayerChange::kTrack);
}

void SongPlayer::StopAfterCurrent() {
  if (status_ == kStopped) return;
  stop_after_current_ = true;
  // Removes all entries except the current one.
  engine_.Command({"playlist-clear"});
  following_.clear();
}

void SongPlayer::Clear() {
  // clear() would keep the memory of a long list.
  list_ = {};
  list_bytes_ = 0;
  current_ = 0;
  ran_out_ = false;
  if (status_ != kStopped) {
    EndTrack(false);
  } else {
    ShowTrack();
    Changed(PlayerChange::kTrack);
  }
}

bool SongPlayer::Add(std::string path) {
  const std::size_t bytes = path.size() + sizeof(ListEntry);
  if (bytes > kMaxListBytes - list_bytes_) return false;
  list_bytes_ += bytes;
  list_.push_back({std::move(path), ++last_number_});
  if (list_.size() == 1) ShowTrack();
  if (ran_out_)
    StartTrack(list_.size() - 1, false);
  else
    QueueFollowing();
  Changed(PlayerChange::kList);
  return true;
}

bool SongPlayer::Seek(std::int64_t ms) {
  if (status_ == kStopped) return false;
  const double target = static_cast<double>(ms) / 1000;
  if (ms < 0 || (track_.length && target > *track_.length)) return false;
  if (draining_) {
    // mpv has finished the track, so load it again.
    StartAgainAt(ms, status_ == kPaused);
    return true;
  }
  position_ = seek_target_ = target;
  // Before the track is open, mpv cannot seek.
  seek_waits_ = !IsOpen();
  if (!seek_waits_) SendSeek();
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

std::int64_t SongPlayer::Position() const noexcept {
  if (status_ == kStopped) return -1;
  double position = position_;
  if (draining_ && track_.length) {
    // mpv does not report the position any more.
    const std::chrono::duration<double> since = Clock::now() - fades_since_;
    position = std::min(position + since.count(), *track_.length);
  }
  return std::max<std::int64_t>(0, std::llround(position * 1000));
}

const Track* SongPlayer::CurrentTrack() const noexcept { return list_.empty() ? nullptr : &track_; }

std::int64_t SongPlayer::Length() const noexcept {
  if (status_ == kStopped || !track_.length) return -1;
  return static_cast<std::int64_t>(*track_.length);
}

void SongPlayer::WhenLengthIsKnown(std::function<void(std::int64_t)> tell) {
  if (!length_is_asked_) return tell(Length());
  length_askers_.push_back(std::move(tell));
  if (length_timer_) return;
  sd_event_source* timer = nullptr;
  const int added = sd_event_add_time_relative(
      loop_, &timer, CLOCK_MONOTONIC, kLengthTimeout, 0,
      [](sd_event_source*, std::uint64_t, void* self) {
        static_cast<SongPlayer*>(self)->TellLength();
        return 0;
      },
      this);
  if (added < 0) return TellLength();
  length_timer_.reset(timer);
}

void SongPlayer::TellLength() {
  length_is_asked_ = false;
  length_timer_.reset();
  const auto askers = std::exchange(length_askers_, {});
  for (const auto& tell : askers) tell(Length());
}

void SongPlayer::TakeEvent(const mpv_event& event) {
  switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
      return TakeReply(event);
    case MPV_EVENT_START_FILE:
      return TrackBegins(static_cast<mpv_event_start_file*>(event.data)->playlist_entry_id);
    case MPV_EVENT_FILE_LOADED:
      if (opening_ == Opening::kUnderWay) TrackOpened();
      return;
    case MPV_EVENT_END_FILE:
      return TrackEnded(*static_cast<mpv_event_end_file*>(event.data));
    case MPV_EVENT_IDLE:
      return SoundEnded();
    case MPV_EVENT_PLAYBACK_RESTART:
      seek_restarts_ = false;
      return;
    case MPV_EVENT_PROPERTY_CHANGE:
    case MPV_EVENT_GET_PROPERTY_REPLY:
      if (event.error >= 0) TakeProperty(*static_cast<mpv_event_property*>(event.data));
      if (event.event_id == MPV_EVENT_GET_PROPERTY_REPLY &&
          event.reply_userdata == SoundEngine::kLengthReply && IsOpen())
        OnLength();
      return;
    case MPV_EVENT_QUEUE_OVERFLOW:
      // Events were lost, so the state is unknown.
      return EndTrack(false);
    case MPV_EVENT_SHUTDOWN:
      sd_event_exit(loop_, 1);
      return;
    default:
      return;
  }
}

void SongPlayer::TakeReply(const mpv_event& event) {
  const std::uint64_t reply = event.reply_userdata;
  if (reply == seek_) {
    seek_ = 0;
    seek_restarts_ = event.error >= 0;
    return;
  }
  Entry* entry = reply == playing_.reply ? &playing_ : nullptr;
  for (Entry& following : following_)
    if (reply == following.reply) entry = &following;
  if (entry == nullptr) return;
  if (event.error >= 0) entry->number = NumberOfEntry(event);
  if (entry != &playing_) return;
  if (playing_.number == kNoEntry) return EndTrack(false);
  QueueFollowing();
}

void SongPlayer::TrackBegins(std::int64_t entry) {
  if (entry == playing_.number) {
    opening_ = Opening::kUnderWay;
    return;
  }
  if (following_.empty() || entry != following_.front().number) {
    // The next track started before mpv processed the command to stop.
    if (stop_after_current_ && playing_.number != kNoEntry) FinishList(false);
    return;
  }
  // Gapless transition to the next track. The finished one is removed from mpv's playlist.
  engine_.Command({"playlist-remove", "0"});
  playing_ = following_.front();
  following_.pop_front();
  ++current_;
  BeginTrack(Opening::kUnderWay);
  QueueFollowing();
  Changed(PlayerChange::kTrack);
}

void SongPlayer::TrackOpened() {
  opening_ = Opening::kDone;
  engine_.AskForTrack();
}

void SongPlayer::OnLength() {
  TellLength();
  if (!std::exchange(seek_waits_, false)) return;
  // A deferred seek past the end of the track is dropped.
  if (!track_.length || position_ <= *track_.length) return SendSeek();
  position_ = seek_target_ = 0;
  Changed(PlayerChange::kSeeked);
}

void SongPlayer::SendSeek() {
  char target[32];
  std::snprintf(target, sizeof target, "%.3f", position_);
  seek_restarts_ = false;
  seek_ = engine_.Command({"seek", target, "absolute+exact"});
}

void SongPlayer::TrackEnded(const mpv_event_end_file& end) {
  if (end.playlist_entry_id != playing_.number) return;
  // A seek to the very end leaves no audio either, but is no failure.
  const bool failed = end.reason == MPV_END_FILE_REASON_ERROR && !(IsOpen() && seek_target_ > 0);
  if (failed)
    std::fprintf(stderr, "tallow-player: %s cannot be played and is left out: %s\n",
                 Printable(list_[current_].path).c_str(), mpv_error_string(end.error));
  // If mpv got the next track in time, it continues without a command.
  if (!following_.empty() && following_.front().number != kNoEntry) return;
  if (!stop_after_current_ && HasNext()) return StartTrack(current_ + 1, status_ == kPaused);
  // The device still plays the last audio of the track.
  draining_ = true;
  fades_since_ = Clock::now();
  failed_ = failed;
}

void SongPlayer::SoundEnded() {
  // mpv is idle. Ignore this while the entry number of the last loaded track has not arrived.
  if (status_ == kStopped || playing_.number == kNoEntry) return;
  if (HasNext() && !stop_after_current_) return StartTrack(current_ + 1, status_ == kPaused);
  FinishList(failed_ && !stop_after_current_);
}

void SongPlayer::FinishList(bool ran_out) {
  current_ = HasNext() ? current_ + 1 : 0;
  EndTrack(ran_out);
}

void SongPlayer::TakeProperty(const mpv_event_property& property) {
  const std::string_view name = property.name;
  if (name == "time-pos" && property.format == MPV_FORMAT_DOUBLE) {
    if (IsOpen() && !draining_ && seek_ == 0 && !seek_waits_ && !seek_restarts_)
      OnPosition(*static_cast<double*>(property.data));
  } else if (name == "duration" && property.format == MPV_FORMAT_DOUBLE) {
    if (!IsOpen()) return;
    track_.length = *static_cast<double*>(property.data);
    Changed(PlayerChange::kTrack);
  } else if (name == "metadata" && property.format == MPV_FORMAT_NODE && IsOpen()) {
    TakeTags(*static_cast<mpv_node*>(property.data));
  }
}

void SongPlayer::OnPosition(double position) {
  // Right after a seek, mpv's position accounts for audio that the device has buffered but not
  // played. While paused, the position therefore stays slightly before the target.
  constexpr double kMaxBefore = 0.5;
  const bool just_before = position < seek_target_ && position > seek_target_ - kMaxBefore;
  // While paused the position cannot move back. Such a report was made before the seek.
  if (status_ == kPaused && position <= seek_target_ - kMaxBefore) return;
  position_ = just_before ? seek_target_ : position;
}

void SongPlayer::TakeTags(const mpv_node& tags) {
  if (tags.format != MPV_FORMAT_NODE_MAP) return;
  for (int k = 0; k < tags.u.list->num; ++k) {
    const mpv_node& value = tags.u.list->values[k];
    if (value.format != MPV_FORMAT_STRING) continue;
    const std::string_view key = tags.u.list->keys[k];
    if (EqualsIgnoringCase(key, "title")) track_.title = TextOfTag(value.u.string);
    if (EqualsIgnoringCase(key, "artist")) track_.artist = TextOfTag(value.u.string);
  }
  Changed(PlayerChange::kTrack);
}

}  // namespace tallow

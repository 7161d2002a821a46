// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/song_player.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

#include "library/tag_text.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Rate of the sound that leaves the program, in Hz: that of nearly all MP3 files. A device that stays
/// open in one format is what makes tracks of different formats follow without a gap.
constexpr const char* kSampleRate = "44100";

/// How long a question for the length waits for the track to open, in µs.
constexpr std::uint64_t kLengthPatience = 2'000'000;

// What replies and properties are known by; those of commands count up from the first free number.
enum ReplyNumber : std::uint64_t {
  kNoReply = 0,
  kPositionProperty,
  kLengthProperty,
  kTagsProperty,
  kFirstFreeReply,
};

struct Option {
  const char* name;
  const char* value;
};

constexpr Option kOptions[] = {
    // Nothing of the user's mpv is to change what Tallow does.
    {"config", "no"},
    {"load-scripts", "no"},
    {"ytdl", "no"},
    {"input-default-bindings", "no"},
    {"terminal", "no"},
    {"audio-client-name", "Tallow"},
    // Only sound, and only from the file itself: a list of addresses under the name of a song is not
    // followed.
    {"video", "no"},
    {"sid", "no"},
    {"audio-display", "no"},
    {"autoload-files", "no"},
    {"demuxer", "lavf"},
    {"demuxer-lavf-o", "protocol_whitelist=file"},
    {"access-references", "no"},
    // Without a gap.
    {"gapless-audio", "yes"},
    {"prefetch-playlist", "yes"},
    {"audio-samplerate", kSampleRate},
    {"audio-channels", "stereo"},
    // To the very place. The sound of a frame may lie in several frames before it, so reading begins
    // half a second earlier.
    {"hr-seek", "always"},
    {"hr-seek-demuxer-offset", "0.5"},
    {"cache-pause", "no"},
    {"keep-open", "no"},
    // A computer without sound still has a player that keeps time.
    {"audio-fallback-to-null", "yes"},
    {"volume-max", "100"},
};

/// The sound's way through the balance. A mono track comes to both sides as it is (FFmpeg's own
/// conversion would take 3 dB), then the side away from the balance gets softer in proportion.
std::string BalanceFilter(std::int32_t balance) {
  char filter[128];
  std::snprintf(filter, sizeof filter,
                "lavfi=[pan=stereo|FL<FL+FC|FR<FR+FC,stereotools=balance_out=%.6f]",
                static_cast<double>(balance) / kMostBalance);
  return filter;
}

void SetOption(mpv_handle* mpv, const char* name, const char* value) {
  const int result = mpv_set_option_string(mpv, name, value);
  if (result < 0)
    throw std::runtime_error(std::string("libmpv does not take the option ") + name + "=" + value +
                             ": " + mpv_error_string(result));
}

/// A path for a line on the terminal.
std::string Printable(std::string path) {
  std::replace_if(
      path.begin(), path.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
  return path;
}

/// A tag's text as UTF-8.
std::string TextOfTag(const char* bytes) {
  std::string text(bytes);
  return IsValidUtf8(text) ? text : DecodeTagField(text);
}

}  // namespace

SongPlayer::SongPlayer(sd_event* loop, const SoundOutput& output)
    : loop_(loop), wake_up_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), mpv_(mpv_create()) {
  if (!mpv_ || !wake_up_) throw std::runtime_error("libmpv does not start");
  last_reply_ = kFirstFreeReply;
  for (const Option& option : kOptions) SetOption(mpv_.get(), option.name, option.value);
  SetOption(mpv_.get(), "af", BalanceFilter(0).c_str());
  if (!output.file.empty()) {
    SetOption(mpv_.get(), "ao", "pcm");
    SetOption(mpv_.get(), "ao-pcm-file", output.file.c_str());
    SetOption(mpv_.get(), "audio-format", "s16");
  } else if (output.silent) {
    SetOption(mpv_.get(), "ao", "null");
  }
  const int result = mpv_initialize(mpv_.get());
  if (result < 0) throw std::runtime_error(std::string("libmpv: ") + mpv_error_string(result));
  mpv_observe_property(mpv_.get(), kPositionProperty, "time-pos", MPV_FORMAT_DOUBLE);
  mpv_observe_property(mpv_.get(), kLengthProperty, "duration", MPV_FORMAT_DOUBLE);

  sd_event_source* events = nullptr;
  Require(sd_event_add_io(
              loop, &events, wake_up_.descriptor(), EPOLLIN,
              [](sd_event_source*, int descriptor, std::uint32_t, void* self) {
                std::uint64_t count = 0;
                if (read(descriptor, &count, sizeof count) > 0)
                  static_cast<SongPlayer*>(self)->TakeEvents();
                return 0;
              },
              this),
          "the event loop");
  events_.reset(events);
  mpv_set_wakeup_callback(
      mpv_.get(),
      [](void* self) {
        const std::uint64_t one = 1;
        // It fails only when the counter is full, and then there is enough to wake up for.
        [[maybe_unused]] const ssize_t ignored =
            write(static_cast<SongPlayer*>(self)->wake_up_.descriptor(), &one, sizeof one);
      },
      this);
}

SongPlayer::~SongPlayer() {
  // mpv's threads use the descriptor until they are gone.
  mpv_set_wakeup_callback(mpv_.get(), nullptr, nullptr);
  mpv_.reset();
}

void SongPlayer::Command(std::uint64_t reply, std::initializer_list<const char*> words) {
  std::vector<const char*> command(words);
  command.push_back(nullptr);
  mpv_command_async(mpv_.get(), reply, command.data());
}

void SongPlayer::SetText(const char* property, const std::string& value) {
  const char* text = value.c_str();
  mpv_set_property_async(mpv_.get(), kNoReply, property, MPV_FORMAT_STRING,
                         static_cast<void*>(&text));
}

void SongPlayer::Changed(PlayerChange change) const {
  if (told_) told_(change);
}

void SongPlayer::SetStatus(PlayerStatus status) {
  if (status_ == status) return;
  status_ = status;
  Changed(PlayerChange::kStatus);
}

void SongPlayer::PauseSound(bool paused) {
  int flag = paused ? 1 : 0;
  mpv_set_property_async(mpv_.get(), kNoReply, "pause", MPV_FORMAT_FLAG, &flag);
}

void SongPlayer::ShowTrack() {
  track_ = {};
  if (current_ < list_.size()) track_.path = list_[current_].path;
}

void SongPlayer::BeginTrack(Opening opening) {
  opening_ = opening;
  fading_ = false;
  position_ = 0;
  seek_ = 0;
  seek_restarts_ = false;
  seek_waits_ = false;
  sought_ = 0;
  ShowTrack();
}

void SongPlayer::StartTrack(std::size_t index, bool paused) {
  current_ = index;
  ran_out_ = false;
  following_.clear();
  playing_ = {++last_reply_, kNoEntry};
  BeginTrack(Opening::kWaits);
  PauseSound(paused);
  Command(playing_.reply, {"loadfile", list_[index].path.c_str(), "replace"});
  FeedFollowing();
  SetStatus(paused ? kPaused : kPlaying);
  Changed(PlayerChange::kTrack);
}

void SongPlayer::FeedFollowing() {
  if (playing_.reply == 0) return;
  while (!stop_after_current_ && following_.size() < kMostFollowing &&
         current_ + 1 + following_.size() < list_.size()) {
    const std::string& path = list_[current_ + 1 + following_.size()].path;
    following_.push_back({++last_reply_, kNoEntry});
    Command(last_reply_, {"loadfile", path.c_str(), "append"});
  }
}

void SongPlayer::EndTrack(bool list_ran_out_on_error) {
  Command(kNoReply, {"stop"});
  playing_ = {};
  following_.clear();
  opening_ = Opening::kWaits;
  fading_ = false;
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
  PauseSound(false);
  SetStatus(kPlaying);
}

void SongPlayer::TogglePause() {
  if (status_ == kPaused) return Resume();
  if (status_ != kPlaying) return;
  PauseSound(true);
  SetStatus(kPaused);
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
  // All but what plays.
  Command(kNoReply, {"playlist-clear"});
  following_.clear();
}

void SongPlayer::Clear() {
  list_.clear();
  current_ = 0;
  ran_out_ = false;
  if (status_ != kStopped) {
    EndTrack(false);
  } else {
    ShowTrack();
    Changed(PlayerChange::kTrack);
  }
}

void SongPlayer::Add(std::string path) {
  list_.push_back({std::move(path), ++last_number_});
  if (list_.size() == 1) ShowTrack();
  if (ran_out_)
    StartTrack(list_.size() - 1, false);
  else
    FeedFollowing();
  Changed(PlayerChange::kList);
}

bool SongPlayer::Seek(std::int64_t ms) {
  if (status_ == kStopped) return false;
  const double target = static_cast<double>(ms) / 1000;
  if (ms < 0 || (track_.length && target > *track_.length)) return false;
  position_ = sought_ = target;
  seek_ = ++last_reply_;
  seek_restarts_ = false;
  // Before the track is open there is nothing to seek in.
  seek_waits_ = !IsOpen();
  if (!seek_waits_) SendSeek();
  Changed(PlayerChange::kSeeked);
  return true;
}

void SongPlayer::SetVolume(std::int32_t volume) {
  volume_ = std::clamp(volume, 0, kMostVolume);
  // mpv's scale goes with the cube root of the amplitude.
  double percent = 100 * std::cbrt(static_cast<double>(volume_) / kMostVolume);
  mpv_set_property_async(mpv_.get(), kNoReply, "volume", MPV_FORMAT_DOUBLE, &percent);
  Changed(PlayerChange::kVolume);
}

void SongPlayer::SetBalance(std::int32_t balance) {
  SetText("af", BalanceFilter(std::clamp(balance, -kMostBalance, kMostBalance)));
}

std::int64_t SongPlayer::Position() const noexcept {
  if (status_ == kStopped) return -1;
  double position = position_;
  if (fading_ && track_.length) {
    // mpv does not tell any more.
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
  Require(sd_event_add_time_relative(
              loop_, &timer, CLOCK_MONOTONIC, kLengthPatience, 0,
              [](sd_event_source*, std::uint64_t, void* self) {
                static_cast<SongPlayer*>(self)->TellLength();
                return 0;
              },
              this),
          "the event loop");
  length_timer_.reset(timer);
}

void SongPlayer::TellLength() {
  length_is_asked_ = false;
  length_timer_.reset();
  const auto askers = std::exchange(length_askers_, {});
  for (const auto& tell : askers) tell(Length());
}

void SongPlayer::TakeEvents() {
  for (;;) {
    const mpv_event* const event = mpv_wait_event(mpv_.get(), 0);
    if (event->event_id == MPV_EVENT_NONE) return;
    TakeEvent(*event);
  }
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
          event.reply_userdata == kLengthProperty && IsOpen())
        LengthTold();
      return;
    default:
      return;
  }
}

void SongPlayer::TakeReply(const mpv_event& event) {
  const std::uint64_t reply = event.reply_userdata;
  if (reply == kNoReply) return;
  if (reply == seek_) {
    seek_ = 0;
    seek_restarts_ = event.error >= 0;
    return;
  }
  Entry* entry = reply == playing_.reply ? &playing_ : nullptr;
  for (Entry& following : following_)
    if (reply == following.reply) entry = &following;
  if (entry == nullptr || event.error < 0) return;
  const mpv_node& result = static_cast<mpv_event_command*>(event.data)->result;
  if (result.format != MPV_FORMAT_NODE_MAP) return;
  for (int k = 0; k < result.u.list->num; ++k)
    if (std::strcmp(result.u.list->keys[k], "playlist_entry_id") == 0)
      entry->number = result.u.list->values[k].u.int64;
}

void SongPlayer::TrackBegins(std::int64_t entry) {
  if (entry == playing_.number) {
    opening_ = Opening::kUnderWay;
    return;
  }
  if (following_.empty() || entry != following_.front().number) return;
  // On without a gap. What has been played leaves mpv's list.
  Command(kNoReply, {"playlist-remove", "0"});
  playing_ = following_.front();
  following_.pop_front();
  ++current_;
  BeginTrack(Opening::kUnderWay);
  FeedFollowing();
  Changed(PlayerChange::kTrack);
}

void SongPlayer::TrackOpened() {
  opening_ = Opening::kDone;
  mpv_get_property_async(mpv_.get(), kLengthProperty, "duration", MPV_FORMAT_DOUBLE);
  mpv_get_property_async(mpv_.get(), kTagsProperty, "metadata", MPV_FORMAT_NODE);
}

void SongPlayer::LengthTold() {
  TellLength();
  if (!std::exchange(seek_waits_, false)) return;
  // A place that the track turns out not to have is forgotten.
  if (!track_.length || position_ <= *track_.length) return SendSeek();
  position_ = 0;
  seek_ = 0;
}

void SongPlayer::SendSeek() {
  char target[32];
  std::snprintf(target, sizeof target, "%.3f", position_);
  Command(seek_, {"seek", target, "absolute+exact"});
}

void SongPlayer::TrackEnded(const mpv_event_end_file& end) {
  if (end.playlist_entry_id != playing_.number) return;
  const bool failed = end.reason == MPV_END_FILE_REASON_ERROR;
  if (failed)
    std::fprintf(stderr, "tallow-player: %s cannot be played and is left out: %s\n",
                 Printable(list_[current_].path).c_str(), mpv_error_string(end.error));
  // mpv goes on by itself, if it knew of the next track in time.
  if (!following_.empty() && following_.front().number != kNoEntry) return;
  if (!stop_after_current_ && HasNext()) return StartTrack(current_ + 1, status_ == kPaused);
  // Its last sound has still to leave the device.
  fading_ = true;
  fades_since_ = Clock::now();
  failed_ = failed;
}

void SongPlayer::SoundEnded() {
  if (!fading_) return;
  const bool go_on = HasNext() && !stop_after_current_;
  if (go_on) return StartTrack(current_ + 1, status_ == kPaused);
  const bool ran_out = failed_ && !stop_after_current_;
  current_ = HasNext() ? current_ + 1 : 0;
  EndTrack(ran_out);
}

void SongPlayer::TakeProperty(const mpv_event_property& property) {
  const std::string_view name = property.name;
  if (name == "time-pos" && property.format == MPV_FORMAT_DOUBLE) {
    if (IsOpen() && !fading_ && seek_ == 0 && !seek_restarts_)
      PositionTold(*static_cast<double*>(property.data));
  } else if (name == "duration" && property.format == MPV_FORMAT_DOUBLE) {
    if (!IsOpen()) return;
    track_.length = *static_cast<double*>(property.data);
    Changed(PlayerChange::kTrack);
  } else if (name == "metadata" && property.format == MPV_FORMAT_NODE && IsOpen()) {
    TakeTags(*static_cast<mpv_node*>(property.data));
  }
}

void SongPlayer::PositionTold(double position) {
  // Right behind a seek mpv counts what the device holds but has not begun to play as played back, so
  // that it stands a little before the place, for as long as it is paused.
  constexpr double kMostBefore = 0.5;
  const bool just_before = position < sought_ && position > sought_ - kMostBefore;
  position_ = just_before ? sought_ : position;
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

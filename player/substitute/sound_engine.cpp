// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/sound_engine.h"

#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <utility>
#include <vector>

#include "player/player_messages.h"
#include "player/substitute/engine_path.h"
#include "player/substitute/mpv_events.h"

namespace tallow {
namespace {

/// Sample rate of the output, in Hz: the rate of nearly all MP3 files. The device stays open in one
/// format, so that tracks of different formats follow each other without a gap.
constexpr const char* kSampleRate = "44100";

struct Option {
  const char* name;
  const char* value;
};

constexpr Option kOptions[] = {
    // Ignore the user's configuration of mpv.
    {"config", "no"},
    {"input-default-bindings", "no"},
    {"terminal", "no"},
    {"audio-client-name", "Tallow"},
    // Play only sound, and only from the file itself. Do not follow a playlist that is named like a
    // song.
    {"video", "no"},
    {"sid", "no"},
    {"audio-display", "no"},
    {"autoload-files", "no"},
    {"demuxer", "lavf"},
    {"demuxer-lavf-o", "protocol_whitelist=file"},
    {"access-references", "no"},
    // Gapless playback.
    {"gapless-audio", "yes"},
    {"prefetch-playlist", "yes"},
    {"audio-samplerate", kSampleRate},
    {"audio-channels", "stereo"},
    // Seek exactly. The audio of an MP3 frame may depend on several frames before it, so decoding
    // starts half a second earlier.
    {"hr-seek", "always"},
    {"hr-seek-demuxer-offset", "0.5"},
    {"cache-pause", "no"},
    {"keep-open", "no"},
    {"volume-max", "100"},
    // A gain that would exceed full scale is reduced. A file without the tag is not changed.
    {"replaygain", "no"},
    {"replaygain-clip", "no"},
    {"replaygain-preamp", "0"},
    {"replaygain-fallback", "0"},
};

/// Scripts and parts of mpv's user interface, each of which starts a thread. Not every mpv has all.
constexpr const char* kDisabledScripts[] = {"load-scripts",
                                            "ytdl",
                                            "osc",
                                            "load-stats-overlay",
                                            "load-osd-console",
                                            "load-console",
                                            "load-auto-profiles",
                                            "load-select",
                                            "load-positioning"};

/// Formats the balance as text, scaled to -1 (left) to 1 (right).
std::string BalanceText(std::int32_t balance) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6f", static_cast<double>(balance) / kMaxBalance);
  return text;
}

/// The filter chain for the balance. A mono track is copied to both channels unchanged (FFmpeg's
/// own conversion would reduce it by 3 dB). Then the channel opposite to the balance is attenuated
/// proportionally.
std::string BalanceFilter(std::int32_t balance) {
  return "@balance:lavfi=[pan=stereo|FL<FL+FC|FR<FR+FC,stereotools=balance_out=" +
         BalanceText(balance) + "]";
}

void SetOption(mpv_handle* mpv, const char* name, const char* value) {
  const int result = mpv_set_option_string(mpv, name, value);
  if (result < 0)
    throw std::runtime_error(std::string("libmpv rejected the option ") + name + "=" + value +
                             ": " + mpv_error_string(result));
}

/// Without this check mpv would play silently if the file cannot be written.
void RequireWritable(const std::string& path) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) throw std::runtime_error(path + " cannot be written");
  std::fclose(file);
}

/// Sets the options that depend on the destination of the sound.
void SetOutput(mpv_handle* mpv, const SoundOutput& output) {
  if (!output.file.empty()) {
    RequireWritable(output.file);
    SetOption(mpv, "ao", "pcm");
    SetOption(mpv, "ao-pcm-file", output.file.c_str());
    SetOption(mpv, "audio-format", "s16");
  } else if (output.silent) {
    SetOption(mpv, "ao", "null");
  } else {
    // Without a sound device, play silently in real time.
    SetOption(mpv, "audio-fallback-to-null", "yes");
  }
}

}  // namespace

SoundEngine::SoundEngine(EventLoop& loop, const SoundOutput& output)
    : loop_(loop),
      wake_up_(loop.AddWakeUp([this] { DispatchEvents(); })),
      mpv_(mpv_create()),
      pace_(output.pace) {
  if (!mpv_) throw std::runtime_error("libmpv does not start");
  for (const Option& option : kOptions) SetOption(mpv_.get(), option.name, option.value);
  for (const char* const name : kDisabledScripts) mpv_set_option_string(mpv_.get(), name, "no");
  SetOption(mpv_.get(), "af", Filters().c_str());
  SetOutput(mpv_.get(), output);
  const int result = mpv_initialize(mpv_.get());
  if (result < 0) throw std::runtime_error(std::string("libmpv: ") + mpv_error_string(result));
  mpv_observe_property(mpv_.get(), 0, "time-pos", MPV_FORMAT_DOUBLE);
  mpv_observe_property(mpv_.get(), 0, "duration", MPV_FORMAT_DOUBLE);
  if (output.file.empty() && !output.silent)
    mpv_observe_property(mpv_.get(), 0, "current-ao", MPV_FORMAT_STRING);
  mpv_hook_add(mpv_.get(), 0, "on_load", 0);
  mpv_set_wakeup_callback(
      mpv_.get(), [](void* wake_up) { static_cast<WakeUp*>(wake_up)->Request(); }, wake_up_.get());
}

SoundEngine::~SoundEngine() {
  // mpv's threads request the wake-up until they have ended.
  mpv_set_wakeup_callback(mpv_.get(), nullptr, nullptr);
  mpv_.reset();
}

CommandNumber SoundEngine::Command(std::initializer_list<const char*> words) {
  std::vector<const char*> command(words);
  command.push_back(nullptr);
  const CommandNumber number = ++last_command_;
  return mpv_command_async(mpv_.get(), number, command.data()) < 0 ? 0 : number;
}

CommandNumber SoundEngine::Load(const std::string& path) {
  return Command({"loadfile", EnginePath(path).c_str(), "replace"});
}

CommandNumber SoundEngine::Append(const std::string& path) {
  return Command({"loadfile", EnginePath(path).c_str(), "append"});
}

void SoundEngine::RemoveFirst() { Command({"playlist-remove", "0"}); }

CommandNumber SoundEngine::RemoveFollowing() { return Command({"playlist-clear"}); }

void SoundEngine::RemoveAt(std::size_t index) {
  Command({"playlist-remove", std::to_string(index).c_str()});
}

void SoundEngine::MoveBehindFirst(std::size_t index) {
  Command({"playlist-move", std::to_string(index).c_str(), "1"});
}

void SoundEngine::Stop() { Command({"stop"}); }

CommandNumber SoundEngine::Seek(double seconds) {
  char target[32];
  std::snprintf(target, sizeof target, "%.3f", seconds);
  return Command({"seek", target, "absolute+exact"});
}

void SoundEngine::Pause(bool paused) {
  int flag = paused ? 1 : 0;
  mpv_set_property_async(mpv_.get(), 0, "pause", MPV_FORMAT_FLAG, &flag);
}

void SoundEngine::SetVolume(std::int32_t volume) {
  // mpv's volume scale is cubic: the amplitude is the cube of the volume.
  percent_ = 100 * std::cbrt(static_cast<double>(volume) / kMaxVolume);
  SendVolume(percent_);
}

void SoundEngine::SendVolume(double percent) {
  mpv_set_property_async(mpv_.get(), 0, "volume", MPV_FORMAT_DOUBLE, &percent);
}

void SoundEngine::SetBalance(std::int32_t balance) {
  // Replacing the filters would drop audio buffered in them. Instead, change the running filter by
  // a command, and use the new balance when creating the filters of later tracks.
  balance_ = balance;
  SendBalance();
}

void SoundEngine::SendBalance() {
  Command({"af-command", "balance", "balance_out", BalanceText(balance_).c_str()});
}

void SoundEngine::BeforeLoading(std::uint64_t hook) {
  // mpv waits for this hook, so a synchronous call does not block. No audio is in the filters now.
  if (std::exchange(balance_of_new_tracks_, balance_) != balance_)
    mpv_set_property_string(mpv_.get(), "af", Filters().c_str());
  if (const std::string path = std::exchange(redirect_, {}); !path.empty())
    mpv_set_property_string(mpv_.get(), "stream-open-filename", path.c_str());
  mpv_hook_continue(mpv_.get(), hook);
}

std::string SoundEngine::Filters() const {
  std::string filters = BalanceFilter(balance_);
  if (pace_ > 0) filters += ",@pace:lavfi=[arealtime=speed=" + std::to_string(pace_) + "]";
  return filters;
}

void SoundEngine::SetGain(ReplayGain mode) {
  const char* text = mode == ReplayGain::kTrack ? "track" : "album";
  if (mode == ReplayGain::kOff) text = "no";
  mpv_set_property_async(mpv_.get(), 0, "replaygain", MPV_FORMAT_STRING, static_cast<void*>(&text));
  // mpv applies the new mode to the track that plays only when the volume changes. The difference
  // is far below the resolution of any sample.
  constexpr double kInaudible = 1e-9;
  SendVolume(percent_ > kInaudible ? percent_ - kInaudible : kInaudible);
  SendVolume(percent_);
}

void SoundEngine::SetDevice(const std::string& name) {
  const char* text = name.c_str();
  mpv_set_property_async(mpv_.get(), 0, "audio-device", MPV_FORMAT_STRING,
                         static_cast<void*>(&text));
}

void SoundEngine::RequestDevices(std::function<void(std::vector<SoundDevice>)> callback) {
  const bool asked =
      mpv_get_property_async(mpv_.get(), kDevicesReply, "audio-device-list", MPV_FORMAT_NODE) >= 0;
  if (!asked) return callback({});
  waiting_for_devices_.push_back(std::move(callback));
}

void SoundEngine::AnswerDevices(const mpv_event& reply) {
  if (waiting_for_devices_.empty()) return;
  const auto callback = std::move(waiting_for_devices_.front());
  waiting_for_devices_.erase(waiting_for_devices_.begin());
  callback(DevicesOfReply(reply));
}

void SoundEngine::RequestProperties() {
  mpv_get_property_async(mpv_.get(), 0, "metadata", MPV_FORMAT_NODE);
  mpv_get_property_async(mpv_.get(), kLastPropertyReply, "duration", MPV_FORMAT_DOUBLE);
}

void SoundEngine::DispatchEvents() {
  for (;;) {
    const mpv_event* const event = mpv_wait_event(mpv_.get(), 0);
    if (event->event_id == MPV_EVENT_NONE) return;
    DispatchEvent(*event);
  }
}

void SoundEngine::DispatchEvent(const mpv_event& event) {
  switch (event.event_id) {
    case MPV_EVENT_HOOK:
      BeforeLoading(static_cast<mpv_event_hook*>(event.data)->id);
      return;
    case MPV_EVENT_AUDIO_RECONFIG:
      // mpv recreates the filters when a track changes its format midway.
      if (balance_ != balance_of_new_tracks_) SendBalance();
      return;
    case MPV_EVENT_GET_PROPERTY_REPLY:
      if (event.reply_userdata == kDevicesReply) return AnswerDevices(event);
      break;
    case MPV_EVENT_SHUTDOWN:
      loop_.Exit(1);
      return;
    default:
      break;
  }
  if (listener_ != nullptr) DispatchMpvEvent(event, *listener_);
}

}  // namespace tallow

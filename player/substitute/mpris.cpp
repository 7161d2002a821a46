// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/mpris.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <unistd.h>
#include <utility>
#include <vector>

#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr const char* kPath = "/org/mpris/MediaPlayer2";
constexpr const char* kPlayerInterface = "org.mpris.MediaPlayer2.Player";
constexpr const char* kName = "org.mpris.MediaPlayer2.tallow";
constexpr const char* kNoTrack = "/org/mpris/MediaPlayer2/TrackList/NoTrack";

/// Time unit of the bus: µs.
constexpr std::int64_t kUsPerMs = 1000;
constexpr double kUsPerS = 1e6;

/// Converts a path to a file URL.
std::string FileUrl(std::string_view path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/-._~";
  std::string url = "file://";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (kPlain.find(c) != std::string_view::npos)
      url += c;
    else
      url.append({'%', kDigits[byte >> 4U], kDigits[byte & 15U]});
  }
  return url;
}

/// Whether a code point is a Unicode noncharacter, which the bus rejects.
bool IsNoncharacter(char32_t character) {
  constexpr char32_t kPlane = 0xFFFF;
  return (character >= 0xFDD0 && character <= 0xFDEF) || (character & kPlane) >= 0xFFFE;
}

/// Makes a text valid for the bus: replaces invalid UTF-8 and noncharacters by question marks.
std::string ForBus(std::string_view text) {
  std::string result;
  for (std::size_t position = 0; position < text.size();) {
    const char32_t character = NextCharacter(text, position);
    AppendCharacter(result,
                    character >= kInvalidByteBase || IsNoncharacter(character) ? U'?' : character);
  }
  return result;
}

const char* StatusText(PlayerStatus status) {
  switch (status) {
    case kPlaying:
      return "Playing";
    case kPaused:
      return "Paused";
    default:
      return "Stopped";
  }
}

std::string TitleOf(const Track& track) {
  return ForBus(track.title.empty() ? NameOfPath(track.path) : std::string_view(track.title));
}

}  // namespace

/// Handlers of bus methods and properties. sd-bus passes the Mpris object as an untyped pointer.
struct MprisCalls {
  static Mpris& Of(void* data) { return *static_cast<Mpris*>(data); }
  static SongPlayer& PlayerOf(void* data) { return Of(data).player_; }
  static int Done(sd_bus_message* call) { return sd_bus_reply_method_return(call, nullptr); }

  static int Raise(sd_bus_message* call, void* /*data*/, sd_bus_error* /*error*/) {
    return Done(call);
  }
  static int Quit(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    // Reply first, because quit_ closes the bus.
    const int result = Done(call);
    Of(data).quit_();
    return result;
  }
  static int Next(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    PlayerOf(data).Next();
    return Done(call);
  }
  static int Previous(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    if (PlayerOf(data).HasPrevious()) PlayerOf(data).Previous();
    return Done(call);
  }
  static int Pause(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    if (PlayerOf(data).Status() == kPlaying) PlayerOf(data).TogglePause();
    return Done(call);
  }
  static int PlayPause(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    if (PlayerOf(data).Status() == kPlaying)
      PlayerOf(data).TogglePause();
    else
      PlayerOf(data).Resume();
    return Done(call);
  }
  static int Stop(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    PlayerOf(data).Stop();
    return Done(call);
  }
  static int Play(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    PlayerOf(data).Resume();
    return Done(call);
  }
  static int Seek(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    std::int64_t offset = 0;
    const int result = sd_bus_message_read(call, "x", &offset);
    if (result < 0) return result;
    SongPlayer& player = PlayerOf(data);
    if (player.Status() != kStopped) {
      // As MPRIS requires, a seek past the end goes to the next track.
      const std::int64_t target = player.Position() + offset / kUsPerMs;
      if (!player.Seek(std::max<std::int64_t>(0, target))) player.Next();
    }
    return Done(call);
  }
  static int SetPosition(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    const char* track = nullptr;
    std::int64_t position = 0;
    const int result = sd_bus_message_read(call, "ox", &track, &position);
    if (result < 0) return result;
    // A position for another track, or outside the track, is outdated and ignored.
    if (Of(data).TrackId() == track && position >= 0) PlayerOf(data).Seek(position / kUsPerMs);
    return Done(call);
  }
  static int OpenUri(sd_bus_message* /*call*/, void* /*data*/, sd_bus_error* error) {
    return sd_bus_error_set(error, SD_BUS_ERROR_NOT_SUPPORTED,
                            "Songs are handed to this player by Tallow only.");
  }

  static int GetTrue(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                     sd_bus_error*) {
    return sd_bus_message_append(reply, "b", 1);
  }
  static int GetFalse(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                      sd_bus_error*) {
    return sd_bus_message_append(reply, "b", 0);
  }
  static int GetIdentity(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                         void*, sd_bus_error*) {
    return sd_bus_message_append(reply, "s", "Tallow");
  }
  static int GetNothing(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                        void*, sd_bus_error*) {
    return sd_bus_message_append(reply, "as", 0);
  }
  static int GetStatus(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                       void* data, sd_bus_error*) {
    return sd_bus_message_append(reply, "s", StatusText(PlayerOf(data).Status()));
  }
  static int GetRate(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                     sd_bus_error*) {
    return sd_bus_message_append(reply, "d", 1.0);
  }
  static int SetRate(sd_bus*, const char*, const char*, const char*, sd_bus_message* value,
                     void* data, sd_bus_error*) {
    // Only rate 1 is supported. As MPRIS requires, rate 0 pauses. Other rates are ignored.
    double rate = 1;
    const int result = sd_bus_message_read(value, "d", &rate);
    if (result >= 0 && rate == 0 && PlayerOf(data).Status() == kPlaying)
      PlayerOf(data).TogglePause();
    return result;
  }
  static int GetVolume(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                       void* data, sd_bus_error*) {
    return sd_bus_message_append(reply, "d",
                                 static_cast<double>(PlayerOf(data).Volume()) / kMaxVolume);
  }
  static int SetVolume(sd_bus*, const char*, const char*, const char*, sd_bus_message* value,
                       void* data, sd_bus_error*) {
    double volume = 0;
    const int result = sd_bus_message_read(value, "d", &volume);
    if (result < 0) return result;
    if (!(volume > 0)) volume = 0;
    PlayerOf(data).SetVolume(
        static_cast<std::int32_t>(std::lround(std::min(volume, 1.0) * kMaxVolume)));
    return 0;
  }
  static int GetPosition(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                         void* data, sd_bus_error*) {
    const std::int64_t position = std::max<std::int64_t>(0, PlayerOf(data).Position());
    return sd_bus_message_append(reply, "x", position * kUsPerMs);
  }
  static int GetHasNext(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                        void* data, sd_bus_error*) {
    return sd_bus_message_append(reply, "b", PlayerOf(data).HasNext() ? 1 : 0);
  }
  static int GetHasPrevious(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                            void* data, sd_bus_error*) {
    return sd_bus_message_append(reply, "b", PlayerOf(data).HasPrevious() ? 1 : 0);
  }
  static int GetCanPlay(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                        void* data, sd_bus_error*) {
    return sd_bus_message_append(reply, "b", PlayerOf(data).CurrentTrack() != nullptr ? 1 : 0);
  }
  static int GetMetadata(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                         void* data, sd_bus_error*) {
    int result = sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "{sv}");
    if (result < 0) return result;
    const Track* const track = PlayerOf(data).CurrentTrack();
    if (track != nullptr) {
      result =
          sd_bus_message_append(reply, "{sv}", "mpris:trackid", "o", Of(data).TrackId().c_str());
      if (result >= 0)
        result =
            sd_bus_message_append(reply, "{sv}", "xesam:url", "s", FileUrl(track->path).c_str());
      if (result >= 0)
        result = sd_bus_message_append(reply, "{sv}", "xesam:title", "s", TitleOf(*track).c_str());
      if (result >= 0 && !track->artist.empty())
        result = sd_bus_message_append(reply, "{sv}", "xesam:artist", "as", 1,
                                       ForBus(track->artist).c_str());
      if (result >= 0 && track->length)
        result = sd_bus_message_append(reply, "{sv}", "mpris:length", "x",
                                       static_cast<std::int64_t>(*track->length * kUsPerS));
      if (result < 0) return result;
    }
    return sd_bus_message_close_container(reply);
  }
};

namespace {

constexpr std::uint64_t kTold = SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE;
constexpr std::uint64_t kFixed = SD_BUS_VTABLE_PROPERTY_CONST;

const sd_bus_vtable kRootTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Raise", "", "", MprisCalls::Raise, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Quit", "", "", MprisCalls::Quit, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("CanQuit", "b", MprisCalls::GetTrue, 0, kFixed),
    SD_BUS_PROPERTY("CanRaise", "b", MprisCalls::GetFalse, 0, kFixed),
    SD_BUS_PROPERTY("HasTrackList", "b", MprisCalls::GetFalse, 0, kFixed),
    SD_BUS_PROPERTY("Identity", "s", MprisCalls::GetIdentity, 0, kFixed),
    SD_BUS_PROPERTY("SupportedUriSchemes", "as", MprisCalls::GetNothing, 0, kFixed),
    SD_BUS_PROPERTY("SupportedMimeTypes", "as", MprisCalls::GetNothing, 0, kFixed),
    SD_BUS_VTABLE_END,
};

const sd_bus_vtable kPlayerTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Next", "", "", MprisCalls::Next, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Previous", "", "", MprisCalls::Previous, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Pause", "", "", MprisCalls::Pause, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("PlayPause", "", "", MprisCalls::PlayPause, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Stop", "", "", MprisCalls::Stop, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Play", "", "", MprisCalls::Play, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Seek", "x", "", MprisCalls::Seek, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("SetPosition", "ox", "", MprisCalls::SetPosition, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("OpenUri", "s", "", MprisCalls::OpenUri, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_SIGNAL("Seeked", "x", 0),
    SD_BUS_PROPERTY("PlaybackStatus", "s", MprisCalls::GetStatus, 0, kTold),
    SD_BUS_WRITABLE_PROPERTY("Rate", "d", MprisCalls::GetRate, MprisCalls::SetRate, 0,
                             SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("MinimumRate", "d", MprisCalls::GetRate, 0, kFixed),
    SD_BUS_PROPERTY("MaximumRate", "d", MprisCalls::GetRate, 0, kFixed),
    SD_BUS_PROPERTY("Metadata", "a{sv}", MprisCalls::GetMetadata, 0, kTold),
    SD_BUS_WRITABLE_PROPERTY("Volume", "d", MprisCalls::GetVolume, MprisCalls::SetVolume, 0,
                             kTold | SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("Position", "x", MprisCalls::GetPosition, 0, 0),
    SD_BUS_PROPERTY("CanGoNext", "b", MprisCalls::GetHasNext, 0, kTold),
    SD_BUS_PROPERTY("CanGoPrevious", "b", MprisCalls::GetHasPrevious, 0, kTold),
    SD_BUS_PROPERTY("CanPlay", "b", MprisCalls::GetCanPlay, 0, kTold),
    SD_BUS_PROPERTY("CanPause", "b", MprisCalls::GetCanPlay, 0, kTold),
    SD_BUS_PROPERTY("CanSeek", "b", MprisCalls::GetCanPlay, 0, kTold),
    SD_BUS_PROPERTY("CanControl", "b", MprisCalls::GetTrue, 0, kFixed),
    SD_BUS_VTABLE_END,
};

}  // namespace

Mpris::Mpris(sd_event* loop, SongPlayer& player, std::function<void()> quit)
    : player_(player), quit_(std::move(quit)) {
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) return;
  bus_.reset(bus);
  if (sd_bus_add_object_vtable(bus, nullptr, kPath, "org.mpris.MediaPlayer2", kRootTable, this) <
          0 ||
      sd_bus_add_object_vtable(bus, nullptr, kPath, kPlayerInterface, kPlayerTable, this) < 0 ||
      sd_bus_attach_event(bus, loop, SD_EVENT_PRIORITY_NORMAL) < 0) {
    bus_.reset();
    return;
  }
  RequestName(kName);
}

void Mpris::RequestName(const std::string& name) {
  sd_bus_slot* slot = nullptr;
  sd_bus_request_name_async(
      bus_.get(), &slot, name.c_str(), 0,
      [](sd_bus_message* reply, void* data, sd_bus_error*) {
        // Another program may own the name. MPRIS defines the alternative name.
        Mpris& self = *static_cast<Mpris*>(data);
        std::uint32_t result = 0;
        const bool owner = sd_bus_message_is_method_error(reply, nullptr) == 0 &&
                           sd_bus_message_read(reply, "u", &result) >= 0 && result == 1;
        if (!owner && !std::exchange(self.is_second_name_, true))
          self.RequestName(kName + (".instance" + std::to_string(getpid())));
        return 0;
      },
      this);
  name_.reset(slot);
}

void Mpris::Leave() {
  if (!bus_) return;
  name_.reset();
  sd_bus_detach_event(bus_.get());
  bus_.reset();
}

std::string Mpris::TrackId() const {
  if (player_.CurrentTrack() == nullptr) return kNoTrack;
  return "/org/tallow/track/" + std::to_string(player_.TrackNumber());
}

Mpris::Shown Mpris::Now() const {
  Shown now{.status = player_.Status(),
            .track = {},
            .volume = player_.Volume(),
            .has_next = player_.HasNext(),
            .has_previous = player_.HasPrevious(),
            .can_play = player_.CurrentTrack() != nullptr};
  if (const Track* const track = player_.CurrentTrack())
    now.track = TrackId() + '\n' + track->path + '\n' + track->title + '\n' + track->artist + '\n' +
                std::to_string(track->length.value_or(-1));
  return now;
}

void Mpris::Changed(PlayerChange change) {
  if (!bus_) return;
  if (change == PlayerChange::kSeeked) {
    sd_bus_emit_signal(bus_.get(), kPath, kPlayerInterface, "Seeked", "x",
                       player_.Position() * kUsPerMs);
    return;
  }
  const Shown now = Now();
  std::vector<const char*> names;
  if (now.status != shown_.status) names.push_back("PlaybackStatus");
  if (now.track != shown_.track) names.push_back("Metadata");
  if (now.volume != shown_.volume) names.push_back("Volume");
  if (now.has_next != shown_.has_next) names.push_back("CanGoNext");
  if (now.has_previous != shown_.has_previous) names.push_back("CanGoPrevious");
  if (now.can_play != shown_.can_play)
    names.insert(names.end(), {"CanPlay", "CanPause", "CanSeek"});
  if (names.empty()) return;
  shown_ = now;
  names.push_back(nullptr);
  sd_bus_emit_properties_changed_strv(bus_.get(), kPath, kPlayerInterface,
                                      const_cast<char**>(names.data()));
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/mpris_interfaces.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "player/substitute/bus_text.h"
#include "player/substitute/mpris.h"
#include "util/path_text.h"

namespace tallow {
namespace {

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

/// The title of a track, or the name of its file when it has none.
std::string TitleOf(const Track& track) {
  return BusText(track.title.empty() ? NameOfPath(track.path) : std::string_view(track.title));
}

/// Appends the properties of a track to an open array of the bus.
/// \returns a negative error number on failure
int AppendMetadata(sd_bus_message* reply, const Track& track, const std::string& id) {
  constexpr double kUsPerS = 1e6;
  int result = sd_bus_message_append(reply, "{sv}", "mpris:trackid", "o", id.c_str());
  if (result >= 0)
    result = sd_bus_message_append(reply, "{sv}", "xesam:url", "s", FileUrl(track.path).c_str());
  if (result >= 0)
    result = sd_bus_message_append(reply, "{sv}", "xesam:title", "s", TitleOf(track).c_str());
  if (result >= 0 && !track.artist.empty())
    result = sd_bus_message_append(reply, "{sv}", "xesam:artist", "as", 1,
                                   BusText(track.artist).c_str());
  if (result >= 0 && track.length)
    result = sd_bus_message_append(reply, "{sv}", "mpris:length", "x",
                                   static_cast<std::int64_t>(*track.length * kUsPerS));
  return result;
}

/// Handlers of bus methods and properties.
struct MprisCalls {
  static Mpris& Of(void* data) { return *static_cast<Mpris*>(data); }
  static SongPlayer& PlayerOf(void* data) { return Of(data).Player(); }
  static int Done(sd_bus_message* call) { return sd_bus_reply_method_return(call, nullptr); }

  static int Raise(sd_bus_message* call, void* /*data*/, sd_bus_error* /*error*/) {
    return Done(call);
  }
  static int Quit(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    // Reply first, because Quit closes the bus.
    const int result = Done(call);
    Of(data).Quit();
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
  static int GetEmptyList(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
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
    if (const Track* const track = PlayerOf(data).CurrentTrack()) {
      result = AppendMetadata(reply, *track, Of(data).TrackId());
      if (result < 0) return result;
    }
    return sd_bus_message_close_container(reply);
  }
};

constexpr std::uint64_t kAnnounced = SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE;
constexpr std::uint64_t kConstant = SD_BUS_VTABLE_PROPERTY_CONST;

}  // namespace

const sd_bus_vtable kMprisRootTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Raise", "", "", MprisCalls::Raise, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Quit", "", "", MprisCalls::Quit, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("CanQuit", "b", MprisCalls::GetTrue, 0, kConstant),
    SD_BUS_PROPERTY("CanRaise", "b", MprisCalls::GetFalse, 0, kConstant),
    SD_BUS_PROPERTY("HasTrackList", "b", MprisCalls::GetFalse, 0, kConstant),
    SD_BUS_PROPERTY("Identity", "s", MprisCalls::GetIdentity, 0, kConstant),
    SD_BUS_PROPERTY("SupportedUriSchemes", "as", MprisCalls::GetEmptyList, 0, kConstant),
    SD_BUS_PROPERTY("SupportedMimeTypes", "as", MprisCalls::GetEmptyList, 0, kConstant),
    SD_BUS_VTABLE_END,
};

const sd_bus_vtable kMprisPlayerTable[] = {
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
    SD_BUS_PROPERTY("PlaybackStatus", "s", MprisCalls::GetStatus, 0, kAnnounced),
    SD_BUS_WRITABLE_PROPERTY("Rate", "d", MprisCalls::GetRate, MprisCalls::SetRate, 0,
                             SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("MinimumRate", "d", MprisCalls::GetRate, 0, kConstant),
    SD_BUS_PROPERTY("MaximumRate", "d", MprisCalls::GetRate, 0, kConstant),
    SD_BUS_PROPERTY("Metadata", "a{sv}", MprisCalls::GetMetadata, 0, kAnnounced),
    SD_BUS_WRITABLE_PROPERTY("Volume", "d", MprisCalls::GetVolume, MprisCalls::SetVolume, 0,
                             kAnnounced | SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("Position", "x", MprisCalls::GetPosition, 0, 0),
    SD_BUS_PROPERTY("CanGoNext", "b", MprisCalls::GetHasNext, 0, kAnnounced),
    SD_BUS_PROPERTY("CanGoPrevious", "b", MprisCalls::GetHasPrevious, 0, kAnnounced),
    SD_BUS_PROPERTY("CanPlay", "b", MprisCalls::GetCanPlay, 0, kAnnounced),
    SD_BUS_PROPERTY("CanPause", "b", MprisCalls::GetCanPlay, 0, kAnnounced),
    SD_BUS_PROPERTY("CanSeek", "b", MprisCalls::GetCanPlay, 0, kAnnounced),
    SD_BUS_PROPERTY("CanControl", "b", MprisCalls::GetTrue, 0, kConstant),
    SD_BUS_VTABLE_END,
};

}  // namespace tallow

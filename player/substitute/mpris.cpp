// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/mpris.h"

#include <unistd.h>
#include <utility>
#include <vector>

#include "player/substitute/mpris_interfaces.h"

namespace tallow {
namespace {

constexpr const char* kPath = "/org/mpris/MediaPlayer2";
constexpr const char* kName = "org.mpris.MediaPlayer2.tallow";
constexpr const char* kNoTrack = "/org/mpris/MediaPlayer2/TrackList/NoTrack";

}  // namespace

Mpris::Mpris(sd_event* loop, const std::string& identifier, SongPlayer& player,
             std::function<void()> quit)
    : player_(player), quit_(std::move(quit)) {
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) return;
  bus_.reset(bus);
  const auto add = [&](const char* interface, const sd_bus_vtable* table) {
    return sd_bus_add_object_vtable(bus, nullptr, kPath, interface, table, this) >= 0;
  };
  if (!add(kMprisRootInterface, kMprisRootTable) ||
      !add(kMprisPlayerInterface, kMprisPlayerTable) ||
      sd_bus_attach_event(bus, loop, SD_EVENT_PRIORITY_NORMAL) < 0) {
    bus_.reset();
    return;
  }
  RequestName(identifier.empty() ? kName : kName + (".instance" + identifier));
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
        if (!owner && !std::exchange(self.uses_second_name_, true))
          self.RequestName(kName + (".instance" + std::to_string(getpid())));
        return 0;
      },
      this);
  name_.reset(slot);
}

void Mpris::Disconnect() {
  if (!bus_) return;
  name_.reset();
  sd_bus_detach_event(bus_.get());
  bus_.reset();
}

std::string Mpris::TrackId() const {
  if (player_.CurrentTrack() == nullptr) return kNoTrack;
  return "/org/tallow/track/" + std::to_string(player_.TrackNumber());
}

Mpris::Properties Mpris::CurrentProperties() const {
  Properties current{.status = player_.Status(),
                     .track = {},
                     .volume = player_.Volume(),
                     .has_next = player_.HasNext(),
                     .has_previous = player_.HasPrevious(),
                     .can_play = player_.CurrentTrack() != nullptr};
  if (const Track* const track = player_.CurrentTrack())
    current.track = TrackId() + '\n' + track->path + '\n' + track->title + '\n' + track->artist +
                    '\n' + std::to_string(track->length.value_or(-1));
  return current;
}

void Mpris::Announce(PlayerChange change) {
  if (!bus_) return;
  if (change == PlayerChange::kSeeked)
    sd_bus_emit_signal(bus_.get(), kPath, kMprisPlayerInterface, "Seeked", "x",
                       player_.Position() * kUsPerMs);
  else
    AnnounceProperties();
}

void Mpris::AnnounceProperties() {
  const Properties current = CurrentProperties();
  std::vector<const char*> names;
  if (current.status != announced_.status) names.push_back("PlaybackStatus");
  if (current.track != announced_.track) names.push_back("Metadata");
  if (current.volume != announced_.volume) names.push_back("Volume");
  if (current.has_next != announced_.has_next) names.push_back("CanGoNext");
  if (current.has_previous != announced_.has_previous) names.push_back("CanGoPrevious");
  if (current.can_play != announced_.can_play)
    names.insert(names.end(), {"CanPlay", "CanPause", "CanSeek"});
  if (names.empty()) return;
  announced_ = current;
  names.push_back(nullptr);
  sd_bus_emit_properties_changed_strv(bus_.get(), kPath, kMprisPlayerInterface,
                                      const_cast<char**>(names.data()));
}

}  // namespace tallow

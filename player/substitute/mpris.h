// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>

#include "player/substitute/song_player.h"

namespace tallow {

/// Exposes a player on the session bus, for media keys and the desktop's player applet. Implements
/// the interface MPRIS 2 (specifications.freedesktop.org/mpris-spec). Without a bus, does nothing.
class Mpris {
 public:
  /// \param player must outlive this object
  /// \param quit   callback that ends the player
  Mpris(sd_event* loop, SongPlayer& player, std::function<void()> quit);
  Mpris(const Mpris&) = delete;
  Mpris& operator=(const Mpris&) = delete;

  /// Disconnects from the bus without waiting.
  void Leave();

  /// Sends the bus signals for a change of the player.
  void Changed(PlayerChange change);

 private:
  friend struct MprisCalls;

  struct DropBus {
    void operator()(sd_bus* bus) const noexcept { sd_bus_close_unref(bus); }
  };
  struct DropSlot {
    void operator()(sd_bus_slot* slot) const noexcept { sd_bus_slot_unref(slot); }
  };

  /// The property values that were last announced on the bus.
  struct Shown {
    PlayerStatus status = kStopped;
    std::string track;  ///< all metadata of the track, as one text
    std::int32_t volume = kMaxVolume;
    bool has_next = false;
    bool has_previous = false;
    bool can_play = false;
    bool operator==(const Shown&) const = default;
  };

  Shown Now() const;
  void RequestName(const std::string& name);
  std::string TrackId() const;

  SongPlayer& player_;
  std::function<void()> quit_;
  std::unique_ptr<sd_bus, DropBus> bus_;
  std::unique_ptr<sd_bus_slot, DropSlot> name_;
  bool is_second_name_ = false;
  Shown shown_;
};

}  // namespace tallow

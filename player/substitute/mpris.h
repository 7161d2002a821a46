// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>

#include "player/substitute/song_player.h"

namespace tallow {

/// Exposes a player on the session bus, for media keys and the desktop's player applet, see
/// MPRIS 2. Without a bus, does nothing.
class Mpris {
 public:
  /// \param identifier of the application folder, part of the name on the bus; may be empty
  /// \param player     must outlive this object
  /// \param quit       callback that ends the player
  Mpris(sd_event* loop, const std::string& identifier, SongPlayer& player,
        std::function<void()> quit);
  Mpris(const Mpris&) = delete;
  Mpris& operator=(const Mpris&) = delete;

  /// Disconnects from the bus without waiting.
  void Disconnect();

  /// Sends the bus signals for a change of the player.
  void Announce(PlayerChange change);

  SongPlayer& Player() noexcept { return player_; }
  /// Ends the player.
  void Quit() { quit_(); }
  /// The object path of the current track.
  std::string TrackId() const;

 private:
  struct DropBus {
    void operator()(sd_bus* bus) const noexcept { sd_bus_close_unref(bus); }
  };
  struct DropSlot {
    void operator()(sd_bus_slot* slot) const noexcept { sd_bus_slot_unref(slot); }
  };

  /// The values of the properties that are announced on the bus when they change.
  struct Properties {
    PlayerStatus status = kStopped;
    std::string track;  ///< all metadata of the track, as one text
    std::int32_t volume = kMaxVolume;
    bool has_next = false;
    bool has_previous = false;
    bool can_play = false;
  };

  Properties CurrentProperties() const;
  void AnnounceProperties();
  void RequestName(const std::string& name);

  SongPlayer& player_;
  std::function<void()> quit_;
  std::unique_ptr<sd_bus, DropBus> bus_;
  std::unique_ptr<sd_bus_slot, DropSlot> name_;
  bool uses_second_name_ = false;
  Properties announced_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <utility>

#include "app/playing/handed_over_songs.h"
#include "player/playfile.h"

namespace tallow {

/// Records what a hand-over gives to the player, and passes its callbacks on.
class HandOverRecord : public HandOffPanel {
 public:
  /// \param to, panel have to outlive this object
  /// \param found called when the player was found
  HandOverRecord(HandedOverSongs& to, const SongsOrigin& origin, HandOffPanel& panel,
                 std::function<void()> found)
      : to_(to), origin_(origin), panel_(panel), found_(std::move(found)) {}

  void PlayerFound() override {
    found_();
    panel_.PlayerFound();
  }
  void FirstSongIsGone(const std::string& path) override { panel_.FirstSongIsGone(path); }
  void ListCleared() override {
    to_.Clear();
    panel_.ListCleared();
  }
  void SongsAdded(std::span<const HandedOverSong> songs, std::uint64_t before) override {
    to_.Add(songs, origin_);
    panel_.SongsAdded(songs, before);
  }
  void TrackStarted(std::int32_t length) override { panel_.TrackStarted(length); }
  void HandedOver() override { panel_.HandedOver(); }
  void Cancelled(std::size_t songs, std::size_t of) override { panel_.Cancelled(songs, of); }
  void DiskTimedOut(std::size_t songs, const std::string& first) override {
    panel_.DiskTimedOut(songs, first);
  }

 private:
  HandedOverSongs& to_;
  SongsOrigin origin_;
  HandOffPanel& panel_;
  std::function<void()> found_;
};

}  // namespace tallow

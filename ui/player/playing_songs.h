// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include <QString>

#include "app/long_work.h"
#include "player/playfile.h"
#include "ui/player/player_work.h"
#include "util/message.h"

namespace tallow {

class SystemPlayerModel;

/// Plays the songs in Tallow::SongsToPlay: starts the player if there is none, hands them over, and
/// reports what was left out.
class PlayingSongs : private HandOffPanel {
 public:
  /// A message that the user should read and that does not interrupt playing.
  using ShowStatus = std::function<void(const QString&)>;

  /// \param model has to outlive this object
  /// \param begin shows the progress; may be empty
  /// \param view  is told of the player and the first track; null for none
  PlayingSongs(SystemPlayerModel& model, ShowMessage show, BeginLongWork begin, ShowStatus status,
               HandOffPanel* view = nullptr);

  void Play();

 private:
  void PlayerFound() override;
  void FirstSongIsGone(const std::string& path) override;
  void TrackStarted(std::int32_t length) override;
  void HandedOver() override;
  void Cancelled(std::size_t songs, std::size_t of) override;
  void DiskTimedOut(std::size_t songs, const std::string& first) override;

  SystemPlayerModel& model_;
  ShowMessage show_;
  PlayerWork work_;
  ShowStatus status_;
  HandOffPanel* view_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include <QObject>
#include <QPointer>

#include "app/playing/player_model.h"

namespace tallow {

class Folder;
class FrameMessages;
class FramePlayer;
class JukeboxArea;
class Tallow;
class frmMain;

/// The commands of the frame window that play songs of a list, see frmMain.
struct PlayListCommands {
  using Songs = std::vector<std::int32_t>;

  std::function<void(Songs songs, SongsOrigin origin)> play;
  std::function<void(Songs songs, std::size_t chosen, SongsOrigin origin)> play_from_here;
  std::function<void(Songs songs, SongsOrigin origin)> play_next;
  std::function<void(Songs songs, SongsOrigin origin)> add_to_queue;
};

/// The commands of a player, which has to outlive them.
PlayListCommands CommandsOf(FramePlayer& player);

/// Connects the lists of the jukebox windows with the player: the lists hand songs to it, and mark
/// what it plays.
class PlayingLists : public QObject {
  Q_OBJECT

 public:
  /// \param tallow, jukeboxes, messages, player have to outlive this object
  PlayingLists(Tallow& tallow, JukeboxArea& jukeboxes, FrameMessages& messages, PlayerModel& player,
               PlayListCommands commands);
  ~PlayingLists() override;

  /// Connects a new jukebox window.
  void Follow(frmMain& window);
  /// Call after the preferences have changed: shows or hides the marks of all lists.
  void FollowPreferences();

  /// Adds songs to the end of the queue, and says so in the status bar.
  void AddToQueue(std::vector<std::int32_t> songs, SongsOrigin origin);

  /// Selects the song that plays, in the folder that it was handed over from or, if it is not there
  /// any more, in "All Songs". The status bar says why it cannot be shown.
  void ShowPlayingSong();

 private:
  using Add = std::function<void(PlayListCommands::Songs songs, SongsOrigin origin)>;
  void AddBy(const Add& add, std::vector<std::int32_t> songs, SongsOrigin origin);

  /// A song of a folder.
  struct Place {
    frmMain* window = nullptr;  ///< null for none
    const Folder* folder = nullptr;
    int row = -1;  ///< index of the song in the folder, from 0
  };
  Place FindPlace(std::int32_t song, SongsOrigin origin) const;
  Place PlaceIn(frmMain* window, const Folder* folder, std::int32_t song) const;
  Place PlaceInAllSongs(frmMain* window, std::int32_t song) const;

  Tallow& tallow_;
  JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
  PlayerModel& player_;
  PlayListCommands commands_;
  std::vector<QPointer<frmMain>> windows_;  ///< null where a window was closed
};

}  // namespace tallow

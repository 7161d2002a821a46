// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <QObject>

#include "app/play_commands.h"
#include "app/playing/playing_preferences.h"
#include "app/playing/system_player_model.h"
#include "player/winamp_control.h"
#include "ui/frame/frame_windows_base.h"

class QTimer;

namespace tallow {

class DriveSearches;
class PanelWindow;

/// The frame window's commands for the player: they hand songs to it, or control it directly. Owns
/// the model of the player, and keeps it up to date while a player runs.
///
/// Opens the player panel when songs are to be played, unless the user has the player bar.
class FramePlayer : public QObject, private FrameWindows<PlayWindows> {
  Q_OBJECT

 public:
  /// The parameters have to outlive this object.
  FramePlayer(Tallow& tallow, PlayerLink& link, DriveSearches& searches, JukeboxArea& jukeboxes,
              PanelWindow& panel, FrameMessages& messages, BusyFrame& busy);
  ~FramePlayer() override;

  /// What plays. The player bar, the queue and the lists show it.
  SystemPlayerModel& Model() noexcept { return model_; }

  /// See PlayCommands.
  bool CheckPlayer();
  /// Plays only these songs.
  void Play(std::vector<std::int32_t> songs, const SongsOrigin& origin = {});
  /// Plays songs from one of them on.
  /// \param songs  of a whole folder, in the order of its list
  /// \param chosen index of the song that plays first
  void PlayFromHere(std::vector<std::int32_t> songs, std::size_t chosen, const SongsOrigin& origin);
  /// Adds songs behind the current one, and behind earlier ones that were added so. Plays them if
  /// the player has nothing to play.
  void PlayNext(std::vector<std::int32_t> songs, const SongsOrigin& origin);
  /// Adds songs at the end. Plays them if the player has nothing to play.
  void AddToQueue(std::vector<std::int32_t> songs, const SongsOrigin& origin);
  /// Plays, pauses or resumes. Without a player that has songs, plays the selected songs.
  void PlayOrPause();

  /// Sends a command to the player.
  /// \param command see PlayerCommand
  void Send(std::int32_t command);
  /// Whether there is a player, running already or found now.
  bool FindsPlayer();
  /// Sets the function that plays the selected songs of the active jukebox.
  void OnPlaySelection(std::function<void()> play) { play_selection_ = std::move(play); }

  /// Opens the player panel, or shows the one that is open.
  void ShowPanel();
  /// The preferences have changed.
  void FollowPreferences();
  /// The start has ended: shows the volume of the player, takes over a player that runs already, or
  /// restores the queue of the last run, if the user wants that.
  void RestoreQueue();
  /// The program ends: stores the queue, and closes the player that Tallow plays with.
  void End();

 private:
  void ShowStatus(const std::string& text) override;
  void EnableFrame(bool enabled) override;
  void PlayOnPanel() override;
  bool Start(const std::string& program) override;

  void PlaySongs(std::vector<std::int32_t> songs, const PlayOrder& order);
  void PlayWithoutPanel();
  void OpenPanel();
  void PanelCloses();
  /// Runs the player search and shows its progress in the splash window.
  void SearchForPlayer();
  void Update();

  Tallow& tallow_;
  DriveSearches& searches_;
  PanelWindow& panel_;
  PlayingPreferences preferences_;
  WinAMP_Control player_;
  SystemPlayerModel model_;
  PlayCommands play_commands_;
  std::function<void()> play_selection_;
  QTimer* timer_;
  bool is_handing_over_ = false;
  bool is_ending_ = false;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/playing/play_order.h"
#include "app/window_interfaces.h"

namespace tallow {

class Folder;
class Tallow;
class clsMain;

/// The windows that the play commands use.
class PlayWindows : public JukeboxWindows {
 public:
  /// Shows a text in the frame window's status bar; the empty text clears it.
  virtual void ShowStatus(const std::string& text) = 0;
  /// A disabled frame window accepts neither clicks nor keys.
  virtual void EnableFrame(bool enabled) = 0;
  /// Plays the songs in SongsToPlay as Tallow::play_order says: on the player panel, which is
  /// opened if it is not there, or without it while the player bar is on.
  virtual void PlayOnPanel() = 0;
  /// Starts a program in a normal window.
  virtual bool Start(const std::string& program) = 0;
};

/// Commands that hand the songs of a jukebox to the player.
class PlayCommands {
 public:
  /// \param tallow, windows must outlive the object
  PlayCommands(Tallow& tallow, PlayWindows& windows) : tallow_(tallow), windows_(windows) {}

  /// Whether a player is known. If the player search was cancelled at start-up, runs it now; if no
  /// player is found, offers to install it.
  ///
  /// \param search runs the player search and shows its progress
  bool CheckPlayer(const std::function<void()>& search);

  /// Plays songs in the given order; does nothing when there are none. Songs that are away are
  /// checked again, and left out when they are still away. In place of the song to play first, the
  /// next one plays then.
  /// \param songs  record numbers
  /// \param order  where they go, and which one plays first
  /// \param search see CheckPlayer
  void Play(std::vector<std::int32_t> songs, const PlayOrder& order,
            const std::function<void()>& search);
  /// Plays the first song, and then the others.
  void Play(std::vector<std::int32_t> songs, const std::function<void()>& search) {
    Play(std::move(songs), {}, search);
  }

 private:
  void SearchForPlayer(const std::function<void()>& search);
  void OfferInstaller();
  /// \param first_song index of the song to play first; becomes that in the remaining songs, which
  ///                   are none when neither it nor a later one is there
  std::string LeaveOutAway(std::vector<std::int32_t>& songs, std::size_t& first_song);
  bool CheckSongs(const std::vector<std::int32_t>& songs, std::vector<char>& is_there);

  Tallow& tallow_;
  PlayWindows& windows_;
};

/// The player's installer, in the application folder.
inline constexpr const char* kPlayerInstaller = "winamp265_lite.exe";

/// The record numbers of all songs of a folder, in list order.
std::vector<std::int32_t> SongsOf(const Folder& folder);

/// The record numbers of the songs that the folder's list shows.
std::vector<std::int32_t> ShownSongsOf(const Folder& folder, const clsMain& library);

/// The record numbers of some entries of a folder.
/// \param rows positions in the list, from 0, in list order; positions past the end are ignored
std::vector<std::int32_t> SongsOf(const Folder& folder, const std::vector<int>& rows);

}  // namespace tallow

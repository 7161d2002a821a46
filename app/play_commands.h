// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/long_work.h"
#include "util/message.h"

namespace tallow {

class Folder;
class Tallow;
class clsMain;

/// What the play commands need of windows.
class PlayWindows {
 public:
  virtual ~PlayWindows() = default;
  /// Shows a message box.
  virtual MessageAnswer Show(const Message& message) = 0;
  /// Says in the frame window's status bar what is going on; the empty text ends it.
  virtual void ShowStatus(const std::string& text) = 0;
  /// A frame window that is disabled takes neither clicks nor keys.
  virtual void EnableFrame(bool enabled) = 0;
  /// Shows the player panel and hands it the songs in SongsToPlay: a panel that has to be opened for
  /// this plays them as it opens.
  virtual void PlayOnPanel() = 0;
  /// Begins work that may take long, see LongWork; null where nobody is to see it.
  virtual std::unique_ptr<LongWork> BeginWork(std::string_view /*text*/) { return nullptr; }
  /// Starts a program in a normal window.
  virtual bool Start(const std::string& program) = 0;
};

/// The way from a jukebox to the player.
class PlayCommands {
 public:
  /// \param tallow, windows have to outlive the object
  PlayCommands(Tallow& tallow, PlayWindows& windows) : tallow_(tallow), windows_(windows) {}

  /// Whether a player is known. Makes up for a search that was cancelled at start-up; where none is
  /// known then, offers to install one.
  bool CheckPlayer();

  /// Plays songs in their order; nothing for no songs. Those that are away are looked at again, and left
  /// out where that shows nothing new.
  /// \param songs record numbers
  void Play(std::vector<std::int32_t> songs);

 private:
  void SearchForPlayer();
  void OfferInstaller();
  std::string LeaveOutAway(std::vector<std::int32_t>& songs);
  bool LookForSongs(const std::vector<std::int32_t>& songs, std::vector<char>& is_there);

  Tallow& tallow_;
  PlayWindows& windows_;
};

/// The player's installer, in the application folder.
inline constexpr const char* kPlayerInstaller = "winamp265_lite.exe";

/// The record numbers of all songs of a folder, in list order.
std::vector<std::int32_t> SongsOf(const Folder& folder);

/// Those of the songs that its list shows.
std::vector<std::int32_t> ShownSongsOf(const Folder& folder, const clsMain& library);

/// The record numbers of some entries of a folder.
/// \param rows places in the list, from 0, in list order; others than there are entries are passed over
std::vector<std::int32_t> SongsOf(const Folder& folder, const std::vector<int>& rows);

}  // namespace tallow

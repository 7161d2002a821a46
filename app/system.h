// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/open_jukeboxes.h"
#include "app/runtime_file.h"
#include "app/search/drive_list.h"
#include "app/search/player_search.h"
#include "app/search/search_progress.h"
#include "app/start/start_up_jukeboxes.h"
#include "app/start/start_up_library.h"
#include "app/start/start_up_notices.h"
#include "app/start/start_up_player.h"
#include "app/start/start_up_settings.h"
#include "app/start/start_up_wait.h"
#include "app/tallow.h"
#include "app/window_interfaces.h"
#include "jukebox/song_links.h"

namespace tallow {

class Folder;
class Jukebox;

/// A jukebox, and the place of its window.
struct PlacedJukebox {
  Jukebox* jukebox;
  WindowPlace place;
};

/// The windows that start-up uses. Messages that no user can answer are answered like those that
/// are closed without a button.
class StartUpWindows : public OpeningWindows {
 public:
  /// Loads the splash window without its OK button and shows it, not modal.
  virtual void ShowSplash() = 0;
  /// The splash window; loaded by this call if it is not loaded.
  virtual SearchProgress& Splash() = 0;
  /// The splash window; null when it is not loaded.
  virtual SearchProgress* LoadedSplash() = 0;
  /// Shows or hides the splash window's Cancel button and repaints the window.
  virtual void ShowCancelButton(bool visible) = 0;
  /// Shows or hides the splash window's found-count line.
  virtual void ShowFoundLine(bool visible) = 0;
  virtual void UnloadSplash() = 0;

  /// Shows a message that the user has to know, usually why the program ends; only an OK button.
  void ShowError(const std::string& text) { Show({.text = text, .icon = MessageIcon::kCritical}); }
  /// Asks whether to continue, with Yes and No buttons.
  bool Ask(const std::string& text);
  /// Asks the user to choose one of several actions.
  ///
  /// \param choices the labels of the buttons
  /// \returns index of the choice, from 0; no value when the user dismisses the question, or no
  ///          user can answer
  virtual std::optional<std::size_t> Choose(const std::string& text,
                                            const std::vector<std::string>& choices) = 0;
  /// Notice of the result of the start; a click on the notice lists the files that were left out
  /// and the songs that are away. The last line holds the counts; the other lines are problems.
  virtual void NoticeScan(const std::vector<std::string>& lines) = 0;
  /// Discards a window that was made but not shown.
  virtual void DiscardJukebox(Jukebox& jukebox) = 0;
  /// Shows a folder in the window of a jukebox that is shown, like a click on it.
  virtual void SelectFolder(Jukebox& jukebox, Folder& folder) = 0;
  /// Moves the windows of jukeboxes that are shown to their places.
  /// \param front the jukebox whose window becomes the active one
  virtual void PlaceJukeboxes(const std::vector<PlacedJukebox>& placed, Jukebox& front) = 0;
  /// Opens a text file in the system's text editor; a failure is ignored.
  virtual void OpenInTextEditor(const std::string& path) = 0;
  /// Shows the tip window, modal; the tip window itself decides whether to stay open.
  virtual void ShowTip() = 0;
};

/// The program's start-up: runs its steps in their order.
class System {
 public:
  /// \param nearby finds the player without searching a disk
  System(Tallow& tallow, const DriveList& drives, StartUpWindows& windows,
         std::function<std::string()> nearby = FindPlayerNearby);
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  /// Runs the whole start-up: folders, settings, player, library, first jukebox.
  ///
  /// An error that ends the start-up is reported with the file, folder or drive that it concerns
  /// and with what to do. Where the program can continue by rebuilding damaged data, it offers to
  /// do so, and keeps the damaged file with ".bak" appended to its name.
  /// \returns false when the program is to exit; no window is open then
  bool Main(const RuntimeFile& runtime_file);

 private:
  bool CheckRuntimeFile(const RuntimeFile& file);
  void CreateDataFolders();
  /// The steps of a start between the splash window and the tip.
  bool LoadAndOpen();
  void Notice(const ScanReport& report);

  Tallow& tallow_;
  StartUpWindows& windows_;
  StartUpNotices notices_;
  StartUpWait wait_;
  StartUpSettings settings_;
  StartUpPlayer player_;
  StartUpLibrary library_;
  StartUpJukeboxes jukeboxes_;
};

}  // namespace tallow

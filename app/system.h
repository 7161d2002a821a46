// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/runtime_file.h"
#include "app/search/drive_list.h"
#include "app/search/player_search.h"
#include "app/search/search_progress.h"
#include "app/tallow.h"
#include "jukebox/sorting.h"
#include "library/folder_scan.h"
#include "library/library_check.h"
#include "util/file_system.h"

namespace tallow {

class Jukebox;

/// What start-up needs of windows. The real ones are Qt's; tests have theirs.
class StartUpWindows {
 public:
  virtual ~StartUpWindows() = default;

  /// Loads the splash window without its OK button and shows it, not modal.
  virtual void ShowSplash() = 0;
  /// The splash window, loaded for this when it is not.
  virtual SearchProgress& Splash() = 0;
  /// The splash window; null when it is not loaded.
  virtual SearchProgress* LoadedSplash() = 0;
  /// Shows or hides the splash window's Cancel button and repaints the window.
  virtual void ShowCancelButton(bool visible) = 0;
  /// Shows or hides the splash window's found-count line.
  virtual void ShowFoundLine(bool visible) = 0;
  virtual void UnloadSplash() = 0;

  /// Makes the first document of the frame window, not shown yet.
  virtual Jukebox& NewJukebox() = 0;
  virtual void ShowJukebox(Jukebox& jukebox) = 0;
  /// Loads a jukebox from its file; a window that has a control for it lets that do it. See Jukebox::Load.
  virtual bool LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library,
                           const AskWhichSongs& ask);
  /// The open jukeboxes, in the order they were opened.
  virtual std::span<Jukebox* const> OpenJukeboxes() = 0;

  /// Tells something that the user has to know, mostly the end of the program; only an OK button.
  virtual void Tell(const std::string& text) = 0;
  /// Asks whether to go on, with Yes and No buttons.
  virtual bool Ask(const std::string& text) = 0;
  /// Asks with Yes and No buttons; no value when the user leaves the question, or nobody can answer.
  virtual std::optional<bool> AskUnlessLeft(const std::string& text) = 0;
  /// Asks which of several things to do.
  ///
  /// \param choices what is written on the buttons
  /// \returns the place of the choice, from 0; no value when the user leaves the question, or nobody can
  ///          answer
  virtual std::optional<std::size_t> Choose(const std::string& text,
                                            const std::vector<std::string>& choices) = 0;
  /// Says something that does not stop anything, where it does not get in the way.
  virtual void Notice(const std::vector<std::string>& lines) = 0;
  /// Notice of what the start came to; a click on it shows which files were left out, and what is away.
  /// The last line is the counts, which are no problem.
  virtual void NoticeScan(const std::vector<std::string>& lines) = 0;
  /// Opens a text file in the system's text editor; a failure is ignored.
  virtual void OpenInTextEditor(const std::string& path) = 0;
  /// Shows the tip window, modal; it decides itself whether it stays.
  virtual void ShowTip() = 0;
};

/// The program's start-up.
class System {
 public:
  /// \param nearby finds the player where no disk has to be searched
  System(Tallow& tallow, const DriveList& drives, StartUpWindows& windows,
         std::function<std::string()> nearby = FindPlayerNearby);

  /// Runs the whole start-up: folders, settings, player, library, first jukebox.
  ///
  /// Whatever ends it is told, with the thing it is about and what to do. Where the program can go
  /// on by rebuilding what is damaged, it offers to, keeping the damaged file with ".bak" behind
  /// its name.
  /// \returns false when the program is to end; no window is open then
  bool Main(const RuntimeFile& runtime_file);

 private:
  /// Adds what the library has to say to the notices.
  void TakeProblems();
  bool CheckRuntimeFile(const RuntimeFile& file);
  void CreateDataFolders();
  bool LoadSettings();
  void UseOwnFolders();
  bool RebuildSettings(const std::string& problem);
  /// Makes the settings of a first start.
  void MakeSettings();
  void MendCutSettings();
  void KeepSettings();
  void FindPlayer();
  bool SearchForPlayer();
  bool LoadOrBuildLibrary();
  bool CheckLibraryFile();
  bool ChooseLibrary(const LibraryCheck& check);
  void UseCount(std::int32_t songs);
  bool RebuildLibrary(const std::string& problem, bool file_exists);
  void LoadLibrary();
  void SearchUnreadFolders();
  void SearchForSongs();
  void OpenFirstJukebox();
  /// Whether a path lies on a drive that was given up because it does not answer.
  bool IsUnanswered(const std::string& path) const;
  bool OpenLastJukebox(Jukebox& jukebox);
  /// \param last gets the one that was recovered last, if any
  /// \returns the files of those that were recovered
  std::vector<std::string> RecoverUnsaved(Jukebox*& last);
  void DropVanishedPlayer();
  FilingProgress WhileFiling();
  void EndFiling();
  bool ProcessEvents(std::string_view folder);
  bool WaitsFor(std::string_view root);
  FileLook LookAt(const std::string& path);
  void Notice(const ScanReport& report);

  Tallow& tallow_;
  const DriveList& drives_;
  StartUpWindows& windows_;
  std::function<std::string()> nearby_;
  bool settings_are_new_ = false;
  bool settings_are_kept_ = false;  ///< as they were before this start
  std::string kept_as_;             ///< says where, a sentence with a blank before it
  bool is_starting_ = true;         ///< notices wait for the windows
  bool was_cancelled_ = false;      ///< the search for songs
  std::string slow_drive_;          ///< is said to be waited for
  bool shows_filing_ = false;       ///< it takes a while
  bool filing_was_cancelled_ = false;
  std::vector<std::string> notices_;  ///< to be said once the windows are there
  bool rebuild_ = false;  ///< the user wants what the library file still shows, and a new search
  bool is_set_aside_ = false;    ///< the damaged library is kept under another name already
  bool trusts_library_ = false;  ///< the user wants the library file as it is
};

}  // namespace tallow

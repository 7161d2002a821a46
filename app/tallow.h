// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "app/cls_ini.h"
#include "app/library_details.h"
#include "app/open_jukeboxes.h"
#include "app/playing/handed_over_songs.h"
#include "app/playing/play_counts.h"
#include "app/playing/play_order.h"
#include "app/preferences.h"
#include "jukebox/jukebox_clipboard.h"
#include "jukebox/unsaved_jukeboxes.h"
#include "library/cls_main.h"
#include "library/tag_cache.h"

namespace tallow {

/// The program's shared state. Created once in main and passed on; there is no other shared state.
class Tallow {
 public:
  /// \param application_folder_ the program's folder, ending in a separator
  explicit Tallow(std::string application_folder_);
  Tallow(const Tallow&) = delete;
  Tallow& operator=(const Tallow&) = delete;

  /// The folder that every data path begins with; ends in a separator.
  const std::string application_folder;
  /// The settings file.
  const std::string settings_path;
  clsINI settings;
  /// Loaded by the start.
  Preferences preferences;

 private:
  /// Adapter that gives the library access to the settings.
  class SettingsOfLibrary : public LibrarySettings {
   public:
    explicit SettingsOfLibrary(Tallow& tallow) : tallow_(tallow) {}
    std::string LocOfGroupingDir() const override;
    std::string SystemFolder() const override;
    std::string FileContainingTargetDirectories() const override;
    std::int32_t NumerOfRecordsInTheMain() const override;
    void NumerOfRecordsInTheMain(std::int32_t rows) override;
    void SaveSettings() override;

   private:
    Tallow& tallow_;
  };
  SettingsOfLibrary library_settings_{*this};

 public:
  clsMain library;

  /// What the files of the library's songs say of them.
  LibraryDetails details;

  /// How often the songs were played.
  PlayCounts play_counts;

  /// Cache of tags that the searches have read; kept until the songs are filed.
  TagCache found_tags;

  /// The unsaved changes of the open jukeboxes.
  UnsavedJukeboxes unsaved;
  /// The jukeboxes that the next start opens with the switch `reopens_jukeboxes`.
  OpenJukeboxes open_jukeboxes;
  /// The songs cut or copied in any jukebox window.
  JukeboxClipboard clipboard;

  /// Full path of the player's executable, set by start-up; empty when no player was found.
  std::string player_path;
  /// The user cancelled the player search at start-up: the next play command runs it again.
  bool player_search_is_pending = false;
  /// The user cancelled filing: the next search for new songs completes it.
  bool filing_is_pending = false;
  /// Set by the Cancel button; the search that it stops clears it. A click after the last drive
  /// leaves it set, and so stops the next search at its first drive.
  bool SearchCancelled = false;
  /// The system has asked the program to end (EndSignals): running work stops where it is.
  bool is_shutting_down = false;
  /// Record numbers of the songs to hand to the player, in play order.
  std::vector<std::int32_t> SongsToPlay;
  /// How they are played.
  PlayOrder play_order;
  /// What the player has.
  HandedOverSongs handed_over;
  /// How many times a folder was shown, in any jukebox.
  std::int64_t folder_changes = 0;
  /// Drives were given on the command line, and are the only places that are searched.
  bool has_given_drives = false;
  /// Root of the place that a search for songs walks now; empty for none.
  std::string place_being_searched;
  /// Set at the end of start-up: the file that the help key opens.
  std::string help_file;

  /// Writes the settings to their file. A failure is added to the problems, but not the same
  /// failure twice in a row.
  void SaveSettings();

  /// Adds a sentence that the windows show without blocking, as soon as the step that adds it ends.
  void AddProblem(std::string problem) { problems_.push_back(std::move(problem)); }
  /// Returns, and clears, the problems that were added, and those of the preferences. The caller of
  /// a function that may save the settings or change the preferences must show them.
  std::vector<std::string> TakeProblems();

 private:
  std::string settings_problem_;  ///< the failure added last
  std::vector<std::string> problems_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "app/cls_ini.h"
#include "app/search/search_progress.h"
#include "jukebox/jukebox_clipboard.h"
#include "jukebox/unsaved_jukeboxes.h"
#include "library/cls_main.h"
#include "library/tag_cache.h"

namespace tallow {

/// What the whole program shares. Made once in main and passed on; there is no other shared state.
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

 private:
  /// The settings as the library sees them.
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
  /// Runs the song search over all fixed disks; set by whoever knows the drives. Takes where to report, null
  /// for the splash window, and returns false when it was cancelled.
  std::function<bool(SearchProgress*)> search_all_drives;
  /// Runs the player search in a splash window of its own; set by whoever knows the drives.
  std::function<void()> search_for_player;

  /// Tags that the searches have read along the way, until the songs are filed.
  TagCache found_tags;

  /// What is not saved of the open jukeboxes.
  UnsavedJukeboxes unsaved;
  /// What was cut or copied in any jukebox window.
  JukeboxClipboard clipboard;

  /// Full path of the player's executable after start-up; empty when there is none.
  std::string player_path;
  /// The user has cancelled the player search at start-up: it is made up for when a song is to be
  /// played.
  bool player_search_is_pending = false;
  /// The user has cancelled a filing: bringing in new songs makes up for it.
  bool filing_is_pending = false;
  /// Set by the Cancel button, cleared by the search that stops because of it. A click that comes
  /// after the last drive stays set and stops the next search at its first drive.
  bool SearchCancelled = false;
  /// The program is being ended from outside: what is under way stops where it is.
  bool is_ending = false;
  /// Record numbers of the songs to hand to the player, in play order.
  std::vector<std::int32_t> SongsToPlay;
  /// How often a folder was shown, in any jukebox.
  std::int64_t folder_changes = 0;
  /// Set at the end of start-up: what the help key opens.
  std::string help_file;

  /// Tells something that does not stop anything, a sentence; set by whoever has windows. May be empty.
  std::function<void(const std::string&)> tell_problem;

  /// Writes the settings to their file. A failure is told, the same one once.
  void SaveSettings();

 private:
  std::string settings_problem_;  ///< that was told last
};

}  // namespace tallow

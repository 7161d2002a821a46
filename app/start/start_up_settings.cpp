// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/start_up_settings.h"

#include <utility>

#include "app/data_paths.h"
#include "app/start/start_up_notices.h"
#include "app/start/start_up_windows.h"
#include "app/system_texts.h"
#include "app/tallow.h"
#include "library/library_check.h"
#include "library/library_file.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {

namespace {

/// What the user can do when the settings no longer name the last jukebox.
constexpr std::string_view kOpenSaved = " Saved jukeboxes are opened with Open in the File menu.";

}  // namespace

bool StartUpSettings::Load() {
  LoadPreferences();
  const std::string& path = tallow_.settings_path;
  if (IsGone(path)) {
    Make();
    return true;
  }
  try {
    tallow_.settings.GetandLoadIniInfo(path);
  } catch (const SettingsError& error) {
    return Rebuild(error.what());
  } catch (const FileError& error) {
    const std::string folder(FolderOfPath(path));
    if (StateOfFolder(folder) == FolderState::kUnreadable)
      throw FileError(folder, "the folder cannot be read (" + error.reason() +
                                  "). Make it readable and start Tallow again.");
    return Rebuild(std::string(error.what()) +
                   ". Answer No, make the file readable and start Tallow again, if you can.");
  }
  if (!tallow_.settings.IsComplete()) CompleteTruncated();
  ReplaceMissingFolders();
  return true;
}

void StartUpSettings::LoadPreferences() {
  Preferences& preferences = tallow_.preferences;
  preferences.Load(PreferencesPath(tallow_.application_folder));
  // If the file is lost or damaged, the library itself knows whether it has songs to set aside.
  if (preferences.IsStyleChosen()) tallow_.library.UseSwitches(preferences.switches());
}

void StartUpSettings::ReplaceMissingFolders() {
  // The program was moved with its data: the settings still contain the old folders.
  const std::string own = GroupingFolder(tallow_.application_folder);
  const std::string folder = tallow_.settings.LocOfGroupingDir();
  if (IsGone(folder) && (FileExists(own + std::string(kLibraryFileName)) ||
                         tallow_.settings.NumerOfRecordsInTheMain() == 0)) {
    BackUp();
    ResetDataFolders();
    notices_.Add("The folder " + folder + " named in the settings does not exist, so Tallow uses " +
                 own + "." + backup_notice_);
  }
  const std::string list_folder(FolderOfPath(tallow_.settings.FileContainingTargetDirectories()));
  if (IsGone(list_folder)) {
    BackUp();
    tallow_.settings.FileContainingTargetDirectories(FolderListPath(tallow_.application_folder));
    tallow_.SaveSettings();
    notices_.Add("The folder " + list_folder +
                 " named in the settings does not exist, so Tallow uses " +
                 SystemFolder(tallow_.application_folder) + "." + backup_notice_);
  }
}

void StartUpSettings::Make() {
  are_new_ = true;
  try {
    // Reports the reason when the settings cannot be written.
    if (!tallow_.settings.CreateNewIniFile(tallow_.settings_path, tallow_.application_folder))
      tallow_.SaveSettings();
  } catch (const TypeMismatchError&) {
    // The library file contains no usable number; StartUpLibrary reports what is wrong with it.
  } catch (const OverflowError&) {
  } catch (const FileError&) {
    // The library file cannot be read; StartUpLibrary reports it, too.
  }
}

void StartUpSettings::CompleteTruncated() {
  const std::string& path = tallow_.settings_path;
  BackUp();
  tallow_.settings.CompleteSettings(path, tallow_.application_folder);
  tallow_.SaveSettings();
  notices_.Add(path + " is truncated. Missing settings were set to their defaults." +
               backup_notice_ +
               std::string(tallow_.settings.LocOfLastSavedJukeBox().empty() ? kOpenSaved : ""));
}

void StartUpSettings::BackUp() {
  if (std::exchange(are_backed_up_, true)) return;
  const std::string& path = tallow_.settings_path;
  for (const std::string_view suffix : {kBackupSuffix, kSetAsideSuffix}) {
    try {
      KeepReplaced(path, suffix);
      backup_notice_ = " The old settings are kept as " +
                       std::string(NameOfPath(path)).append(suffix) + " beside them.";
      return;
    } catch (const FileError& error) {
      backup_notice_ = " The old settings could not be kept: " + std::string(error.what()) + ".";
    }
  }
}

void StartUpSettings::ResetDataFolders() {
  tallow_.settings.LocOfGroupingDir(GroupingFolder(tallow_.application_folder));
  tallow_.settings.FileContainingTargetDirectories(FolderListPath(tallow_.application_folder));
  tallow_.SaveSettings();
}

bool StartUpSettings::Rebuild(const std::string& problem) {
  const std::string& path = tallow_.settings_path;
  if (!windows_.Ask(
          "The settings cannot be read.\n\n" + problem +
          "\n\nTallow can create new settings: it reads the songs and ranks from the song "
          "library. If there is no library, it searches the drives for songs." +
          BackupSentence(path) + std::string(kContinueQuestion)))
    return false;
  try {
    MoveToBackup(path);
  } catch (const FileError&) {
    // The backup name may be the name of a folder.
    MoveToBackup(path, kSetAsideSuffix);
  }
  // Settings made by this start must not overwrite the backup.
  are_backed_up_ = true;
  tallow_.settings.Clear();
  Make();
  notices_.Add("New settings were created." + std::string(kOpenSaved));
  return true;
}

void StartUpSettings::SetSongCount(std::int32_t songs) {
  if (tallow_.settings.NumerOfRecordsInTheMain() == songs) return;
  BackUp();
  tallow_.settings.NumerOfRecordsInTheMain(songs);
  tallow_.SaveSettings();
}

}  // namespace tallow

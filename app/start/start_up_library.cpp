// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/start_up_library.h"

#include <optional>
#include <string>
#include <vector>

#include "app/search/file_search.h"
#include "app/start/start_up_notices.h"
#include "app/start/start_up_settings.h"
#include "app/start/start_up_wait.h"
#include "app/start/start_up_windows.h"
#include "app/system_texts.h"
#include "app/tallow.h"
#include "library/library_check.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// What can be done about a library file that has changed, is damaged or is missing.
enum class LibraryChoice { kAsItIs, kLastGood, kSearch };

/// The question to the user which of these to do.
struct LibraryOffer {
  std::string text;
  std::vector<std::string> choices;  ///< the buttons; the first is the default
  std::vector<LibraryChoice> meanings;

  void Add(LibraryChoice meaning, const char* choice, const std::string& explanation) {
    meanings.push_back(meaning);
    choices.emplace_back(choice);
    text += "\n" + std::string(choice) + ": " + explanation;
  }
};

std::string ProblemOf(const LibraryCheck& check) {
  if (!check.file.exists) return " is missing.";
  if (!check.file.sound) return " is damaged: " + check.file.problem + ".";
  return " has changed since Tallow wrote it: by a disk error, by another program, or because a "
         "backup was restored.";
}

/// \param set_aside the path under which the library file is kept if another one is used
LibraryOffer OfferOf(const LibraryCheck& check, const std::string& path,
                     const std::string& set_aside) {
  const std::string name(NameOfPath(path));
  LibraryOffer offer;
  offer.text = "The song library " + path + ProblemOf(check) + "\n";
  const auto offer_as_it_is = [&] {
    offer.Add(LibraryChoice::kAsItIs, "Use It As It Is",
              "it holds " + std::to_string(check.file.usable) +
                  " songs. Choose this if you have restored a backup.");
  };
  // An empty library is not offered when there is a good one.
  const bool can_be_used =
      check.file.exists && check.file.sound && (check.file.usable > 0 || !check.last_good);
  const bool has_lost_songs = check.last_good && check.file.usable < *check.last_good;
  if (can_be_used && !has_lost_songs) offer_as_it_is();
  if (check.last_good)
    offer.Add(LibraryChoice::kLastGood, "Use the Last Good One",
              name + std::string(kBackupSuffix) + " beside it, with " +
                  std::to_string(*check.last_good) + " songs. It may lack your last changes.");
  if (can_be_used && has_lost_songs) offer_as_it_is();
  if (check.file.exists)
    offer.Add(
        LibraryChoice::kSearch, "Salvage It",
        "Tallow searches the drives again. Songs that the library still shows keep their ranks.");
  else
    offer.Add(LibraryChoice::kSearch, "Search Again",
              "Tallow searches the drives. All ranks are lost.");
  if (check.file.exists)
    offer.text +=
        "\n\nUnless it is used as it is, it is kept as " +
        (check.last_good ? std::string(NameOfPath(set_aside)) : name + std::string(kBackupSuffix)) +
        " beside it.";
  offer.text += "\nClosing this window exits Tallow and changes nothing.";
  return offer;
}

}  // namespace

StartUpLibrary::StartUpLibrary(Tallow& tallow, const DriveList& drives, StartUpWindows& windows,
                               StartUpSettings& settings, StartUpNotices& notices,
                               StartUpWait& wait)
    : tallow_(tallow),
      drives_(drives),
      windows_(windows),
      settings_(settings),
      notices_(notices),
      wait_(wait) {}

bool StartUpLibrary::LoadOrBuild() {
  if (!CheckFileOnDisk()) return false;
  if (is_rebuild_ || tallow_.settings.NumerOfRecordsInTheMain() == 0)
    SearchForSongs();
  else
    Load();
  return true;
}

bool StartUpLibrary::CheckFileOnDisk() {
  clsINI& settings = tallow_.settings;
  const std::string path = tallow_.library.LibraryPath();
  LibraryCheck check;
  try {
    check = CheckLibrary(path);
  } catch (const FileError& error) {
    // The file may become readable (a disk not mounted, a permission), so it must not be replaced.
    const std::string backup = path + std::string(kBackupSuffix);
    throw FileError(
        path, "the song library cannot be read (" + error.reason() +
                  "). Make it readable, or move it away, and start Tallow again." +
                  (FileExists(backup)
                       ? " Once it is moved away, Tallow offers to continue with " + backup + "."
                       : std::string()));
  }
  const LibraryInspection& file = check.file;
  if ((check.is_changed && file.sound) || (check.last_good && !(file.exists && file.sound)))
    return Choose(check);
  if (file.exists && !file.sound)
    return OfferRebuild("The song library " + path + " is damaged: " + file.problem + ".", true);
  const std::int32_t counted = settings.NumerOfRecordsInTheMain();
  if (file.usable > counted || settings_.AreNew() || check.is_whole) {
    settings_.SetSongCount(file.usable);
    return true;
  }
  if (file.usable == counted) return true;
  if (!file.exists)
    return OfferRebuild("The song library " + path + " is missing. The settings count " +
                            std::to_string(counted) + " songs in it.",
                        false);
  return OfferRebuild("The song library " + path + " holds " + std::to_string(file.usable) +
                          " songs, but the settings count " + std::to_string(counted) + ".",
                      true);
}

bool StartUpLibrary::Choose(const LibraryCheck& check) {
  const std::string path = tallow_.library.LibraryPath();
  const std::string set_aside = FreeSetAsidePath(path);
  const LibraryOffer offer = OfferOf(check, path, set_aside);
  const std::optional<std::size_t> choice = windows_.Choose(offer.text, offer.choices);
  if (!choice) return false;
  switch (offer.meanings.at(*choice)) {
    case LibraryChoice::kAsItIs:
      trusts_file_ = true;
      settings_.SetSongCount(check.file.usable);
      return true;
    case LibraryChoice::kLastGood:
      UseLastGood(path, set_aside);
      settings_.SetSongCount(*check.last_good);
      return true;
    case LibraryChoice::kSearch:
      if (check.last_good && check.file.exists) {
        KeepReplacedAs(path, set_aside);
        is_renamed_ = true;
      }
      is_rebuild_ = true;
      return true;
  }
  return false;
}

bool StartUpLibrary::OfferRebuild(const std::string& problem, bool file_exists) {
  if (!windows_.Ask(problem + "\n\nTallow can search the drives again. " +
                    (file_exists ? "Songs that the library still shows keep their ranks." +
                                       BackupSentence(tallow_.library.LibraryPath())
                                 : std::string("All ranks are lost.")) +
                    std::string(kContinueQuestion)))
    return false;
  is_rebuild_ = true;
  if (IsGone(tallow_.settings.LocOfGroupingDir())) {
    // The folder may come back (its disk is not mounted now); the old settings still contain its
    // path.
    settings_.BackUp();
    settings_.ResetDataFolders();
  }
  return true;
}

void StartUpLibrary::Load() {
  clsMain& library = tallow_.library;
  // The file was sound a moment ago. If it cannot be read now, it must not be replaced.
  const bool is_loaded = library.LoadMain();
  const std::int32_t last = library.UBoundOfMp3Array();
  // If the file was truncated meanwhile, rows have no number.
  if (!is_loaded || library.Mp3Info(kRecordNumber, last).empty())
    throw FileError(library.LibraryPath(),
                    "the song library cannot be read. Make it readable, or move it away, and start "
                    "Tallow again.");
  if (trusts_file_) library.TrustLibrary();
  if (library.RepairRecordNumbers() && library.SaveError().empty())
    notices_.Add(
        "An earlier version of Tallow had mixed up the numbers of songs in the song library. They "
        "were repaired; the library as it was is kept as " +
        std::string(kLibraryFileName) + std::string(kBackupSuffix) + " beside it.");
  const GoOn go_on = wait_.GoOnCallback();
  const WaitForDrive wait = wait_.WaitCallback();
  library.CheckToSeeIfFilesAreMissingAndMakeFalse(go_on, wait);
  library.AddAnyAdditionalMp3FromTheNormalDirectories(go_on, wait);
  SearchUnreadFolders();
  // Ends the display of the drive that start-up was waiting for.
  wait_.ProcessEvents(library.LibraryPath());
}

void StartUpLibrary::SearchUnreadFolders() {
  clsMain& library = tallow_.library;
  std::int32_t old_count = library.UBoundOfMp3Array();
  FileSearch(tallow_, drives_, windows_.LoadedSplash())
      .SearchUnreadFolders([this](const std::string& folder) {
        wait_.CheckPath(folder);
        return !wait_.IsUnresponsive(folder);
      });
  if (library.UBoundOfMp3Array() == old_count) return;
  library.DeleteIdenticalFileNamesAndPaths(old_count);
  library.WriteOutMp3DirectoryLocations();
}

void StartUpLibrary::SearchForSongs() {
  clsMain& library = tallow_.library;
  library.BeginScan(ScanKind::kComputer);
  windows_.ShowCancelButton(true);
  windows_.ShowFoundLine(true);
  if (is_rebuild_)
    Rebuild();
  else
    library.AddAnyAdditionalMp3FromTheNormalDirectories({}, {}, [this] { SearchDrives(); });
  windows_.ShowFoundLine(false);
}

void StartUpLibrary::Rebuild() {
  clsMain& library = tallow_.library;
  // Songs that are readable in the damaged file keep their numbers and ranks.
  library.Salvage(is_renamed_);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse(wait_.GoOnCallback(), wait_.WaitCallback());
  windows_.ShowCancelButton(true);
  const std::int32_t old_count = library.UBoundOfMp3Array();
  SearchDrives();
  library.ImportFoundSongs(old_count);
  if (library.Mp3MainHasSomeMembers()) return;
  // The library is empty and nothing was found. Saves that, so that the next start does not rebuild
  // again.
  library.Save();
  library.WriteOutMp3DirectoryLocations();
}

void StartUpLibrary::SearchDrives() {
  was_cancelled_ =
      !FileSearch(tallow_, drives_, windows_.LoadedSplash()).SearchDrivesForMp3s(true, {});
  windows_.ShowCancelButton(false);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/system.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <optional>
#include <utility>

#include "app/data_paths.h"
#include "app/initial_jukebox.h"
#include "app/long_work.h"
#include "app/open_jukebox.h"
#include "app/search/file_search.h"
#include "jukebox/jukebox.h"
#include "jukebox/sorting.h"
#include "library/scan_report.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Filing that takes longer is shown, and can be cancelled.
constexpr std::chrono::milliseconds kShowFilingAfter{500};

constexpr std::string_view kGoOn = "\n\nGo on? (No leaves Tallow and changes nothing.)";

/// What an offer to rebuild says about a file that is kept.
std::string KeptAs(const std::string& path) {
  return " The damaged file is kept as " + std::string(NameOfPath(path)) +
         std::string(kBackupSuffix) + " beside it.";
}

bool Contains(const std::vector<std::string>& paths, const std::string& path) {
  return std::any_of(paths.begin(), paths.end(), [&](const std::string& other) {
    return !other.empty() && IsSamePath(other, path);
  });
}

/// An unsaved jukebox whose own file another one has: it is saved under a new name.
UnsavedJukebox WithoutFile(UnsavedJukebox unsaved) {
  unsaved.caption += " (recovered)";
  unsaved.location.clear();
  unsaved.file.clear();
  return unsaved;
}

}  // namespace

bool StartUpWindows::LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library,
                                 const AskWhichSongs& ask) {
  return jukebox.Load(path, library, ask);
}

System::System(Tallow& tallow, const DriveList& drives, StartUpWindows& windows,
               std::function<std::string()> nearby)
    : tallow_(tallow), drives_(drives), windows_(windows), nearby_(std::move(nearby)) {
  tallow_.search_all_drives = [this](SearchProgress* progress) {
    FileSearch search(tallow_, drives_, progress != nullptr ? progress : windows_.LoadedSplash());
    return search.SearchDrivesForMp3s(true, {});
  };
  tallow_.tell_problem = [this](const std::string& text) {
    if (is_starting_)
      notices_.push_back(text);
    else
      windows_.Notice({text});
  };
  tallow_.search_for_player = [this] {
    windows_.ShowSplash();
    SearchForPlayer();
    windows_.UnloadSplash();
    tallow_.player_path = tallow_.settings.LocOfWinAmpExe();
  };
}

bool System::Main(const RuntimeFile& runtime_file) {
  try {
    if (!CheckRuntimeFile(runtime_file)) return false;
    windows_.ShowSplash();
    CreateDataFolders();
    if (!LoadSettings()) {
      windows_.UnloadSplash();
      return false;
    }
    FindPlayer();
    tallow_.library.BeginScan(ScanKind::kFolderList);
    if (!LoadOrBuildLibrary()) {
      windows_.UnloadSplash();
      return false;
    }
    const ScanReport report = tallow_.library.FinishScan(!was_cancelled_);
    for (std::string& problem : tallow_.library.TakeProblems())
      notices_.push_back(std::move(problem));
    OpenFirstJukebox();
    DropVanishedPlayer();
    bool sorted = false;
    tallow_.library.Sort(true, false, kRecordNumber, sorted);
    tallow_.help_file = HelpFilePath(tallow_.application_folder);
    windows_.UnloadSplash();
    if (!tallow_.library.SaveError().empty())
      notices_.push_back("A file of the song library could not be saved: " +
                         tallow_.library.SaveError());
    Notice(report);
    is_starting_ = false;
  } catch (const std::exception& error) {
    windows_.UnloadSplash();
    windows_.Tell(std::string("Tallow cannot start.\n\n") + error.what());
    return false;
  }
  windows_.ShowTip();
  return true;
}

void System::Notice(const ScanReport& report) {
  if (!notices_.empty()) windows_.Notice(notices_);
  const std::string line = TextOf(report, false);
  if (line.empty()) return;
  // What is the matter comes first, and hides nothing.
  std::vector<std::string> lines = std::exchange(notices_, {});
  lines.push_back(line);
  windows_.NoticeScan(lines);
}

bool System::CheckRuntimeFile(const RuntimeFile& file) {
  if (file.path.empty() || FileExists(file.path)) return true;
  windows_.Tell("A file that Tallow needs to run correctly is missing: " +
                std::string(NameOfPath(file.path)) + "\n\nIt belongs to " + file.package +
                ".\n\nThis information is also in the readme.txt file.");
  windows_.OpenInTextEditor(tallow_.application_folder + "readme.txt");
  return false;
}

void System::CreateDataFolders() {
  for (const std::string& folder :
       {GroupingFolder(tallow_.application_folder), SystemFolder(tallow_.application_folder)})
    if (!FolderExists(folder)) CreateFolder(folder);
}

bool System::LoadSettings() {
  const std::string& path = tallow_.settings_path;
  if (IsGone(path)) {
    settings_are_new_ = true;
    try {
      return tallow_.settings.CreateNewIniFile(path, tallow_.application_folder);
    } catch (const TypeMismatchError&) {
      // The library file shows no number to go on with; CheckLibraryFile says what is wrong with
      // it.
      return true;
    } catch (const OverflowError&) {
      return true;
    }
  }
  try {
    tallow_.settings.GetandLoadIniInfo(path);
  } catch (const SettingsError& error) {
    return RebuildSettings(error.what());
  } catch (const FileError& error) {
    return RebuildSettings(error.what());
  }
  if (!tallow_.settings.IsWhole()) MendCutSettings();
  // The program was moved with its data: the folders of the settings are where it was before.
  const std::string own = GroupingFolder(tallow_.application_folder);
  const std::string folder = tallow_.settings.LocOfGroupingDir();
  if (IsGone(folder) && (FileExists(own + std::string(kLibraryFileName)) ||
                         tallow_.settings.NumerOfRecordsInTheMain() == 0)) {
    KeepSettings();
    UseOwnFolders();
    notices_.push_back("The folder " + folder + " of the settings is gone, so Tallow uses " + own +
                       "." + kept_as_);
  }
  const std::string list_folder(FolderOfPath(tallow_.settings.FileContainingTargetDirectories()));
  if (IsGone(list_folder)) {
    KeepSettings();
    tallow_.settings.FileContainingTargetDirectories(FolderListPath(tallow_.application_folder));
    tallow_.SaveSettings();
    notices_.push_back("The folder " + list_folder + " of the settings is gone, so Tallow uses " +
                       SystemFolder(tallow_.application_folder) + "." + kept_as_);
  }
  return true;
}

void System::MendCutSettings() {
  const std::string& path = tallow_.settings_path;
  KeepSettings();
  tallow_.settings.CompleteSettings(path, tallow_.application_folder);
  tallow_.SaveSettings();
  notices_.push_back(
      path + " was cut short. The settings that it lacks are those of a first start." + kept_as_);
}

void System::KeepSettings() {
  if (std::exchange(settings_are_kept_, true)) return;
  const std::string& path = tallow_.settings_path;
  for (const std::string_view suffix : {kBackupSuffix, kSetAsideSuffix}) {
    try {
      KeepReplaced(path, suffix);
      kept_as_ = " The settings as they were are kept as " +
                 std::string(NameOfPath(path)).append(suffix) + " beside them.";
      return;
    } catch (const FileError& error) {
      kept_as_ = " The settings as they were could not be kept: " + std::string(error.what()) + ".";
    }
  }
}

void System::UseOwnFolders() {
  tallow_.settings.LocOfGroupingDir(GroupingFolder(tallow_.application_folder));
  tallow_.settings.FileContainingTargetDirectories(FolderListPath(tallow_.application_folder));
  tallow_.SaveSettings();
}

bool System::RebuildSettings(const std::string& problem) {
  const std::string& path = tallow_.settings_path;
  if (!windows_.Ask("The settings cannot be read.\n\n" + problem +
                    "\n\nTallow can make new settings: it takes the songs and ranks from the song "
                    "library, and searches the drives anew for what is not there." +
                    KeptAs(path) + std::string(kGoOn)))
    return false;
  MoveToBackup(path);
  tallow_.settings.Clear();
  return LoadSettings();
}

bool System::SearchForPlayer() {
  windows_.ShowCancelButton(true);
  const bool finished =
      FileSearch(tallow_, drives_, &windows_.Splash(), nearby_).SearchDrivesForWinamp();
  windows_.ShowCancelButton(false);
  return finished;
}

void System::FindPlayer() {
  const std::string& player = tallow_.settings.LocOfWinAmpExe();
  // Nobody can tell of one on a share that does not answer.
  if (!player.empty() && LookAt(player).presence == FilePresence::kThere) return;
  if (tallow_.library.Unanswered()->Covers(player)) return;
  if (!player.empty()) {
    // The path may be damaged, and others with it.
    KeepSettings();
  }
  tallow_.player_search_is_pending = !SearchForPlayer();
}

bool System::LoadOrBuildLibrary() {
  if (!CheckLibraryFile()) return false;
  if (rebuild_ || tallow_.settings.NumerOfRecordsInTheMain() == 0)
    SearchForSongs();
  else
    LoadLibrary();
  return true;
}

bool System::CheckLibraryFile() {
  clsINI& settings = tallow_.settings;
  const std::string path = tallow_.library.LibraryPath();
  LibraryCheck check;
  try {
    check = CheckLibrary(path);
  } catch (const FileError& error) {
    // It may be readable tomorrow (a disk not mounted, a permission), so it is not to be replaced.
    throw FileError(path, "the song library cannot be read (" + error.reason() +
                              "). Make it readable, or move it away, and start Tallow again.");
  }
  const LibraryInspection& file = check.file;
  if ((check.is_changed && file.sound) || (check.last_good && !(file.exists && file.sound)))
    return ChooseLibrary(check);
  if (file.exists && !file.sound)
    return RebuildLibrary("The song library " + path + " is damaged: " + file.problem + ".", true);
  const std::int32_t counted = settings.NumerOfRecordsInTheMain();
  if (file.usable > counted || settings_are_new_ || check.is_whole) {
    UseCount(file.usable);
    return true;
  }
  if (file.usable == counted) return true;
  if (!file.exists)
    return RebuildLibrary("The song library " + path + " is gone. The settings count " +
                              std::to_string(counted) + " songs in it.",
                          false);
  return RebuildLibrary("The song library " + path + " holds " + std::to_string(file.usable) +
                            " songs, but the settings count " + std::to_string(counted) + ".",
                        true);
}

void System::UseCount(std::int32_t songs) {
  if (tallow_.settings.NumerOfRecordsInTheMain() == songs) return;
  KeepSettings();
  tallow_.settings.NumerOfRecordsInTheMain(songs);
  tallow_.SaveSettings();
}

bool System::ChooseLibrary(const LibraryCheck& check) {
  const std::string path = tallow_.library.LibraryPath();
  const std::string name(NameOfPath(path));
  const std::string set_aside = FreeSetAsidePath(path);
  const bool can_be_used = check.file.exists && check.file.sound;
  std::string text = "The song library " + path;
  if (!check.file.exists)
    text += " is gone.";
  else if (!check.file.sound)
    text += " is damaged: " + check.file.problem + ".";
  else
    text +=
        " is not as Tallow has written it. A disk error or another program has changed it, or a "
        "backup was put back.";
  text += '\n';

  enum class Choice { kAsItIs, kLastGood, kSearch };
  std::vector<Choice> meanings;
  std::vector<std::string> choices;
  const auto offer = [&](Choice meaning, const char* choice, const std::string& explanation) {
    meanings.push_back(meaning);
    choices.emplace_back(choice);
    text += "\n" + std::string(choice) + ": " + explanation;
  };
  if (can_be_used)
    offer(Choice::kAsItIs, "Use It As It Is",
          "it holds " + std::to_string(check.file.usable) +
              " songs. Right for a backup that was put back.");
  if (check.last_good)
    offer(Choice::kLastGood, "Use the Last Good One",
          name + std::string(kBackupSuffix) + " beside it, with " +
              std::to_string(*check.last_good) + " songs.");
  if (check.file.exists)
    offer(Choice::kSearch, "Salvage It",
          "Tallow searches the drives anew. Songs that the library still shows keep their ranks.");
  else
    offer(Choice::kSearch, "Search Anew", "Tallow searches the drives. All ranks are lost.");
  if (check.file.exists)
    text +=
        "\n\nUnless it is used as it is, it is kept as " +
        (check.last_good ? std::string(NameOfPath(set_aside)) : name + std::string(kBackupSuffix)) +
        " beside it.";
  text += "\nClosing this leaves Tallow and changes nothing.";

  const std::optional<std::size_t> choice = windows_.Choose(text, choices);
  if (!choice) return false;
  switch (meanings.at(*choice)) {
    case Choice::kAsItIs:
      trusts_library_ = true;
      UseCount(check.file.usable);
      return true;
    case Choice::kLastGood:
      UseLastGood(path, set_aside);
      UseCount(*check.last_good);
      return true;
    case Choice::kSearch:
      if (check.last_good && check.file.exists) {
        KeepReplacedAs(path, set_aside);
        is_set_aside_ = true;
      }
      rebuild_ = true;
      return true;
  }
  return false;
}

bool System::RebuildLibrary(const std::string& problem, bool file_exists) {
  if (!windows_.Ask(
          problem +
          "\n\nTallow can search the drives anew. Songs that the library still shows keep "
          "their ranks." +
          (file_exists ? KeptAs(tallow_.library.LibraryPath()) : std::string()) +
          std::string(kGoOn)))
    return false;
  rebuild_ = true;
  if (IsGone(tallow_.settings.LocOfGroupingDir())) {
    // The folder may come back (a disk not mounted today); the old settings still name it.
    KeepSettings();
    UseOwnFolders();
  }
  return true;
}

void System::LoadLibrary() {
  clsMain& library = tallow_.library;
  // It was sound a moment ago; what cannot be read now must not be replaced.
  const bool is_loaded = library.LoadMain();
  const std::int32_t last = library.UBoundOfMp3Array();
  // A file that became shorter meanwhile leaves rows without a number.
  if (!is_loaded || library.Mp3Info(kRecordNumber, last).empty())
    throw FileError(library.LibraryPath(),
                    "the song library cannot be read. Make it readable, or move it away, and start "
                    "Tallow again.");
  if (trusts_library_) library.TrustLibrary();
  if (library.RepairRecordNumbers() && library.SaveError().empty())
    notices_.push_back(
        "An earlier Tallow had confused the numbers of songs in the song library. They were put "
        "right; the library as it was is kept as " +
        std::string(kLibraryFileName) + std::string(kBackupSuffix) + " beside it.");
  const GoOn live = [this](std::string_view folder) { return Live(folder); };
  const tallow::WaitForDrive wait = [this](std::string_view root) { return WaitsFor(root); };
  library.CheckToSeeIfFilesAreMissingAndMakeFalse(live, wait);
  library.AddAnyAdditionalMp3FromTheNormalDirectories(live, wait);
  SearchUnreadFolders();
  // Nothing is waited for any longer.
  Live(library.LibraryPath());
}

void System::SearchUnreadFolders() {
  clsMain& library = tallow_.library;
  std::int32_t old_count = library.UBoundOfMp3Array();
  FileSearch(tallow_, drives_, windows_.LoadedSplash())
      .SearchUnreadFolders([this](const std::string& folder) {
        LookAt(folder);
        return !tallow_.library.Unanswered()->Covers(folder);
      });
  if (library.UBoundOfMp3Array() == old_count) return;
  library.DeleteIdenticalFileNamesAndPaths(old_count);
  library.WriteOutMp3DirectoryLocations();
}

bool System::Live(std::string_view folder) {
  if (!folder.empty() && !slow_drive_.empty()) {
    slow_drive_.clear();
    windows_.ShowCancelButton(false);
    if (SearchProgress* const splash = windows_.LoadedSplash()) splash->SetStatus({});
  }
  if (SearchProgress* const splash = windows_.LoadedSplash()) splash->VisitFolder({});
  return !tallow_.is_ending;
}

bool System::WaitsFor(std::string_view root) {
  if (slow_drive_ != root) {
    tallow_.SearchCancelled = false;
    slow_drive_ = root;
    if (SearchProgress* const splash = windows_.LoadedSplash())
      splash->SetStatus(WaitingLine(root));
    windows_.ShowCancelButton(true);
  }
  // A cancel is for this drive alone.
  return !std::exchange(tallow_.SearchCancelled, false);
}

FileLook System::LookAt(const std::string& path) {
  const FileLook look = tallow_.library.LookAt(
      path, [this](std::string_view folder) { return Live(folder); },
      [this](std::string_view root) { return WaitsFor(root); });
  Live(path);
  return look;
}

FilingProgress System::WhileFiling() {
  return [this, begun = std::chrono::steady_clock::now()](std::size_t filed, std::size_t songs) {
    SearchProgress* const splash = windows_.LoadedSplash();
    if (splash == nullptr) return true;
    if (!shows_filing_ && std::chrono::steady_clock::now() - begun >= kShowFilingAfter) {
      shows_filing_ = true;
      tallow_.SearchCancelled = false;
      splash->SetStatus(kFilingSongs);
      windows_.ShowFoundLine(true);
      windows_.ShowCancelButton(true);
    }
    if (shows_filing_) splash->SetFound(FilingLine(filed, songs));
    splash->VisitFolder({});
    filing_was_cancelled_ = shows_filing_ && tallow_.SearchCancelled;
    return !filing_was_cancelled_;
  };
}

void System::EndFiling() {
  if (std::exchange(shows_filing_, false)) {
    windows_.ShowCancelButton(false);
    windows_.ShowFoundLine(false);
  }
  if (!std::exchange(filing_was_cancelled_, false)) return;
  tallow_.SearchCancelled = false;
  tallow_.filing_is_pending = true;
  notices_.push_back(FilingCancelledLine() + ".");
}

void System::SearchForSongs() {
  clsMain& library = tallow_.library;
  library.BeginScan(ScanKind::kComputer);
  windows_.ShowCancelButton(true);
  windows_.ShowFoundLine(true);
  std::int32_t old_count = 0;
  if (rebuild_) {
    // Songs that the damaged file still shows keep their numbers and ranks.
    library.Salvage(is_set_aside_);
    library.CheckToSeeIfFilesAreMissingAndMakeFalse(
        [this](std::string_view folder) { return Live(folder); },
        [this](std::string_view root) { return WaitsFor(root); });
    windows_.ShowCancelButton(true);
    old_count = library.UBoundOfMp3Array();
  }
  was_cancelled_ = !tallow_.search_all_drives(nullptr);
  windows_.ShowCancelButton(false);
  library.TakeSearchedSongs(old_count);
  if (rebuild_ && !library.Mp3MainHasSomeMembers()) {
    // Nothing is left and nothing was found: the next start must not come here again.
    library.Save();
    library.WriteOutMp3DirectoryLocations();
  }
  windows_.ShowFoundLine(false);
}

void System::OpenFirstJukebox() {
  tallow_.found_tags.Seal();
  Jukebox* last_recovered = nullptr;
  const std::vector<std::string> recovered = RecoverUnsaved(last_recovered);
  const std::string& last = tallow_.settings.LocOfLastSavedJukeBox();
  // With a jukebox open there is no need for the sample, nor for another window of the same file.
  const bool is_open =
      !recovered.empty() && (last.empty() || IsGone(last) || Contains(recovered, last));
  if (!is_open) {
    Jukebox& jukebox = windows_.NewJukebox();
    try {
      if (!OpenLastJukebox(jukebox))
        BuildInitialJukebox(
            tallow_.library, jukebox, windows_.OpenJukeboxes(),
            [&] { windows_.ShowJukebox(jukebox); }, &tallow_.found_tags, WhileFiling());
    } catch (const FilingError& error) {
      notices_.insert(notices_.end(), error.problems().begin(), error.problems().end());
    }
  }
  EndFiling();
  // What the user has just asked for is in front.
  if (last_recovered != nullptr && !is_open) windows_.ShowJukebox(*last_recovered);
  tallow_.found_tags.Clear();
}

std::vector<std::string> System::RecoverUnsaved(Jukebox*& last) {
  const AskQuestion ask = [this](const std::string& text) { return windows_.AskUnlessLeft(text); };
  std::vector<std::string> problems;
  std::vector<std::string> recovered;
  // The windows live while a jukebox is filed, and nobody is to use them yet.
  std::vector<Jukebox*> to_show;
  for (const UnsavedJukebox& unsaved : tallow_.unsaved.Find(problems)) {
    // The program ended between saving and taking this away.
    if (UnsavedJukeboxes::IsSaved(unsaved, tallow_.library)) {
      RemoveFile(unsaved.path);
      continue;
    }
    const std::optional<bool> wanted = windows_.AskUnlessLeft(
        "Tallow was not closed properly. Recover the unsaved changes of " + unsaved.caption + "?");
    // Without an answer it stays for the next start.
    if (!wanted) continue;
    if (!*wanted) {
      UnsavedJukeboxes::Decline(unsaved);
      continue;
    }
    // Looked into before it gets a window, which could not be taken back here.
    Jukebox probe;
    if (!probe.TakeUnsaved(unsaved.bytes, unsaved.path, tallow_.library)) {
      windows_.Tell(UnreadableChanges(unsaved.path, probe.FileProblem()));
      UnsavedJukeboxes::Decline(unsaved);
      continue;
    }
    Jukebox& jukebox = windows_.NewJukebox();
    tallow_.unsaved.Recover(Contains(recovered, unsaved.file) ? WithoutFile(unsaved) : unsaved,
                            jukebox, tallow_.library,
                            AskAboutConfusedSongs(unsaved.path, tallow_.library, ask));
    jukebox.Tag(std::to_string(windows_.OpenJukeboxes().size()));
    try {
      FillAutomaticFolders(kFillNewToo, false, jukebox.Caption(), tallow_.library,
                           windows_.OpenJukeboxes(), &tallow_.found_tags, WhileFiling());
    } catch (const FilingError& error) {
      notices_.insert(notices_.end(), error.problems().begin(), error.problems().end());
    }
    EndFiling();
    last = &jukebox;
    to_show.push_back(last);
    recovered.push_back(unsaved.file);
  }
  for (Jukebox* const jukebox : to_show) windows_.ShowJukebox(*jukebox);
  notices_.insert(notices_.end(), problems.begin(), problems.end());
  return recovered;
}

bool System::OpenLastJukebox(Jukebox& jukebox) {
  const std::string& path = tallow_.settings.LocOfLastSavedJukeBox();
  if (path.empty()) return false;
  LookAt(path);
  std::string root = tallow_.library.Unanswered()->RootOf(path);
  if (root.empty() && IsGone(path)) root = tallow_.library.AwayRootOf(path);
  if (!root.empty()) {
    notices_.push_back(path + " is on a drive that is away: " + root +
                       ". So this is the sample jukebox.");
    return false;
  }
  if (IsGone(path)) {
    notices_.push_back(path +
                       " is gone, so this is the sample jukebox. Other jukeboxes are in the "
                       "File menu.");
    return false;
  }
  std::optional<FilingError> unfiled;
  try {
    if (!OpenJukeboxFile(
            path, ToUpper(FileTitleWithoutExtension(path)), jukebox, tallow_.library,
            windows_.OpenJukeboxes(),
            [&](const std::string& file, const AskWhichSongs& ask) {
              return windows_.LoadJukebox(jukebox, file, tallow_.library, ask);
            },
            [this](const std::string& text) { return windows_.AskUnlessLeft(text); },
            &tallow_.found_tags, WhileFiling())) {
      windows_.Tell(jukebox.FileProblem() +
                    "\n\nTallow goes on with the sample jukebox. The file stays as it is.");
      return false;
    }
  } catch (const FilingError& error) {
    unfiled = error;
  }
  jukebox.Tag("1");
  windows_.ShowJukebox(jukebox);
  if (unfiled) throw FilingError(*unfiled);
  return true;
}

void System::DropVanishedPlayer() {
  clsINI& settings = tallow_.settings;
  const std::string path = settings.LocOfWinAmpExe();
  const bool is_gone = !tallow_.library.Unanswered()->Covers(path) &&
                       (path.empty() || LookAtFile(path).presence == FilePresence::kNotThere);
  if (is_gone) {
    settings.LocOfWinAmpExe({});
    tallow_.SaveSettings();
  }
  tallow_.player_path = settings.LocOfWinAmpExe();
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/system.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <optional>
#include <utility>

#include "app/data_paths.h"
#include "app/long_work.h"
#include "app/search/file_search.h"
#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "jukebox/open_jukebox.h"
#include "jukebox/sorting.h"
#include "library/scan_report.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Filing that takes longer than this is shown and can be cancelled.
constexpr std::chrono::milliseconds kShowFilingAfter{500};
/// How often the line of it changes.
constexpr std::chrono::milliseconds kShowLineEvery{40};

}  // namespace

bool StartUpWindows::Ask(const std::string& text) {
  return Show({.text = text, .icon = MessageIcon::kQuestion, .buttons = MessageButtons::kYesNo}) ==
         MessageAnswer::kYes;
}

std::optional<bool> StartUpWindows::AskDismissable(const std::string& text) {
  const MessageAnswer answer = Show({.text = text,
                                     .icon = MessageIcon::kQuestion,
                                     .buttons = MessageButtons::kYesNo,
                                     .can_be_dismissed = true});
  if (answer == MessageAnswer::kCancel) return std::nullopt;
  return answer == MessageAnswer::kYes;
}

System::System(Tallow& tallow, const DriveList& drives, StartUpWindows& windows,
               std::function<std::string()> nearby)
    : tallow_(tallow), drives_(drives), windows_(windows), nearby_(std::move(nearby)) {
  tallow_.search_all_drives = [this](SearchProgress* progress) {
    FileSearch search(tallow_, drives_, progress != nullptr ? progress : windows_.LoadedSplash());
    return search.SearchDrivesForMp3s(true, {});
  };
  tallow_.report_problem = [this](const std::string& text) {
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
    const ScanReport report = tallow_.library.FinishScan(
        !was_cancelled_, [this](std::string_view folder) { return ProcessEvents(folder); });
    TakeProblems();
    OpenFirstJukebox();
    ClearMissingPlayer();
    bool sorted = false;
    tallow_.library.Sort(true, false, kRecordNumber, sorted);
    TakeProblems();
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

void System::TakeProblems() {
  for (std::string& problem : tallow_.library.TakeProblems())
    notices_.push_back(std::move(problem));
}

void System::Notice(const ScanReport& report) {
  if (!notices_.empty()) windows_.Notice(notices_);
  const std::string line = TextOf(report, false);
  if (line.empty()) return;
  // Problems come first; the counts must not hide them.
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

bool System::SearchForPlayer() {
  windows_.ShowCancelButton(true);
  const bool finished =
      FileSearch(tallow_, drives_, &windows_.Splash(), nearby_).SearchDrivesForWinamp();
  windows_.ShowCancelButton(false);
  return finished;
}

void System::FindPlayer() {
  const std::string& player = tallow_.settings.LocOfWinAmpExe();
  // A player on a share that does not respond may still exist.
  if (!player.empty() && LookAt(player).presence == FilePresence::kThere) return;
  if (IsUnresponsive(player)) return;
  if (!player.empty()) {
    // The path may be damaged, and other settings with it.
    BackUpSettings();
  }
  tallow_.player_search_is_pending = !SearchForPlayer();
}

bool System::ProcessEvents(std::string_view folder) {
  if (!folder.empty() && !slow_drive_.empty()) {
    slow_drive_.clear();
    windows_.ShowCancelButton(false);
    if (SearchProgress* const splash = windows_.LoadedSplash()) splash->SetStatus({});
  }
  if (SearchProgress* const splash = windows_.LoadedSplash()) splash->VisitFolder({});
  return !tallow_.is_shutting_down;
}

bool System::KeepWaitingForDrive(std::string_view root) {
  if (slow_drive_ != root) {
    tallow_.SearchCancelled = false;
    slow_drive_ = root;
    if (SearchProgress* const splash = windows_.LoadedSplash())
      splash->SetStatus(WaitingLine(root));
    windows_.ShowCancelButton(true);
  }
  // The cancel applies to this drive only.
  return !std::exchange(tallow_.SearchCancelled, false);
}

FileStatus System::LookAt(const std::string& path) {
  const FileStatus look = tallow_.library.LookAt(
      path, [this](std::string_view folder) { return ProcessEvents(folder); },
      [this](std::string_view root) { return KeepWaitingForDrive(root); });
  ProcessEvents(path);
  return look;
}

FilingProgress System::WhileFiling() {
  using Clock = std::chrono::steady_clock;
  return [this, begun = Clock::now(), line_shown = Clock::time_point()](std::size_t filed,
                                                                        std::size_t songs) mutable {
    SearchProgress* const splash = windows_.LoadedSplash();
    if (splash == nullptr) return true;
    const Clock::time_point now = Clock::now();
    if (!shows_filing_ && now - begun >= kShowFilingAfter) {
      shows_filing_ = true;
      tallow_.SearchCancelled = false;
      splash->SetStatus(kFilingSongs);
      windows_.ShowFoundLine(true);
      windows_.ShowCancelButton(true);
    }
    // A line for each song would take longer than to file it.
    if (shows_filing_ && now - line_shown >= kShowLineEvery) {
      splash->SetFound(FilingLine(filed, songs));
      line_shown = now;
    }
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

bool System::IsUnresponsive(const std::string& path) const {
  return tallow_.library.Unanswered()->Covers(path);
}

void System::ClearMissingPlayer() {
  clsINI& settings = tallow_.settings;
  const std::string path = settings.LocOfWinAmpExe();
  const bool is_gone = !IsUnresponsive(path) &&
                       (path.empty() || CheckFile(path).presence == FilePresence::kNotThere);
  if (is_gone) {
    settings.LocOfWinAmpExe({});
    tallow_.SaveSettings();
  }
  tallow_.player_path = settings.LocOfWinAmpExe();
}

}  // namespace tallow

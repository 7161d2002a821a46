// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/system.h"

#include <exception>
#include <utility>
#include <vector>

#include "app/data_paths.h"
#include "app/start/start_up_windows.h"
#include "jukebox/jukebox.h"
#include "library/scan_report.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {

System::System(Tallow& tallow, const DriveList& drives, StartUpWindows& windows,
               std::function<std::string()> nearby)
    : tallow_(tallow),
      windows_(windows),
      notices_(tallow),
      wait_(tallow, windows),
      settings_(tallow, windows, notices_),
      player_(tallow, drives, windows, settings_, wait_, std::move(nearby)),
      library_(tallow, drives, windows, settings_, notices_, wait_),
      jukeboxes_(tallow, windows, notices_, wait_) {}

bool System::Main(const RuntimeFile& runtime_file) {
  try {
    if (!CheckRuntimeFile(runtime_file)) return false;
    windows_.ShowSplash();
    if (!LoadAndOpen()) {
      windows_.UnloadSplash();
      return false;
    }
  } catch (const std::exception& error) {
    windows_.UnloadSplash();
    windows_.ShowError(std::string("Tallow cannot start.\n\n") + error.what());
    return false;
  }
  windows_.ShowTip();
  return true;
}

bool System::LoadAndOpen() {
  clsMain& library = tallow_.library;
  CreateDataFolders();
  if (!settings_.Load()) return false;
  player_.Find();
  library.BeginScan(ScanKind::kFolderList);
  if (!library_.LoadOrBuild()) return false;
  const ScanReport report = library.FinishScan(!library_.WasCancelled(), wait_.GoOnCallback());
  notices_.AddProblems();
  jukeboxes_.Open();
  player_.SetPath();
  library.SortByRecord();
  notices_.AddProblems();
  tallow_.help_file = HelpFilePath(tallow_.application_folder);
  windows_.UnloadSplash();
  if (!library.SaveError().empty())
    notices_.Add("A file of the song library could not be saved: " + library.SaveError());
  Notice(report);
  return true;
}

void System::Notice(const ScanReport& report) {
  std::vector<std::string> lines = notices_.TakeAll();
  if (!lines.empty()) windows_.Notice(lines);
  const std::string line = TextOf(report, false);
  if (line.empty()) return;
  // Problems come first; the counts must not hide them.
  lines.push_back(line);
  windows_.NoticeScan(lines);
}

bool System::CheckRuntimeFile(const RuntimeFile& file) {
  if (file.path.empty() || FileExists(file.path)) return true;
  windows_.ShowError("A file that Tallow needs to run correctly is missing: " +
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

}  // namespace tallow

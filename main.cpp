// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QApplication>

#include "app/command_line.h"
#include "app/data_paths.h"
#include "app/search/drive_list.h"
#include "app/search/drive_searches.h"
#include "app/search/system_volumes.h"
#include "app/system.h"
#include "app/tallow.h"
#include "details/child_reader.h"
#include "player/player_identifier.h"
#include "player/player_link.h"
#include "ui/frame/frame_findings.h"
#include "ui/frame/frame_style.h"
#include "ui/frame/frm_mdi_form1.h"
#include "ui/start/start_up.h"
#include "ui/support/display_server.h"
#include "ui/support/end_signals.h"
#include "ui/support/frame_pictures.h"
#include "ui/support/message_box.h"
#include "ui/support/single_program.h"
#include "ui/support/window_options.h"
#include "util/errors.h"
#include "util/program_arguments.h"
#include "util/terminal.h"
#include "util/user_folders.h"
#include "util/version.h"

namespace tallow {
namespace {

/// Reports why the program ends: on standard error when `silent`, otherwise in a message box.
void ReportError(const std::string& text, bool silent) {
  if (silent)
    std::fprintf(stderr, "%s\n", text.c_str());
  else
    ShowMessageBox({.text = text, .icon = MessageIcon::kCritical}, nullptr);
}

/// Hands the files over to the running Tallow, or reports why this instance cannot start.
int HandOver(SingleProgram& running, const std::string& folder, const CommandLine& line) {
  if (!running.Problem().empty()) {
    ReportError(running.Problem(), line.exit_after_startup);
    return 1;
  }
  // With --exit-after-startup there are no files to hand over.
  if (!line.exit_after_startup && running.HandOver(line.files)) return 0;
  const std::string text =
      "The song library in " + folder + " is in use by another Tallow" +
      (line.exit_after_startup ? "" : " that does not answer") +
      ".\n\nClose that one, or wait until it has finished, and start Tallow again.";
  ReportError(text, line.exit_after_startup);
  return 1;
}

int ReportUsageError(const std::string& text, bool silent) {
  ReportError(text, silent);
  return kUsageError;
}

/// Sets the names, the icon and the style of the application.
void SetUpApplication() {
  QApplication::setOrganizationName(QStringLiteral("Tallow"));
  QApplication::setApplicationName(QStringLiteral("tallow"));
  QApplication::setApplicationVersion(
      QStringLiteral("%1.%2").arg(kMajorVersion).arg(kMinorVersion));
  QApplication::setWindowIcon(FramePicture("tallow"));
  // The splash window is at times the only window. Closing it must not quit the program.
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setStyle(new FrameStyle);
}

/// Makes the windows, starts the session, and runs the event loop until the program ends.
/// \returns the exit code
int RunSession(Tallow& tallow, SingleProgram& single, const CommandLine& line) {
  const std::string options_problem = PrepareWindowOptions(SystemFolder(tallow.application_folder));
  if (line.style) tallow.preferences.OverrideStyle(*line.style);
  tallow.library.UseDrives(SystemVolumes, line.drives, SystemWalkLimits());
  tallow.has_given_drives = !line.drives.empty();
  tallow.details.ReadInChildren(
      {.program = ExecutablePath(), .arguments = {std::string(kServeDetailsOption)}});
  for (const std::string& drive : line.drives) {
    const auto is_known = [&](const std::string& root) { return tallow.library.KnowsDrive(root); };
    if (const std::string problem = ProblemOfDrive(drive, is_known); !problem.empty())
      return ReportUsageError(problem, line.exit_after_startup);
  }
  const std::unique_ptr<DriveList> drives =
      line.drives.empty() ? SystemDrives() : GivenDrives(line.drives);
  const std::unique_ptr<PlayerLink> player =
      SystemPlayerLink(PlayerIdentifier(tallow.application_folder));
  DriveSearches searches(tallow, *drives);
  frmMDIForm1 frame(tallow, *player, searches);
  QObject::connect(&single, &SingleProgram::FilesWanted, &frame,
                   [&frame](const std::vector<std::string>& files) { frame.OpenFiles(files); });
  StartUp windows(tallow, frame, line.exit_after_startup);
  System system(tallow, *drives, windows);
  if (!options_problem.empty()) tallow.AddProblem(options_problem);
  std::optional<EndSignals> end_signals;
  const auto end = [&frame, &tallow] {
    // Cancels a running search, too.
    tallow.SearchCancelled = true;
    tallow.is_shutting_down = true;
    // No question can be asked now; the next start asks.
    frame.KeepUnsavedChanges();
    // The music must not play on after the program that controls it has ended.
    frame.Player().End();
    // Not quit(): it would close the windows, and they would ask about unsaved changes.
    QApplication::exit();
  };
  // From here on there are changes to keep. The next start finds the songs that an interrupted
  // search has not found.
  windows.BeforeTip([&] { end_signals.emplace(end); });
  if (!system.Main(QtsRuntimeFile())) return 1;
  if (line.exit_after_startup || tallow.is_shutting_down) return 0;
  QApplication::setQuitOnLastWindowClosed(true);
  frame.Findings().FindSizes();
  frame.Details().Start();
  frame.Player().RestoreQueue();
  if (!line.files.empty()) frame.OpenFiles(line.files);
  if (!tallow.is_shutting_down) windows.ShowDueTip();
  // A request to end that arrived while the files were opened found no event loop to quit.
  const int code = tallow.is_shutting_down ? 0 : QApplication::exec();
  // The request may have arrived in the middle of filing, which is complete now.
  if (tallow.is_shutting_down) frame.KeepUnsavedChanges();
  // Retries a failed save: the disk may have room by now.
  if (!tallow.library.SaveError().empty()) tallow.library.Save();
  return code;
}

int Run(char** argv, const CommandLine& line) {
  if (!HasDisplay()) {
    if (!line.error.empty()) return ReportUsageError(line.error, true);
    if (!line.exit_after_startup) {
      std::fputs("Tallow requires a display: neither DISPLAY nor WAYLAND_DISPLAY is set.\n",
                 stderr);
      return 1;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  // Qt has an option --style of its own, so it gets none of the arguments.
  int names = 1;
  QApplication application(names, argv);
  SetUpApplication();

  if (!line.error.empty()) return ReportUsageError(line.error, line.exit_after_startup);
  Tallow tallow(line.application_folder.empty() ? DefaultApplicationFolder()
                                                : line.application_folder);
  std::optional<SingleProgram> single;
  try {
    single.emplace(tallow.application_folder);
  } catch (const FileError& error) {
    return ReportUsageError(std::string("The application folder cannot be used. ") + error.what() +
                                ". Make it readable and writable, and start Tallow again.",
                            line.exit_after_startup);
  }
  if (!single->Lock()) return HandOver(*single, tallow.application_folder, line);
  return RunSession(tallow, *single, line);
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  using tallow::CommandLine;
  try {
    // A child that reads song details has no windows, and its output belongs to its parent.
    if (argc == 2 && argv[1] == tallow::kServeDetailsOption) return tallow::ServeSongDetails();
    tallow::UseTerminal();
    const CommandLine line = tallow::ParseCommandLine(tallow::ProgramArguments(argc, argv));
    if (!line.error.empty() && !line.is_folder_error) {
      tallow::ReportStartError(line.error);
      return tallow::kUsageError;
    }
    if (line.help) {
      std::fputs(tallow::HelpText().c_str(), stdout);
      return 0;
    }
    if (line.version) {
      std::printf("tallow %d.%d\n", tallow::kMajorVersion, tallow::kMinorVersion);
      return 0;
    }
    return tallow::Run(argv, line);
  } catch (const std::exception& error) {
    tallow::ReportStartError(std::string("Tallow has to exit. ") + error.what());
    return 1;
  }
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/command_line.h"

#include <string_view>

#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/user_folders.h"

namespace tallow {
namespace {

/// Why a folder cannot be the application folder; empty when it can.
std::string ProblemOfApplicationFolder(const std::string& folder) {
  if (!FolderExists(folder)) return "The application folder " + folder + " does not exist.";
  if (!FolderIsWritable(folder))
    return "No file can be created in the application folder " + folder + ".";
  // The settings file holds one path per line.
  if (HasLineBreak(folder))
    return "The application folder " + folder + " has a line break in its path.";
  return {};
}

/// Why a text is not the name of a style that can be given; empty when it is one.
std::string ProblemOfStyle(const std::string& name) {
  if (name.empty() || name.starts_with("--")) return "--style requires classic or modern.";
  const std::optional<Style> style = StyleOfName(name);
  if (style && *style != Style::kCustom) return {};
  return "'" + name + "' is not a style. --style requires classic or modern.";
}

}  // namespace

std::string ProblemOfDrive(const std::string& folder,
                           const std::function<bool(const std::string&)>& is_known) {
  // A drive on which songs were found may be a share that does not respond; start-up waits for it.
  if (is_known(folder)) return {};
  const FolderState state = StateOfFolder(folder);
  if (state != FolderState::kNotThere && state != FolderState::kUnreadable) return {};
  return "The drive folder " + folder +
         (state == FolderState::kNotThere ? " does not exist." : " cannot be read.");
}

CommandLine ParseCommandLine(std::span<const std::string> arguments) {
  CommandLine line;
  for (std::size_t i = 0; i < arguments.size() && line.error.empty(); ++i) {
    const std::string& argument = arguments[i];
    const auto folder = [&]() -> std::string {
      if (i + 1 < arguments.size() && !arguments[i + 1].empty() &&
          !arguments[i + 1].starts_with("--"))
        return arguments[++i];
      line.error = argument + " requires a folder.";
      return {};
    };
    if (argument == "--app-folder") {
      const std::string given = folder();
      if (!line.error.empty()) break;
      line.application_folder = EnsureTrailingBackslash(AbsolutePath(given));
    } else if (argument == "--drive") {
      const std::string given = folder();
      if (!line.error.empty()) break;
      line.drives.push_back(EnsureTrailingBackslash(AbsolutePath(given)));
    } else if (argument == "--style") {
      const std::string name = i + 1 < arguments.size() ? arguments[++i] : std::string();
      line.error = ProblemOfStyle(name);
      if (line.error.empty()) line.style = StyleOfName(name);
    } else if (argument == "--exit-after-startup") {
      line.exit_after_startup = true;
    } else if (argument == "--help") {
      line.help = true;
    } else if (argument == "--version") {
      line.version = true;
    } else if (!argument.empty() && !argument.starts_with("-")) {
      line.files.push_back(AbsolutePath(argument));
    } else {
      line.error = "'" + argument + "' is not an option of Tallow. tallow --help lists them.";
    }
  }
  if (line.error.empty() && !line.application_folder.empty()) {
    line.error = ProblemOfApplicationFolder(line.application_folder);
    line.is_folder_error = !line.error.empty();
  }
  return line;
}

std::string HelpText() {
  return "Usage: tallow [OPTION]... [FILE.juk]...\n"
         "Finds the MP3 files of this computer and arranges them in jukeboxes.\n"
         "\n"
         "  FILE.juk               open this jukebox after the start. If Tallow is already running "
         "with\n"
         "                         this application folder, the running program opens it\n"
         "  --app-folder DIR       store the library, settings and jukeboxes in DIR. The default "
         "is "
         "the\n"
         "                         program's own folder if it is writable, else the user's data "
         "folder\n"
         "  --drive DIR            search DIR for songs in place of the computer's fixed disks; "
         "may be\n"
         "                         given several times\n"
         "  --style STYLE          run in the style classic or modern this time, whichever the "
         "preferences\n"
         "                         name\n"
         "  --exit-after-startup   start without asking any question, then exit: with code 0 after "
         "a\n"
         "                         normal start; with code 1, and the message on standard error, "
         "if\n"
         "                         the start would have stopped or asked\n"
         "  --help                 print this help and exit\n"
         "  --version              print the version and exit\n"
         "\n"
         "An invalid command line exits with code 2.\n";
}

std::string DefaultApplicationFolder() {
  return DefaultApplicationFolder(std::string(FolderOfPath(ExecutablePath())), UserDataFolder());
}

std::string DefaultApplicationFolder(const std::string& own, const std::string& data) {
  if (!own.empty() && ProblemOfApplicationFolder(own).empty()) return own;
  if (data.empty())
    throw FileError(own, "No file can be created there, and the user has no data folder.");
  const std::string folder = data + "Tallow" + kSeparator;
  CreateFolders(folder);
  const std::string problem = ProblemOfApplicationFolder(folder);
  if (!problem.empty()) throw FileError(folder, problem);
  return folder;
}

}  // namespace tallow

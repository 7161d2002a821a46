// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "app/style_switches.h"

namespace tallow {

/// The options and files given on the command line.
struct CommandLine {
  /// the given folder, absolute, ends in a separator; empty: the default folder
  std::string application_folder;
  std::vector<std::string> drives;  ///< given folders, absolute; empty: the system's drives
  std::vector<std::string> files;   ///< jukeboxes to open, absolute
  std::optional<Style> style;       ///< kClassic or kModern; none: that of the preferences
  bool exit_after_startup = false;  ///< run the whole start-up without any question, then exit
  bool help = false;
  bool version = false;
  std::string error;  ///< what is wrong with the command line; empty when valid
  /// the error is that the application folder cannot be used
  bool is_folder_error = false;
};

/// The exit code for an invalid command line.
inline constexpr int kUsageError = 2;

/// Parses the arguments after the program's name. Stops at the first error.
CommandLine ParseCommandLine(std::span<const std::string> arguments);

/// Why a given drive cannot be searched; empty when the drive can be searched, or is known and may
/// only be away.
///
/// \param is_known whether songs were found on the drive before
std::string ProblemOfDrive(const std::string& folder,
                           const std::function<bool(const std::string&)>& is_known);

/// What --help prints.
std::string HelpText();

/// The folder that the data paths begin with: the executable's folder when it is writable, else a
/// folder "Tallow" in the user's program data, which is created when it is missing.
///
/// \throws FileError when there is no writable folder
std::string DefaultApplicationFolder();
/// DefaultApplicationFolder for given folders.
///
/// \param own  the executable's folder; empty when unknown
/// \param data the user's program data; empty when there is none
std::string DefaultApplicationFolder(const std::string& own, const std::string& data);

}  // namespace tallow

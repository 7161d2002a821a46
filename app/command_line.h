// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tallow {

/// What the user asked for on the command line.
struct CommandLine {
  std::string
      application_folder;  ///< given folder, absolute, ends in a separator; empty: the usual one
  std::vector<std::string> drives;  ///< given folders, absolute; empty: the system's drives
  std::vector<std::string> files;   ///< jukeboxes to open, absolute
  bool exit_after_startup = false;  ///< do the whole start-up without asking anything, then leave
  bool help = false;
  bool version = false;
  std::string error;             ///< what is wrong with the command line; empty when nothing is
  bool is_folder_error = false;  ///< the error is that the application folder cannot be had
};

/// The exit code for a command line that cannot be carried out.
inline constexpr int kUsageError = 2;

/// Reads the arguments behind the program's name. The first error ends the reading.
CommandLine ParseCommandLine(std::span<const std::string> arguments);

/// Why a given drive cannot be searched; empty when it can, and when it is one that is only away.
///
/// \param is_known whether songs were found on the drive before
std::string ProblemOfDrive(const std::string& folder,
                           const std::function<bool(const std::string&)>& is_known);

/// What --help prints.
std::string HelpText();

/// The folder that the data paths begin with: the executable's own when files can be made there,
/// else a folder "Tallow" among the user's program data, which is made when it is missing.
///
/// \throws FileError when there is no folder that files can be made in
std::string UsualApplicationFolder();

}  // namespace tallow

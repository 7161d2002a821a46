// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "util/path_text.h"

namespace tallow {

// Where the program keeps its data. Each path is a suffix appended to the application folder, which
// ends in a separator.

/// The data folder, which holds the library and by default the jukeboxes; ends in a separator.
inline std::string GroupingFolder(const std::string& application_folder) {
  return application_folder + "Grouping" + kSeparator;
}

/// The folder of the program's internal files; ends in a separator.
inline std::string SystemFolder(const std::string& application_folder) {
  return GroupingFolder(application_folder) + "System" + kSeparator;
}

/// The settings file.
inline std::string SettingsPath(const std::string& application_folder) {
  return SystemFolder(application_folder) + "TallowOrganizer.ini";
}

/// The file of the preferences.
inline std::string PreferencesPath(const std::string& application_folder) {
  return SystemFolder(application_folder) + "Preferences.json";
}

/// The default path of the list of folders that hold songs; the settings may name another path.
inline std::string FolderListPath(const std::string& application_folder) {
  return SystemFolder(application_folder) + "LocOfMainTargetFiles.lmz";
}

/// The help file.
inline std::string HelpFilePath(const std::string& application_folder) {
  return application_folder + "tallowhelp.hlp";
}

}  // namespace tallow

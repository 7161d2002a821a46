// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// A file without which the program would not run right.
struct RuntimeFile {
  std::string path;     ///< where it has to be; empty for none
  std::string package;  ///< what brings it, to be read behind "It belongs to"
};

/// The file that start-up looks for first: on Linux the part of Qt that reads JPEG pictures, on Windows
/// the system's library of common controls in the system folder.
///
/// \param qt_plugin_folder where Qt's plug-ins are, without a separator at the end; only Linux uses it
RuntimeFile RequiredRuntimeFile(const std::string& qt_plugin_folder);

}  // namespace tallow

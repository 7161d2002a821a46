// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// A file that the program needs to run correctly.
struct RuntimeFile {
  std::string path;     ///< where the file has to be; empty when no file is needed
  std::string package;  ///< what installs the file, phrased to follow "It belongs to"
};

/// The file that start-up checks first: on Linux the Qt plug-in that reads JPEG pictures, on
/// Windows the system's library of common controls in the system folder.
///
/// \param qt_plugin_folder folder of Qt's plug-ins, without a separator at the end; used on Linux
///                         only
RuntimeFile RequiredRuntimeFile(const std::string& qt_plugin_folder);

}  // namespace tallow

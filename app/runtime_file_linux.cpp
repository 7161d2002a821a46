// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/runtime_file.h"

namespace tallow {

RuntimeFile RequiredRuntimeFile(const std::string& qt_plugin_folder) {
  return {qt_plugin_folder + "/imageformats/libqjpeg.so",
          "Debian's package libqt6gui6 (\"sudo apt install --reinstall libqt6gui6\" restores it)"};
}

}  // namespace tallow

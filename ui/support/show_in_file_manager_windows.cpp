// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/show_in_file_manager.h"
#include "util/start_command_line_windows.h"

namespace tallow {

// A path cannot have quotation marks on Windows.
void ShowInFileManager(const std::string& path, const std::function<void()>& failed) {
  if (!StartCommandLine("explorer.exe /select,\"" + path + "\"")) failed();
}

}  // namespace tallow

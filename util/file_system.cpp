// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/file_system.h"

#include "util/path_text.h"

namespace tallow {

void CreateFolders(const std::string& path) {
  std::string_view parent = path;
  while (!parent.empty() && parent.back() == kSeparator) parent.remove_suffix(1);
  parent = FolderOfPath(parent);
  if (!parent.empty() && parent.size() < path.size() && !FolderExists(std::string(parent)))
    CreateFolders(std::string(parent));
  CreateFolder(path);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/atomic_file.h"

#include "util/file_system.h"

namespace tallow {

void KeepBackup(const std::string& path) {
  if (const auto content = ReadWholeFile(path))
    WriteFileAtomically(path + std::string(kBackupSuffix), *content);
}

}  // namespace tallow

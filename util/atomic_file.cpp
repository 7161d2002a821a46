// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/atomic_file.h"

#include "util/file_system.h"
#include "util/link_backup.h"

namespace tallow {

void KeepBackup(const std::string& path) {
  if (const auto content = ReadWholeFile(path))
    WriteFileAtomically(path + std::string(kBackupSuffix), *content);
}

void KeepReplaced(const std::string& path, std::string_view suffix) {
  KeepReplacedAs(path, path + std::string(suffix));
}

void KeepReplacedAs(const std::string& path, const std::string& other) {
  if (LinkBackup(path, other)) return;
  if (const auto content = ReadWholeFile(path)) WriteFileAtomically(other, *content);
}

}  // namespace tallow

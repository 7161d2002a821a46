// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/atomic_file.h"

#include "util/atomic_file_platform.h"
#include "util/errors.h"
#include "util/file_system.h"

namespace tallow {
namespace {

/// A file larger than this is renamed to the backup name instead of being copied through memory.
constexpr std::uint64_t kMaxCopied = std::uint64_t{1} << 30U;

}  // namespace

void KeepBackup(const std::string& path) {
  if (const auto content = ReadWholeFile(path))
    WriteFileAtomically(path + std::string(kBackupSuffix), *content);
}

void MoveToBackup(const std::string& path, std::string_view suffix) {
  const std::string other = path + std::string(suffix);
  if (IsLinkToFile(path))
    KeepReplacedAs(path, other);
  else
    MoveFileTo(path, other);
}

void KeepReplaced(const std::string& path, std::string_view suffix) {
  KeepReplacedAs(path, path + std::string(suffix));
}

void KeepReplacedAs(const std::string& path, const std::string& other) {
  if (LinkBackup(path, other)) return;
  try {
    if (const auto content = ReadWholeFile(path, kMaxCopied)) WriteFileAtomically(other, *content);
  } catch (const FileTooLargeError&) {
    MoveFileTo(path, other);
  }
}

}  // namespace tallow

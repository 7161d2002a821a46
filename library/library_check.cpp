// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_check.h"

#include "library/library_companion.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// Reads the header of the companion beside a library file; no value when there is no usable
/// companion.
std::optional<CompanionHeader> CompanionBeside(const std::string& path) {
  try {
    const auto bytes =
        ReadWholeFile(std::string(FolderOfPath(path)).append(kCompanionFileName), kMaxLibraryBytes);
    return bytes ? HeaderOfCompanion(*bytes) : std::nullopt;
  } catch (const FileError&) {
    // CompanionFile::Load reports this error.
    return std::nullopt;
  }
}

bool IsOf(const CompanionHeader& companion, std::uint64_t checksum) {
  return checksum != 0 && (checksum == companion.library || checksum == companion.before);
}

}  // namespace

LibraryCheck CheckLibrary(const std::string& path) {
  LibraryCheck check;
  check.file = InspectLibrary(path);
  const auto companion = CompanionBeside(path);
  if (!companion) return check;
  check.is_whole = check.file.exists && IsOf(*companion, check.file.checksum);
  check.is_changed = check.file.exists && !check.is_whole;
  if (check.is_whole) return check;
  try {
    const LibraryInspection backup = InspectLibrary(path + std::string(kBackupSuffix));
    if (backup.sound && IsOf(*companion, backup.checksum)) check.last_good = backup.usable;
  } catch (const FileError&) {
    // An unreadable backup cannot be used.
  }
  return check;
}

std::string FreeSetAsidePath(const std::string& path) {
  // Keep at most nine damaged files; the ninth is replaced.
  constexpr int kMaxSetAside = 9;
  std::string free = path + std::string(kSetAsideSuffix);
  for (int number = 2; number <= kMaxSetAside && !IsGone(free); ++number)
    free = path + std::string(kSetAsideSuffix) + "-" + std::to_string(number);
  return free;
}

void UseLastGood(const std::string& path, const std::string& set_aside) {
  const std::string backup = path + std::string(kBackupSuffix);
  const auto bytes = ReadWholeFile(backup, kMaxLibraryBytes);
  if (!bytes) throw FileError(backup, "is gone");
  if (!IsGone(path)) KeepReplacedAs(path, set_aside);
  WriteFileAtomically(path, *bytes);
}

}  // namespace tallow

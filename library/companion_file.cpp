// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/companion_file.h"

#include "library/library_check.h"
#include "library/library_file.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {

std::string CompanionFile::Path() const {
  return settings_.LocOfGroupingDir() + std::string(kCompanionFileName);
}

void CompanionFile::Load(std::uint64_t checksum, SongTable& table,
                         std::vector<std::string>& problems) {
  header_ = {};
  header_.library = checksum;
  is_unread_ = false;
  const std::string path = Path();
  try {
    const auto bytes = ReadWholeFile(path, kMaxLibraryBytes);
    if (!bytes) return;
    if (const auto header = DecodeCompanion(*bytes, checksum, table)) {
      header_ = *header;
      header_.library = checksum;
      CompleteFromBackup(table);
    } else if (!HeaderOfCompanion(*bytes)) {
      KeepReplaced(path);
      problems.push_back(path + " is damaged. A copy was kept with .bak appended to its name.");
    }
  } catch (const FileTooLargeError&) {
    is_unread_ = true;
    problems.push_back(path +
                       " is damaged. It will be kept with .bak appended to its name when a new "
                       "one is written.");
  } catch (const FileError& error) {
    is_unread_ = true;
    problems.push_back(path + " cannot be read (" + error.reason() +
                       "), so the sizes of the songs' files are not known. Make it readable and "
                       "start Tallow again.");
  }
}

bool CompanionFile::ReadAgain(SongTable& table) {
  if (!is_unread_) return true;
  try {
    const auto bytes = ReadWholeFile(Path(), kMaxLibraryBytes);
    if (bytes) DecodeCompanion(*bytes, header_.library, table);
    is_unread_ = false;
  } catch (const FileError&) {
    // Still unreadable.
  }
  return !is_unread_;
}

void CompanionFile::CompleteFromBackup(SongTable& table) const {
  const std::string backup = Path() + std::string(kBackupSuffix);
  if (IsGone(backup)) return;
  try {
    const auto bytes = ReadWholeFile(backup, kMaxLibraryBytes);
    if (bytes) CompleteFacts(*bytes, table);
  } catch (const FileError&) {
    // The backup is optional; all known facts are already in the table.
  }
}

bool CompanionFile::IsLink() const {
  const std::string folder = AbsolutePath(settings_.LocOfGroupingDir() + ".");
  return AbsolutePath(Path()) != folder + kSeparator + std::string(kCompanionFileName);
}

void CompanionFile::Write(const CompanionHeader& header, SongTable& table) {
  const std::string path = Path();
  if (!ReadAgain(table)) {
    // Do not replace a companion that cannot be checked now, or a link, whose target may be
    // readable later. Otherwise move the companion to its backup.
    if (IsLink() || CheckFile(path).presence == FilePresence::kUnknown)
      throw FileError(path, "cannot be read");
    MoveToBackup(path);
    is_unread_ = false;
  }
  WriteFileAtomically(path, EncodeCompanion(header, table));
}

void CompanionFile::Save(SongTable& table) {
  // Rows keep their positions, so the facts match the rows of the file even if the table has more
  // rows.
  if (header_.library == 0) return;
  try {
    Write(header_, table);
  } catch (const FileError&) {
    // The companion is rebuilt when it is lost.
  }
}

void CompanionFile::Trust(SongTable& table) {
  try {
    if (!is_unread_) {
      const auto bytes = ReadWholeFile(Path(), kMaxLibraryBytes);
      // When only bytes changed, the row count is the same. A backup may have fewer or other rows;
      // then the facts are not used.
      if (bytes && RowsOfCompanion(*bytes) == table.rows()) CompleteFacts(*bytes, table);
      KeepReplaced(Path(), kSetAsideSuffix);
    }
    Save(table);
  } catch (const FileError&) {
    // The next start asks the user again.
  }
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tallow {

/// Suffix of the temporary file that holds the new content until it replaces the old file.
inline constexpr std::string_view kTemporarySuffix = ".new";

/// Suffix of the backup of a file.
inline constexpr std::string_view kBackupSuffix = ".bak";

/// Creates a file or replaces its content, so that a failure or a kill at any moment leaves either
/// the old content or the new content under its name.
///
/// The content is written to a temporary file beside the target (the name followed by ".new"),
/// flushed to disk, and renamed over the target. A link to a file is followed: the file is
/// replaced, not the link. On Linux the permissions are kept where the file system has any. A
/// dangling link is an error, because its target may be on a drive that is not mounted.
///
/// \param before_replacing callback, called once the new content is on disk and before the rename;
///        if it throws, the old content stays. May be empty
/// \throws FileError when anything fails, a read-only file included; the old content is then
/// untouched
void WriteFileAtomically(const std::string& path, std::string_view content,
                         const std::function<void()>& before_replacing = {});

/// Copies a file to its name followed by ".bak", replacing an earlier backup. Does nothing when the
/// file does not exist.
///
/// \throws FileError
void KeepBackup(const std::string& path);

/// Backs up a file that WriteFileAtomically is about to replace. Where the file system supports
/// hard links, the backup is a hard link and nothing is copied. On Linux a link to a file is
/// followed; the backup lies beside the link.
///
/// \param suffix appended to the name to form the backup's name
/// \throws FileError
void KeepReplaced(const std::string& path, std::string_view suffix = kBackupSuffix);
/// KeepReplaced with a full path for the backup.
void KeepReplacedAs(const std::string& path, const std::string& other);

/// Renames a file to its name followed by ".bak", replacing an earlier backup. Unlike KeepBackup
/// this also works on a file that cannot be read. A link to a file stays; its target is backed up
/// as by KeepReplacedAs.
///
/// \param suffix appended to the name to form the backup's name
/// \throws FileError
void MoveToBackup(const std::string& path, std::string_view suffix = kBackupSuffix);

}  // namespace tallow

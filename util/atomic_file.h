// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tallow {

/// What the name of a file carries while its new content is being written beside it.
inline constexpr std::string_view kUnfinishedSuffix = ".new";

/// What the name of a damaged file carries once it is kept aside.
inline constexpr std::string_view kBackupSuffix = ".bak";

/// Replaces the content of a file, or makes the file, so that a failure or a kill at any moment
/// leaves either the old content or the new one under its name.
///
/// The content goes to a file beside it (the name followed by ".new"), is flushed to the disk, and
/// takes the name over. A link to a
/// file is followed, so that the file is replaced and not the link; on Linux permissions are kept where the
/// disk keeps any. A link that leads to nothing is not replaced: its file may be on a disk
/// that is away.
///
/// \param before_replacing is called once the new content is on the disk beside the old one; what it
///        throws leaves the old one. May be empty
/// \throws FileError when anything fails, a read-only file included; the old content is then
/// untouched
void WriteFileAtomically(const std::string& path, std::string_view content,
                         const std::function<void()>& before_replacing = {});

/// Keeps a copy of a file under its name followed by ".bak", in place of an earlier one. A file
/// that does not exist is left alone.
///
/// \throws FileError
void KeepBackup(const std::string& path);

/// KeepBackup of a file that is about to be replaced by WriteFileAtomically. Where the file system knows
/// hard links, nothing is copied. On Linux a link to a file is followed; the backup lies beside the link.
///
/// \param suffix of the name that it is kept under
/// \throws FileError
void KeepReplaced(const std::string& path, std::string_view suffix = kBackupSuffix);
/// KeepReplaced under any name.
void KeepReplacedAs(const std::string& path, const std::string& other);

/// Gives a file the name followed by ".bak", in place of an earlier one. Unlike KeepBackup this works on
/// a file that cannot be read. A link to a file stays, and a copy of the file is kept.
///
/// \param suffix of the name that it gets
/// \throws FileError
void MoveToBackup(const std::string& path, std::string_view suffix = kBackupSuffix);

}  // namespace tallow

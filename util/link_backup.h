// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Makes a hard link to a file under another name, in place of what has that name.
///
/// \returns false where that cannot be done; what has the name is as it was then
bool LinkBackup(const std::string& path, const std::string& backup) noexcept;

/// Whether a path leads to a regular file by a link.
bool IsLinkToFile(const std::string& path) noexcept;

/// Gives a file another name, in place of what has that name.
/// \throws FileError
void MoveFileTo(const std::string& path, const std::string& other);

}  // namespace tallow

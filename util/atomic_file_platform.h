// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Creates a hard link to a file under another name, replacing whatever has that name.
///
/// \returns false on failure; the file with that name is then unchanged
bool LinkBackup(const std::string& path, const std::string& backup) noexcept;

/// Whether a path is a link to a regular file.
bool IsLinkToFile(const std::string& path) noexcept;

/// Renames a file, replacing whatever has the new name.
/// \throws FileError
void MoveFileTo(const std::string& path, const std::string& other);

}  // namespace tallow

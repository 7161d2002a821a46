// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tallow {

enum class CreateResult {
  kMade,
  kExists,      ///< the name exists already, possibly as a dangling link
  kImpossible,  ///< the folder is not writable or the disk is full; nothing is left behind
};

/// Creates a file that must not exist yet. When several processes try at once, exactly one
/// succeeds, on every file system.
CreateResult MakeExclusiveFile(const std::string& path, std::string_view content);

/// Reads a regular file of at most max_bytes bytes. Does not block on pipes, and does not follow
/// links.
/// \returns no value when the file is not regular, is larger, or cannot be read
std::optional<std::string> ReadSmallFile(const std::string& path, std::size_t max_bytes);

/// Whether the name exists in the folder, even as a dangling link.
bool NameExists(const std::string& path);

/// Renames a file over another file, replacing it.
/// \returns whether the rename succeeded
bool RenameOver(const std::string& from, const std::string& to);

}  // namespace tallow

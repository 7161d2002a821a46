// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tallow {

enum class MadeFile {
  kMade,
  kExists,      ///< something of that name was there before, be it a link that leads nowhere
  kImpossible,  ///< the folder cannot be written, or the disk is full; nothing is left behind
};

/// Makes a file unless there is one. Of several that try at once one succeeds, on every file system.
MadeFile MakeExclusiveFile(const std::string& path, std::string_view content);

/// The content of a regular file of at most so many bytes. Does not wait, and follows no link.
/// \returns no value when it is something else, or cannot be read
std::optional<std::string> ReadSmallFile(const std::string& path, std::size_t max_bytes);

/// Whether there is anything of that name, be it a link that leads nowhere.
bool NameIsTaken(const std::string& path);

/// Gives a file the name of another one, which is gone then.
/// \returns whether that was possible
bool RenameOver(const std::string& from, const std::string& to);

}  // namespace tallow

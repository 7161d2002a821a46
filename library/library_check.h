// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "library/library_file.h"

namespace tallow {

/// Suffix of a library file that was replaced by its backup.
inline constexpr std::string_view kSetAsideSuffix = ".damaged";

/// The condition of a library file, from its content and from the checksums in its companion.
struct LibraryCheck {
  LibraryInspection file;
  /// The file's checksum is in the companion, as the current or the previous library: Tallow wrote
  /// these bytes.
  bool is_whole = false;
  /// There is a valid companion, and the file's checksum is not in it.
  bool is_changed = false;
  /// Number of songs in the backup, if the companion has its checksum. No value when there is no
  /// such backup, and when the file is whole.
  std::optional<std::int32_t> last_good;
};

/// Inspects a library file and compares it with its companion.
///
/// A file with changed bytes usually still parses, with a different rank, name or folder; only a
/// checksum detects that. Two checksums are valid, because the program may end after writing the
/// companion and before writing the library.
///
/// \param path of the library file; the companion and the backup are beside it
/// \throws FileError when the library exists but cannot be read
LibraryCheck CheckLibrary(const std::string& path);

/// A free name for keeping a damaged library file: its name, kSetAsideSuffix, and a number if that
/// name exists.
std::string FreeSetAsidePath(const std::string& path);

/// Replaces a library file by its backup.
///
/// \param set_aside where to keep the replaced file, see FreeSetAsidePath
/// \throws FileError; the library file is then unchanged
void UseLastGood(const std::string& path, const std::string& set_aside);

}  // namespace tallow

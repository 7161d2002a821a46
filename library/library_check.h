// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "library/library_file.h"

namespace tallow {

/// What a library file's name carries when another one was taken in its place.
inline constexpr std::string_view kSetAsideSuffix = ".damaged";

/// What a library file is worth, by itself and by the checksums in its companion.
struct LibraryCheck {
  LibraryInspection file;
  /// The companion has the file's checksum, or that of the one before: these are bytes that Tallow wrote.
  bool is_whole = false;
  /// There is a sound companion, and the file's checksum is not in it.
  bool is_changed = false;
  /// How many songs the backup beside it holds, whose checksum is in the companion. No value where there is
  /// none, or where the file itself needs none.
  std::optional<std::int32_t> last_good;
};

/// Inspects a library file and compares it with its companion.
///
/// Bytes that change on a disk mostly leave a file that still parses, with another rank, name or folder in
/// it; only the checksums tell. Two are right because a program may end between writing the companion and
/// writing the library.
///
/// \param path of the library file; its companion and its backup lie beside it
/// \throws FileError when the library exists but cannot be read
LibraryCheck CheckLibrary(const std::string& path);

/// The name under which a library file is set aside: kSetAsideSuffix behind its own, and a number where that
/// is taken.
std::string FreeSetAsidePath(const std::string& path);

/// Puts the backup in the place of a library file.
///
/// \param set_aside where the library file is kept, see FreeSetAsidePath
/// \throws FileError; the library file is as it was then
void UseLastGood(const std::string& path, const std::string& set_aside);

}  // namespace tallow

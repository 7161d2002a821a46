// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Whether a folder is, or lies in, a bin of deleted files.
///
/// On every system: a path with ":\RECYCLED" or ":\$RECYCLE.BIN" in it, in any case, the separator
/// being the system's own. On Linux also a folder ".Trash" or ".Trash-" with a number, as they
/// stand at the root of a disk, and "Trash" in the user's data folder.
bool IsInRecycleBin(std::string_view folder);

}  // namespace tallow

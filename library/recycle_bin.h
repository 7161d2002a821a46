// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace tallow {

/// Whether a folder is, or lies in, a recycle bin.
///
/// On every system: the path contains ":\RECYCLED" or ":\$RECYCLE.BIN", in any case and with the
/// system's own separator. On Linux also: a folder named ".Trash", or ".Trash-" and a number, as at
/// the root of a disk, and "Trash" in the user's data folder.
bool IsInRecycleBin(std::string_view folder);

}  // namespace tallow

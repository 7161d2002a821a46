// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tallow {

/// Returns the prefix for the names of local servers. On Linux the prefix is a private folder, so
/// that no other user can occupy a name; on Windows it is empty.
QString LocalServerFolder();

/// Returns whether only the current user can listen under a name with this prefix.
bool LocalServersArePrivate();

}  // namespace tallow

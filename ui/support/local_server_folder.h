// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tallow {

/// What the name of a local server begins with, so that no other user can take it first: on Linux a private
/// folder, on Windows nothing.
QString LocalServerFolder();

/// Whether nobody but the user can listen under such a name.
bool LocalServersArePrivate();

}  // namespace tallow

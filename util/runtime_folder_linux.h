// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// The folder for sockets and other files of the user's session, ending in a separator; created
/// when it does not exist. It is "tallow" in XDG_RUNTIME_DIR, or, when that variable does not name
/// a private folder of this user, "tallow-" and the user id in the temporary folder.
///
/// \throws FileError when no private folder can be created
std::string RuntimeFolder();

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// The folder for sockets and the like that live as long as the user's session, ending in a separator
/// and made when it is not there: "tallow" in XDG_RUNTIME_DIR, or "tallow-" and the user's number in
/// the temporary folder where that variable names no private folder of this user.
///
/// \throws FileError when there can be no such folder that nobody else may enter
std::string RuntimeFolder();

}  // namespace tallow

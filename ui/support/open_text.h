// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Opens a text file for its reader: in Notepad on Windows, elsewhere in what the desktop opens texts with.
void OpenText(const std::string& path);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Opens a text file for the user: on Windows in Notepad, elsewhere in the desktop's default
/// application for text files.
void OpenText(const std::string& path);

}  // namespace tallow

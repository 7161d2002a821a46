// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace tallow {

/// Shows a file in the file manager of the desktop, selected in its folder. On a desktop whose file
/// manager cannot select a file, it shows the folder.
/// \param path in the encoding of the file system; the file may be gone
void ShowInFileManager(const std::string& path);

}  // namespace tallow

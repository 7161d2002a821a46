// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

namespace tallow {

/// Shows a file in the file manager of the desktop, selected in its folder. On a desktop whose file
/// manager cannot select a file, it shows the folder.
/// \param path   in the encoding of the file system; the file may be gone
/// \param failed is called, perhaps later, if no file manager could be started
void ShowInFileManager(const std::string& path, const std::function<void()>& failed);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "ui/frame/frame_commands.h"

class QMdiArea;
class QMenu;
class QMenuBar;

namespace tallow {

class FileMenu;

/// Adds the frame window's menus to its menu bar. Menus and items carry their names as object names, and
/// the items their keys, which are defined nowhere else.
///
/// \param act runs a command
/// \returns the File menu, whose recent files are its own business
FileMenu* AddFrameMenus(QMenuBar& bar, const std::function<void(FrameCommand)>& act);

/// Adds the open windows below the items of the window list menu, with a check at the active one, each time
/// the menu is about to be shown.
///
/// \param area has to outlive the menu
void KeepWindowList(QMenu& menu, QMdiArea& area);

}  // namespace tallow

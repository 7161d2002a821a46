// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "ui/frame/frame_commands.h"

class QMdiArea;
class QMenu;
class QMenuBar;

namespace tallow {

class FileMenu;

/// Adds the frame window's menus to its menu bar. Menus and items carry their names as object
/// names, and an item that CommandStates may disable its command as data. The shortcut keys of the
/// items are defined only here.
///
/// \param act runs a command
/// \returns the File menu, which manages its recent files itself
FileMenu* AddFrameMenus(QMenuBar& bar, const std::function<void(FrameCommand)>& act);

/// Lists the open windows below the items of the window list menu, each time before the menu is
/// shown. The active window has a check mark.
///
/// \param area has to outlive the menu
void KeepWindowList(QMenu& menu, QMdiArea& area);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "ui/frame/frame_commands.h"

class QMainWindow;
class QToolBar;

namespace tallow {

/// Adds the frame window's toolbar "Toolbar1" with its 17 buttons, two of which are separators. A
/// button's object name is "Button" and its index from 1; a button that CommandStates may disable
/// has its command as data.
///
/// \param act runs a command; `checks` is whether the player's path must be set first, which
///        some buttons require and the menu items of the same commands do not
QToolBar* AddFrameToolbar(QMainWindow& frame,
                          const std::function<void(FrameCommand command, bool checks)>& act);

}  // namespace tallow

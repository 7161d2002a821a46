// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "ui/frame/frame_commands.h"

class QMainWindow;
class QToolBar;

namespace tallow {

/// Adds the frame window's toolbar "Toolbar1" with its 17 buttons. A button is named "Button" and its index
/// from 1; two of them are separators.
///
/// \param act runs a command; "checks" says that the player has to be known first, which some buttons ask
///        for and the menu items of the same commands do not
QToolBar* AddFrameToolbar(QMainWindow& frame,
                          const std::function<void(FrameCommand command, bool checks)>& act);

}  // namespace tallow

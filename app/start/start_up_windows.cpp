// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/start_up_windows.h"

namespace tallow {

bool StartUpWindows::Ask(const std::string& text) {
  return Show({.text = text, .icon = MessageIcon::kQuestion, .buttons = MessageButtons::kYesNo}) ==
         MessageAnswer::kYes;
}

}  // namespace tallow

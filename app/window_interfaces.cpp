// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/window_interfaces.h"

#include "jukebox/jukebox.h"

namespace tallow {

std::optional<bool> JukeboxWindows::AskDismissable(const std::string& text) {
  const MessageAnswer answer = Show({.text = text,
                                     .icon = MessageIcon::kQuestion,
                                     .buttons = MessageButtons::kYesNo,
                                     .can_be_dismissed = true});
  if (answer == MessageAnswer::kCancel) return std::nullopt;
  return answer == MessageAnswer::kYes;
}

bool OpeningWindows::LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library,
                                 const ResolveConfusedSongs& ask) {
  return jukebox.Load(path, library, ask);
}

}  // namespace tallow

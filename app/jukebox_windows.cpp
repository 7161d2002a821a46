// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/jukebox_windows.h"

#include "jukebox/jukebox.h"

namespace tallow {

bool OpeningWindows::LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library,
                                 const ResolveConfusedSongs& ask) {
  return jukebox.Load(path, library, ask);
}

}  // namespace tallow

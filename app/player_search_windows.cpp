// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>
// The one below needs what the one above declares.
#include <dbghelp.h>
#include <string>

#include "app/player_search.h"
#include "util/text.h"
#include "util/wide_text_windows.h"

namespace tallow {

std::string_view PlayerProgramName() { return "winamp.exe"; }

std::string_view HowToInstallPlayer() { return "Install the player, winamp.exe, yourself."; }

std::string FindPlayerNearby() { return {}; }
std::string FindPlayerOnPath() { return {}; }

std::string FindWinampUnder(const std::string& root, const DriveList& /*drives*/) {
  // The call writes at most this many characters and does not say when it is not enough.
  wchar_t path[MAX_PATH + 1] = {};
  wchar_t name[] = L"winamp.exe";
  std::wstring start = ToWide(root);
  if (!SearchTreeForFileW(start.data(), name, path)) return {};
  return ToLower(FromWide(path));
}

}  // namespace tallow

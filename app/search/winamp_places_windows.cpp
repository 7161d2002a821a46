// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <string_view>
#include <windows.h>

#include "app/search/winamp_places.h"
// shlobj.h needs the declarations of windows.h.
#include <shlobj.h>

#include "app/search/player_search.h"
#include "util/path_text.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

constexpr const wchar_t* kUninstallEntry =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Winamp";

/// A folder of the system that holds programs; empty if it has none.
std::string FolderOfPrograms(const KNOWNFOLDERID& id) {
  wchar_t* path = nullptr;
  std::string folder;
  if (SUCCEEDED(SHGetKnownFolderPath(id, 0, nullptr, &path))) folder = FromWide(path);
  CoTaskMemFree(path);
  return folder.empty() ? folder : EnsureTrailingBackslash(folder);
}

/// A text of an entry in the list of installed programs; empty if it has none.
std::string TextOfEntry(HKEY entry, const wchar_t* name) {
  // A longer text names no file that Windows can run. Variables in the text are replaced.
  wchar_t text[4096] = {};
  DWORD size = sizeof text;
  if (RegGetValueW(entry, nullptr, name, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS)
    return {};
  return FromWide(text);
}

/// The folder of the file that a command begins with, with or without quotes. An icon's number may
/// follow the file.
std::string FolderOfCommand(std::string_view command) {
  if (command.starts_with('"')) {
    command.remove_prefix(1);
    command = command.substr(0, command.find('"'));
  }
  return std::string(FolderOfPath(command));
}

/// The folders where the program of an entry may lie.
std::vector<std::string> FoldersOfEntry(HKEY entry) {
  const std::string location = TextOfEntry(entry, L"InstallLocation");
  return {location.empty() ? location : EnsureTrailingBackslash(location),
          FolderOfCommand(TextOfEntry(entry, L"DisplayIcon")),
          FolderOfCommand(TextOfEntry(entry, L"UninstallString"))};
}

std::vector<std::string> LikelyFolders() {
  std::vector<std::string> folders;
  for (const KNOWNFOLDERID& id : {FOLDERID_ProgramFilesX86, FOLDERID_ProgramFilesX64}) {
    const std::string programs = FolderOfPrograms(id);
    if (!programs.empty()) folders.push_back(programs + "Winamp\\");
  }
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    for (const REGSAM view : {KEY_WOW64_32KEY, KEY_WOW64_64KEY}) {
      HKEY entry = nullptr;
      if (RegOpenKeyExW(root, kUninstallEntry, 0, KEY_READ | view, &entry) != ERROR_SUCCESS)
        continue;
      const std::vector<std::string> more = FoldersOfEntry(entry);
      folders.insert(folders.end(), more.begin(), more.end());
      RegCloseKey(entry);
    }
  }
  return folders;
}

}  // namespace

std::vector<std::string> WinampsInUsualPlaces() {
  std::vector<std::string> found;
  for (const std::string& folder : LikelyFolders()) {
    if (!IsAbsolutePath(folder)) continue;
    const std::string player = PlayerIn(folder);
    if (!player.empty() && std::find(found.begin(), found.end(), player) == found.end())
      found.push_back(player);
  }
  return found;
}

}  // namespace tallow

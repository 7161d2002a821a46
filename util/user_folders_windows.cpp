// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "util/path_text.h"
#include "util/user_folders.h"
#include "util/wide_text_windows.h"

namespace tallow {

namespace {

/// The folder that an environment variable names, ending in a separator; empty for none.
std::string FolderOfVariable(const wchar_t* name) {
  const DWORD needed = GetEnvironmentVariableW(name, nullptr, 0);
  std::wstring value(needed, L'\0');
  const DWORD length = GetEnvironmentVariableW(name, value.data(), needed);
  if (length == 0 || length >= needed) return {};
  value.resize(length);
  return EnsureTrailingBackslash(FromWide(value));
}

}  // namespace

std::string UserDataFolder() { return FolderOfVariable(L"LOCALAPPDATA"); }

std::string HomeFolder() { return FolderOfVariable(L"USERPROFILE"); }

std::string ExecutablePath() {
  // GetModuleFileNameW does not return the size needed, so double the buffer until the path fits.
  for (std::wstring path(MAX_PATH, L'\0');; path.resize(path.size() * 2)) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) return {};
    if (length < path.size()) return FromWide({path.data(), length});
  }
}

}  // namespace tallow

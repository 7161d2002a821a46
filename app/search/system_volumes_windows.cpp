// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <windows.h>
#include <winnetwk.h>

#include "app/search/system_volumes.h"
#include "util/text.h"
#include "util/user_folders.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

/// Suppresses the system's dialog that asks for a medium in an empty drive.
class SuppressErrorDialogs {
 public:
  SuppressErrorDialogs() noexcept { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before_); }
  SuppressErrorDialogs(const SuppressErrorDialogs&) = delete;
  SuppressErrorDialogs& operator=(const SuppressErrorDialogs&) = delete;
  ~SuppressErrorDialogs() { SetThreadErrorMode(before_, nullptr); }

 private:
  DWORD before_ = 0;
};

/// The network share mapped to a drive letter; empty when the letter is not mapped.
std::string ShareOf(const std::wstring& root) {
  std::array<wchar_t, 1024> share{};
  auto length = static_cast<DWORD>(share.size());
  const std::wstring letter = root.substr(0, 2);
  if (WNetGetConnectionW(letter.c_str(), share.data(), &length) != NO_ERROR) return {};
  return FromWide(share.data());
}

/// Whether a drive letter is an alias of a folder.
bool IsSubstitute(const std::wstring& root) {
  std::array<wchar_t, 1024> target{};
  const std::wstring letter = root.substr(0, 2);
  return QueryDosDeviceW(letter.c_str(), target.data(), static_cast<DWORD>(target.size())) != 0 &&
         std::wstring_view(target.data()).starts_with(L"\\??\\");
}

std::string VolumeAt(const std::wstring& root) {
  if (GetDriveTypeW(root.c_str()) == DRIVE_REMOTE) {
    const std::string share = ShareOf(root);
    return share.empty() ? share : "source " + ToLower(share);
  }
  // A substituted drive letter has the serial number of another drive letter.
  if (IsSubstitute(root)) return {};
  DWORD serial = 0;
  if (!GetVolumeInformationW(root.c_str(), nullptr, 0, &serial, nullptr, nullptr, nullptr, 0) ||
      serial == 0)
    return {};
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%08lX", serial);
  return std::string("serial ") + text.data();
}

bool IsThere(const std::wstring& root) {
  return GetFileAttributesW(root.c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace

MountedVolumes SystemVolumes() {
  const SuppressErrorDialogs suppress;
  MountedVolumes volumes;
  const DWORD letters = GetLogicalDrives();
  for (int k = 0; k < 26; ++k) {
    if ((letters >> k & 1U) == 0) continue;
    const std::wstring root = {static_cast<wchar_t>(L'A' + k), L':', L'\\'};
    // A network drive is checked later, where the program can wait for the server.
    const bool network = GetDriveTypeW(root.c_str()) == DRIVE_REMOTE;
    if (!network && !IsThere(root)) continue;
    volumes.push_back({FromWide(root), {VolumeAt(root), "\\"}, false, network});
  }
  return volumes;
}

WalkLimits SystemWalkLimits() { return {HomeFolder(), {}}; }

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_window_windows.h"

#include <string_view>

namespace tallow {
namespace {

/// More than the length of the titles and class names that are compared.
constexpr int kMaxText = 256;

}  // namespace

std::wstring WindowTitle(HWND window) {
  wchar_t text[kMaxText];
  // Unlike GetWindowTextW, does not wait for the window; the system keeps the title.
  const int length = InternalGetWindowText(window, text, kMaxText);
  return {text, static_cast<std::size_t>(length > 0 ? length : 0)};
}

bool IsPlayerClient(HWND window) {
  wchar_t name[kMaxText];
  const int length = GetClassNameW(window, name, kMaxText);
  return length > 0 &&
         std::wstring_view(name, static_cast<std::size_t>(length)) == kPlayerLinkClass;
}

}  // namespace tallow

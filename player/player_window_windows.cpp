// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_window_windows.h"

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

bool HasClass(HWND window, std::wstring_view name) {
  wchar_t text[kMaxText];
  const int length = GetClassNameW(window, text, kMaxText);
  return length > 0 && std::wstring_view(text, static_cast<std::size_t>(length)) == name;
}

}  // namespace tallow

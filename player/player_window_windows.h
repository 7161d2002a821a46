// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <windows.h>

namespace tallow {

// The windows that Tallow and its own player use to talk to each other on Windows.
//
// The player has a top-level window of Winamp's class that is never shown; its title names the
// application folder. It receives the messages of player_messages.h. The link has a window that
// only receives messages. Its handle is wParam of each copy-data record that it sends, so that the
// player can send it the answer to kAsk, as a copy-data record of the same code, before the message
// returns 1. While that window exists, the player does not end by itself.

/// The class of the player's window: that of Winamp.
inline constexpr const wchar_t* kPlayerWindowClass = L"Winamp v1.x";

/// The class of the link's window.
inline constexpr const wchar_t* kPlayerLinkClass = L"Tallow player link";

/// What the title of the window of each of Tallow's own players begins with.
inline constexpr const char* kPlayerTitleStart = "Tallow player";

/// The title of the player's window.
/// \param identifier of the application folder, see PlayerIdentifier; may be empty
inline std::string PlayerWindowTitle(const std::string& identifier) {
  return identifier.empty() ? kPlayerTitleStart : kPlayerTitleStart + (" " + identifier);
}

/// The text of a window's title.
std::wstring WindowTitle(HWND window);

/// Whether a window exists and is of a class.
bool HasClass(HWND window, std::wstring_view name);

/// Whether a window is a link's.
inline bool IsPlayerClient(HWND window) { return HasClass(window, kPlayerLinkClass); }

}  // namespace tallow

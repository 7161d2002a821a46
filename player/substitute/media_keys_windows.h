// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <windows.h>

namespace tallow {

class SongPlayer;

/// The media keys of the keyboard, which control a player that plays or is paused. A player that is
/// stopped leaves them to other programs. So does one that finds them in use.
class MediaKeys {
 public:
  /// \param window gets the message WM_HOTKEY; must outlive this object
  /// \param player must outlive this object
  MediaKeys(HWND window, SongPlayer& player) noexcept : window_(window), player_(player) {}
  MediaKeys(const MediaKeys&) = delete;
  MediaKeys& operator=(const MediaKeys&) = delete;
  ~MediaKeys() { Release(); }

  /// Takes or releases the keys. Call this when the player's status has changed.
  void FollowStatus();

  /// Executes the command of a key.
  /// \param key wParam of WM_HOTKEY
  void Press(int key);

 private:
  void Take();
  void Release() noexcept;

  HWND window_;
  SongPlayer& player_;
  bool taken_ = false;
};

}  // namespace tallow

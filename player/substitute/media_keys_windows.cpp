// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/media_keys_windows.h"

#include "player/substitute/song_player.h"

namespace tallow {
namespace {

/// The number of each key in WM_HOTKEY is the key's code.
constexpr int kKeys[] = {VK_MEDIA_PLAY_PAUSE, VK_MEDIA_STOP, VK_MEDIA_NEXT_TRACK,
                         VK_MEDIA_PREV_TRACK};

}  // namespace

void MediaKeys::FollowStatus() {
  if (player_.Status() == kStopped)
    Release();
  else
    Take();
}

void MediaKeys::Press(int key) {
  switch (key) {
    case VK_MEDIA_PLAY_PAUSE:
      return player_.TogglePause();
    case VK_MEDIA_STOP:
      return player_.Stop();
    case VK_MEDIA_NEXT_TRACK:
      return player_.Next();
    case VK_MEDIA_PREV_TRACK:
      return player_.Previous();
    default:
      return;
  }
}

void MediaKeys::Take() {
  if (taken_) return;
  taken_ = true;
  // Fails for a key that another program has taken.
  for (const int key : kKeys) RegisterHotKey(window_, key, MOD_NOREPEAT, static_cast<UINT>(key));
}

void MediaKeys::Release() noexcept {
  if (!taken_) return;
  taken_ = false;
  for (const int key : kKeys) UnregisterHotKey(window_, key);
}

}  // namespace tallow

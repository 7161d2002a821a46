// SPDX-License-Identifier: GPL-3.0-or-later
#include <QKeyEvent>

#include "ui/jukebox/explorer/digit_keys.h"

namespace tallow {

int DigitOfNativeKey(const QKeyEvent& key) {
  // The key codes of X11 and Wayland: 10 to 18 for the keys 1 to 9, then 19 for the key 0.
  constexpr quint32 kKeyOf1 = 10;
  constexpr quint32 kKeyOf0 = 19;
  const quint32 code = key.nativeScanCode();
  if (code < kKeyOf1 || code > kKeyOf0) return -1;
  return code == kKeyOf0 ? 0 : static_cast<int>(code - kKeyOf1) + 1;
}

}  // namespace tallow

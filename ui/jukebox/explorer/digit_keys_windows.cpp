// SPDX-License-Identifier: GPL-3.0-or-later
#include <QKeyEvent>

#include "ui/jukebox/explorer/digit_keys.h"

namespace tallow {

int DigitOfNativeKey(const QKeyEvent& key) {
  // The virtual keys of these keys are the characters of the digits.
  const quint32 code = key.nativeVirtualKey();
  return code >= '0' && code <= '9' ? static_cast<int>(code - '0') : -1;
}

}  // namespace tallow

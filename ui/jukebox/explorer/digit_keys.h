// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QKeyEvent;

namespace tallow {

/// The digit on a key of the row above the letters, whatever the keyboard layout gives without
/// Shift; -1 for another key, and where the platform does not tell the key.
int DigitOfNativeKey(const QKeyEvent& key);

}  // namespace tallow

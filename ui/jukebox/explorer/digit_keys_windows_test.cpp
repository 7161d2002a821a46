// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QKeyEvent>

#include "ui/jukebox/explorer/digit_keys.h"

namespace tallow {
namespace {

TEST(DigitKeys, AreKnownByTheirVirtualKeys) {
  const auto digit = [](quint32 code) {
    const QKeyEvent key(QEvent::KeyPress, Qt::Key_Ampersand, Qt::ControlModifier, 0, code, 0);
    return DigitOfNativeKey(key);
  };
  for (quint32 code = 0x30; code <= 0x39; ++code)
    EXPECT_EQ(digit(code), static_cast<int>(code) - 0x30);
  for (const quint32 code : {0U, 0x2FU, 0x3AU, 0x60U}) EXPECT_EQ(digit(code), -1);
}

}  // namespace
}  // namespace tallow

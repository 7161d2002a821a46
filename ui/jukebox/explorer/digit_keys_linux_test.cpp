// SPDX-License-Identifier: GPL-3.0-or-later
#include <QKeyEvent>

#include "tests/jukebox_window_fixture.h"
#include "ui/jukebox/explorer/digit_keys.h"

namespace tallow {
namespace {

QKeyEvent Press(quint32 code, Qt::Key key) {
  return {QEvent::KeyPress, key, Qt::ControlModifier, code, 0, 0};
}

TEST(DigitKeys, AreKnownByTheirCodes) {
  const auto digit = [](quint32 code) {
    const QKeyEvent key = Press(code, Qt::Key_Ampersand);
    return DigitOfNativeKey(key);
  };
  for (quint32 code = 10; code <= 18; ++code) EXPECT_EQ(digit(code), static_cast<int>(code) - 9);
  EXPECT_EQ(digit(19), 0);
  for (const quint32 code : {0U, 9U, 20U}) EXPECT_EQ(digit(code), -1);
}

class DigitKeysOfList : public JukeboxWindowTest {};

TEST_F(DigitKeysOfList, RankWithoutShiftWhereDigitsNeedIt) {
  UseMoreCommands();
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  SelectRow(0);
  // The key 6 of a French keyboard.
  QKeyEvent six = Press(15, Qt::Key_Minus);
  QApplication::sendEvent(&List(), &six);
  EXPECT_EQ(library.Mp3Info(kSongRank, 1), "6");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/bus_text.h"

#include <gtest/gtest.h>

namespace tallow {
namespace {

TEST(BusText, APathBecomesAUrlOfPlainAscii) {
  EXPECT_EQ(FileUrl("/music/a-b_c.~1.mp3"), "file:///music/a-b_c.~1.mp3");
  EXPECT_EQ(FileUrl("/a b%#?.mp3"), "file:///a%20b%25%23%3F.mp3");
  EXPECT_EQ(FileUrl("/\xC3\xA9\xFF\n"), "file:///%C3%A9%FF%0A");
  EXPECT_EQ(FileUrl(""), "file://");
}

TEST(BusText, ValidTextIsUnchanged) {
  EXPECT_EQ(BusText(""), "");
  EXPECT_EQ(BusText("Étienne 曲 \xF0\x9F\x8E\xB5"), "Étienne 曲 \xF0\x9F\x8E\xB5");
  // The neighbours of the noncharacters.
  EXPECT_EQ(BusText("\xEF\xB7\x8F\xEF\xB7\xB0\xEF\xBF\xBD"),
            "\xEF\xB7\x8F\xEF\xB7\xB0\xEF\xBF\xBD");
}

TEST(BusText, InvalidBytesAndNoncharactersBecomeQuestionMarks) {
  EXPECT_EQ(BusText("a\xFF\x80z"), "a??z");
  EXPECT_EQ(BusText("cut \xE6\x9B"), "cut ??");
  // U+FDD0, U+FDEF, U+FFFE, U+FFFF and U+10FFFF.
  EXPECT_EQ(BusText("\xEF\xB7\x90\xEF\xB7\xAF\xEF\xBF\xBE\xEF\xBF\xBF\xF4\x8F\xBF\xBF"), "?????");
}

}  // namespace
}  // namespace tallow

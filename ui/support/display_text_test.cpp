// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/display_text.h"

#include <gtest/gtest.h>

namespace tallow {
namespace {

TEST(DisplayText, EndsAtTheFirstNul) {
  EXPECT_EQ(DisplayText(std::string_view("1985\0\0", 6)), "1985");
}

TEST(DisplayText, InvalidBytesBecomeReplacementCharacters) {
  EXPECT_EQ(DisplayText("caf\xE9"), QString::fromUtf8("caf\xEF\xBF\xBD"));
  EXPECT_EQ(DisplayText("caf\xC3\xA9"), QString::fromUtf8("caf\xC3\xA9"));
}

TEST(DisplayText, ControlCharactersBecomeBlanksExceptInMessages) {
  EXPECT_EQ(DisplayText("a\nb\tc"), "a b c");
  EXPECT_EQ(DisplayMessage("a\n\nb"), "a\n\nb");
}

}  // namespace
}  // namespace tallow

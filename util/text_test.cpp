// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/text.h"

#include <gtest/gtest.h>

#include "util/text_lines.h"

namespace tallow {
namespace {

TEST(Text, LowerAndUpperCaseCoverAllAlphabets) {
  EXPECT_EQ(ToLower("ABC xyz 09"), "abc xyz 09");
  EXPECT_EQ(ToLower("\xC3\x89\xD0\x96"), "\xC3\xA9\xD0\xB6");  // E acute, Cyrillic zhe
  EXPECT_EQ(ToUpper("mix \xC3\xA9"), "MIX \xC3\x89");
  EXPECT_EQ(ToUpper("az"), "AZ");
}

TEST(Text, InvalidUtf8IsKeptUnchanged) {
  const std::string name = "A\xFF\xC3(\xE2\x82";
  EXPECT_EQ(ToLower(name), "a\xFF\xC3(\xE2\x82");
  EXPECT_FALSE(IsValidUtf8(name));
  EXPECT_TRUE(IsValidUtf8("A\xC3\xA9"));
}

TEST(Text, InvalidBytesAreCharacters) {
  const std::string text = "\xC3\xA9\xFFz";
  std::size_t at = 0;
  EXPECT_EQ(NextCharacter(text, at), U'\u00E9');
  EXPECT_EQ(at, 2U);
  EXPECT_EQ(NextCharacter(text, at), kInvalidByteBase + 0xFF);
  EXPECT_EQ(at, 3U);
  EXPECT_EQ(NextCharacter(text, at), U'z');
}

TEST(Text, ComparisonIgnoresCaseOnly) {
  EXPECT_TRUE(EqualsIgnoringCase("Song.MP3", "sONG.mp3"));
  EXPECT_TRUE(EqualsIgnoringCase("\xC3\x89", "\xC3\xA9"));
  EXPECT_FALSE(EqualsIgnoringCase("Song", "Song "));
}

TEST(Text, TrimRemovesBlanksOnly) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("\ta\t"), "\ta\t");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim(std::string_view("a\0 ", 3)), std::string_view("a\0", 2));
}

TEST(Text, StripAtNulCutsBeforeTheFirstNul) {
  EXPECT_EQ(StripAtNul(std::string_view("ab\0cd\0", 6)), "ab");
  EXPECT_EQ(StripAtNul("abc"), "abc");
}

TEST(TextLines, LineEndsOfEverySystemAreRecognized) {
  EXPECT_EQ(SplitLines("a\r\n\r\nb\nc\rd\r\n"),
            (std::vector<std::string_view>{"a", "", "b\nc\rd"}));
  EXPECT_EQ(SplitLines("a\n\nb"), (std::vector<std::string_view>{"a", "", "b"}));
  EXPECT_EQ(SplitLines("a\rb\r"), (std::vector<std::string_view>{"a", "b"}));
  EXPECT_EQ(SplitLines("a\r\n"), (std::vector<std::string_view>{"a"}));
  EXPECT_TRUE(SplitLines("").empty());
}

TEST(Text, NfcComposesCharactersAndKeepsInvalidBytes) {
  EXPECT_EQ(ToNfc("plain"), "plain");
  EXPECT_EQ(ToNfc("Bjo\xCC\x88rk"), "Bj\xC3\xB6rk");
  EXPECT_EQ(ToNfc("Bj\xC3\xB6rk"), "Bj\xC3\xB6rk");
  EXPECT_EQ(ToNfc("\xE3\x81\x8B\xE3\x82\x99"), "\xE3\x81\x8C");
  EXPECT_EQ(ToNfc("o\xCC\x88\xFF"), "o\xCC\x88\xFF");
  EXPECT_EQ(ToNfc(""), "");
}

}  // namespace
}  // namespace tallow

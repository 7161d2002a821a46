// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/tag_text.h"

#include <gtest/gtest.h>

namespace tallow {
namespace {

TEST(TagText, BytesAreWindows1252) {
  EXPECT_EQ(DecodeTagField("Caf\xE9"), "Caf\xC3\xA9");
  EXPECT_EQ(DecodeTagField("\x80"), "\xE2\x82\xAC");  // the euro sign
  EXPECT_EQ(DecodeTagField("plain"), "plain");
}

TEST(TagText, TheFiveUndefinedBytesAreKept) {
  EXPECT_EQ(DecodeTagField("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
}

TEST(TagText, AFieldOfValidUtf8IsDecodedAsUtf8) {
  EXPECT_EQ(DecodeTagField("Bj\xC3\xB6rk"), "Bj\xC3\xB6rk");
  EXPECT_EQ(DecodeTagField("\xD0\x96"), "\xD0\x96");
}

TEST(TagText, Utf8ThatIsCutInsideItsLastCharacterIsUtf8) {
  EXPECT_EQ(DecodeTagField("\xC3\xB6\xC3"), "\xC3\xB6");
  EXPECT_EQ(DecodeTagField("\xD0\x96 \xE3\x81"), "\xD0\x96 ");
  EXPECT_EQ(DecodeTagField("\xD0\x96\xF0\x9F\x8E"), "\xD0\x96");
  EXPECT_EQ(DecodeTagField(std::string_view("\xD0\x96\xD0\0\0", 5)),
            std::string("\xD0\x96\0\0", 4));
}

TEST(TagText, ACutCharacterAloneDoesNotMakeAFieldUtf8) {
  EXPECT_EQ(DecodeTagField("Caf\xE9"), "Caf\xC3\xA9");
  EXPECT_EQ(DecodeTagField("\xC3\xB6\x9F"), "\xC3\x83\xC2\xB6\xC5\xB8");    // no first byte
  EXPECT_EQ(DecodeTagField("\xC3\xB6\xC3x"), "\xC3\x83\xC2\xB6\xC3\x83x");  // not at the end
}

TEST(TagText, TextThatLooksLikeCutUtf8IsWrittenAsUtf8) {
  const std::string text = "\xC3\x83\xC2\xB6\xC3\x83";  // its Windows-1252 bytes are C3 B6 C3
  EXPECT_EQ(EncodeTagField(text, 3), "\xC3\x83 ");
}

TEST(TagText, NulsAreKept) {
  EXPECT_EQ(DecodeTagField(std::string_view("A\0\0", 3)), std::string("A\0\0", 3));
}

TEST(TagText, EncodingPadsAndTruncates) {
  EXPECT_EQ(EncodeTagField("AB", 4), "AB  ");
  EXPECT_EQ(EncodeTagField("ABCDE", 4), "ABCD");
  EXPECT_EQ(EncodeTagField("Caf\xC3\xA9", 5), "Caf\xE9 ");
  EXPECT_EQ(EncodeTagField("\xD0\x96\xD0\x96", 3), "\xD0\x96 ");  // never splits a character
}

TEST(TagText, EveryByteSurvivesDecodingAndEncoding) {
  for (unsigned byte = 1; byte < 256; ++byte) {
    const std::string field(1, static_cast<char>(byte));
    EXPECT_EQ(EncodeTagField(DecodeTagField(field), 1), field) << byte;
  }
}

TEST(TagText, TextThatWouldBeMistakenForUtf8IsWrittenAsUtf8) {
  const std::string text = "\xC3\x83\xC2\xA9";  // two characters whose Windows-1252 bytes are C3 A9
  EXPECT_EQ(DecodeTagField(EncodeTagField(text, 8)), text + "    ");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/fold.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "util/natural_order.h"

namespace tallow {
namespace {

TEST(Fold, DropsCaseAndAccents) {
  EXPECT_EQ(Folded("BEYONCÉ"), "beyonce");
  EXPECT_EQ(Folded("Beyonce\u0301"), "beyonce");
  EXPECT_EQ(Folded("Пётр Ильи́ч"), "петр ильич");
  EXPECT_EQ(Folded("ΣΊΣΥΦΟΣ"), Folded("σίσυφος"));
  EXPECT_EQ(Folded("Straße"), "strasse");
  EXPECT_EQ(Folded("ＡＢＣ１２３"), "abc123");
  EXPECT_EQ(Folded("ｶﾞ"), Folded("ガ"));
}

TEST(Fold, DropsVowelPointsOfHebrewAndArabic) {
  EXPECT_EQ(Folded("שָׁלוֹם"), "שלום");
  EXPECT_EQ(Folded("مُحَمَّد"), "محمد");
  EXPECT_EQ(Folded("أم كلثوم"), "ام كلثوم");
}

TEST(Fold, KeepsMarksThatMakeOtherWords) {
  // Hindi: heart, group. Thai: eat, people. Tamil: and. Japanese: mosquito, moth.
  EXPECT_NE(Folded("दिल"), Folded("दल"));
  EXPECT_EQ(Folded("दिल"), "दिल");
  EXPECT_NE(Folded("กิน"), Folded("กน"));
  EXPECT_EQ(Folded("กิน"), "กิน");
  EXPECT_NE(Folded("கி"), Folded("க"));
  EXPECT_EQ(Folded("கி"), "கி");
  EXPECT_NE(Folded("が"), Folded("か"));
  EXPECT_EQ(Folded("が"), Folded("か\u3099"));
}

TEST(Fold, NoWordStartsAfterAMark) {
  // The letter after the vowel sign of the first one.
  const std::string text = Folded("दिल");
  EXPECT_FALSE(IsWordStart(text, std::string("दि").size()));
}

TEST(Fold, ReplacesLettersAndSignsThatKeyboardsLack) {
  EXPECT_EQ(Folded("Røyksopp"), "royksopp");
  EXPECT_EQ(Folded("Ǿ Æther Œuvre Łódź"), "o aether oeuvre lodz");
  EXPECT_EQ(Folded("Don’t – “Stop”"), "don't - \"stop\"");
  for (const char* const text : {"Don´t", "Don`t", "Don＇t", "Don｀t"})
    EXPECT_EQ(Folded(text), "don't") << text;
}

TEST(Fold, MakesBlanksOfSeparatorsAndControlCharacters) {
  EXPECT_EQ(Folded(std::string_view("a\tb\0c\u00A0d\u3000e\x7F", 13)), "a b c d e ");
}

TEST(Fold, ReplacesInvalidBytes) { EXPECT_EQ(Folded("Beyonc\xE9"), "beyonc\uFFFD"); }

TEST(Fold, FoldingAgainChangesNothing) {
  std::mt19937 random(17);
  for (int k = 0; k < 20'000; ++k) {
    std::string text;
    for (int n = 0; n < 4; ++n) {
      const auto c = static_cast<char32_t>(random() % 0x30000);
      if (c >= 0xD800 && c < 0xE000) continue;
      if (c < 0x80) {
        text += static_cast<char>(c);
      } else if (c < 0x800) {
        text += static_cast<char>(0xC0U | (c >> 6U));
        text += static_cast<char>(0x80U | (c & 0x3FU));
      } else if (c < 0x10000) {
        text += static_cast<char>(0xE0U | (c >> 12U));
        text += static_cast<char>(0x80U | ((c >> 6U) & 0x3FU));
        text += static_cast<char>(0x80U | (c & 0x3FU));
      } else {
        text += static_cast<char>(0xF0U | (c >> 18U));
        text += static_cast<char>(0x80U | ((c >> 12U) & 0x3FU));
        text += static_cast<char>(0x80U | ((c >> 6U) & 0x3FU));
        text += static_cast<char>(0x80U | (c & 0x3FU));
      }
    }
    const std::string folded = Folded(text);
    EXPECT_EQ(Folded(folded), folded) << text;
    for (const char byte : folded) EXPECT_GE(static_cast<unsigned char>(byte), 0x20) << text;
  }
}

TEST(Fold, AWordStartsWhereNoLetterOrDigitIsBefore) {
  const std::string text = Folded("AC/DC 2nd (Live) Ärger’s");
  std::string starts;
  for (std::size_t at = 0; at < text.size(); ++at)
    if (IsWordStart(text, at) && text[at] != ' ') starts += text[at];
  EXPECT_EQ(starts, "ad2(las");
  EXPECT_FALSE(IsWordStart("да", 2));
  EXPECT_TRUE(IsWordStart("“д", 3));
}

TEST(Fold, NaturalBytesAreInTheOrderOfNaturalKeys) {
  std::mt19937 random(3);
  const std::vector<std::string> parts = {
      "a", "B", "1", "10", "007", "0", " ", "-", "é", "z", "9", "99999999999999999999", "я", "~"};
  const auto text = [&] {
    std::string made;
    for (std::size_t n = random() % 6; n > 0; --n) made += parts[random() % parts.size()];
    return Folded(made);
  };
  for (int k = 0; k < 20'000; ++k) {
    const std::string a = text();
    const std::string b = text();
    std::string bytes_of_a;
    std::string bytes_of_b;
    AppendNaturalBytes(bytes_of_a, a);
    AppendNaturalBytes(bytes_of_b, b);
    EXPECT_EQ(bytes_of_a < bytes_of_b, NaturalKeyLess(a, b)) << a << " | " << b;
  }
}

TEST(Fold, NaturalBytesCompareLongNumbers) {
  std::string shorter;
  std::string longer;
  AppendNaturalBytes(shorter, std::string(300, '9'));
  AppendNaturalBytes(longer, "1" + std::string(300, '0'));
  EXPECT_LT(shorter, longer);
}

}  // namespace
}  // namespace tallow

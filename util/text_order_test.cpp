// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/text_order.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <string>

namespace tallow {
namespace {

TEST(TextOrder, IsTheOrderOfAStableSort) {
  std::mt19937 random(5);
  for (int round = 0; round < 300; ++round) {
    std::vector<std::string> texts(random() % 60);
    for (std::string& text : texts) {
      text = std::string(random() % 3 * 7, 'x');
      for (std::size_t n = random() % 5; n > 0; --n) text += "ab\xC3z"[random() % 4];
    }
    const std::vector<std::string_view> views(texts.begin(), texts.end());
    std::vector<std::uint32_t> expected(texts.size());
    std::iota(expected.begin(), expected.end(), 0U);
    std::ranges::stable_sort(expected,
                             [&](std::uint32_t a, std::uint32_t b) { return texts[a] < texts[b]; });
    EXPECT_EQ(OrderOfTexts(views), expected);
  }
}

TEST(TextOrder, PositionsCountDistinctTexts) {
  const std::vector<std::string_view> texts = {"b", "", "a", "b", "abcdefgh", "abcdefghi"};
  EXPECT_EQ(PositionsOfTexts(texts), (std::vector<std::uint32_t>{4, 0, 1, 4, 2, 3}));
  EXPECT_TRUE(PositionsOfTexts({}).empty());
}

TEST(TextOrder, LongEqualTextsAreEqual) {
  const std::string text(100'000, 'x');
  const std::string longer = text + "y";
  const std::vector<std::string_view> texts = {longer, text, text};
  EXPECT_EQ(OrderOfTexts(texts), (std::vector<std::uint32_t>{1, 2, 0}));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/song_table.h"

#include <gtest/gtest.h>
#include <random>

#include "util/errors.h"

namespace tallow {
namespace {

TEST(TextPool, SharedTextsAreStoredOnce) {
  TextPool pool;
  const TextHandle a = pool.Add("name");
  EXPECT_NE(pool.Add("name"), a);
  EXPECT_EQ(pool.Text(a), "name");
  EXPECT_EQ(pool.Share("folder"), pool.Share("folder"));
  EXPECT_EQ(pool.Add(""), 0U);
  EXPECT_EQ(pool.Text(0), "");
}

TEST(TextPool, LongTextsAndManyTextsStayAtTheirAddress) {
  TextPool pool;
  std::vector<std::pair<TextHandle, std::string>> added;
  for (std::size_t k = 0; k < 400; ++k) {
    const std::size_t length = k % 7 == 0 ? 300000 + k : k * 13;
    std::string text(length, static_cast<char>('a' + k % 26));
    added.emplace_back(pool.Add(text), std::move(text));
  }
  for (const auto& [handle, text] : added) ASSERT_EQ(pool.Text(handle), text);
}

TEST(SongTable, ACellOutsideIsASubscriptError) {
  SongTable table;
  table.Resize(2);
  EXPECT_EQ(table.Cell(12, 2), "");
  EXPECT_THROW(table.Cell(0, 1), SubscriptError);
  EXPECT_THROW(table.Cell(13, 1), SubscriptError);
  EXPECT_THROW(table.Cell(1, 0), SubscriptError);
  EXPECT_THROW(table.Cell(1, 3), SubscriptError);
  EXPECT_THROW(table.SetCell(1, 3, "x"), SubscriptError);
}

TEST(SongTable, AgreesWithPlainStringsUnderRandomChanges) {
  std::mt19937 random(3);
  SongTable table;
  std::vector<std::vector<std::string>> plain;
  for (int step = 0; step < 20000; ++step) {
    const auto rows = static_cast<std::int32_t>(plain.size());
    const auto what = random() % 20;
    if (what == 0 || rows == 0) {
      const auto size = random() % 40;
      table.Resize(static_cast<std::int32_t>(size));
      plain.resize(size, std::vector<std::string>(kSongColumns));
    } else if (what == 1) {
      std::vector<std::int32_t> order(static_cast<std::size_t>(rows));
      for (std::size_t k = 0; k < order.size(); ++k) order[k] = static_cast<std::int32_t>(k + 1);
      std::shuffle(order.begin(), order.end(), random);
      table.MoveRows(1, order, kSongColumns);
      auto moved = plain;
      for (std::size_t k = 0; k < order.size(); ++k)
        moved[k] = plain[static_cast<std::size_t>(order[k] - 1)];
      plain = moved;
    } else if (what == 2) {
      table.Pack();
    } else {
      const auto row = static_cast<std::int32_t>(1 + random() % plain.size());
      const auto column = static_cast<std::int16_t>(1 + random() % kSongColumns);
      const std::string text(random() % 3 == 0 ? 0 : 1 + random() % 9,
                             static_cast<char>('a' + random() % 4));
      table.SetCell(column, row, text);
      plain[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(column - 1)] = text;
    }
    for (std::size_t row = 0; row < plain.size(); ++row)
      for (std::int16_t column = 1; column <= kSongColumns; ++column)
        ASSERT_EQ(table.Cell(column, static_cast<std::int32_t>(row + 1)),
                  plain[row][static_cast<std::size_t>(column - 1)]);
  }
}

TEST(SongTable, PackingFreesOverwrittenTexts) {
  SongTable table;
  table.Resize(1);
  for (int k = 0; k < 300000; ++k) table.SetCell(kFileName, 1, "name " + std::to_string(k));
  const std::uint64_t version = table.version();
  table.Pack();
  EXPECT_EQ(table.Cell(kFileName, 1), "name 299999");
  EXPECT_EQ(table.version(), version);
}

}  // namespace
}  // namespace tallow

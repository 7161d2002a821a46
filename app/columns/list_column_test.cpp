// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/list_column.h"

#include <gtest/gtest.h>
#include <set>
#include <string_view>

namespace tallow {
namespace {

TEST(ListColumns, EachHasItsOwnNameAndTitle) {
  std::set<std::string_view> ids;
  std::set<std::string_view> titles;
  for (int k = 0; k < kListColumns; ++k) {
    const auto column = static_cast<ListColumn>(k);
    EXPECT_EQ(ColumnOfId(IdOf(column)), column);
    ids.insert(IdOf(column));
    titles.insert(TitleOf(column));
  }
  EXPECT_EQ(ids.size(), static_cast<std::size_t>(kListColumns));
  EXPECT_EQ(titles.size(), static_cast<std::size_t>(kListColumns));
  EXPECT_FALSE(ColumnOfId("").has_value());
  EXPECT_FALSE(ColumnOfId("Title").has_value());
}

TEST(ListColumns, OnlyTheMarkOfWhatPlaysHasNoHeader) {
  for (int k = 0; k < kListColumns; ++k) {
    const auto column = static_cast<ListColumn>(k);
    EXPECT_EQ(HeaderOf(column), column == ListColumn::kPlaying ? "" : TitleOf(column));
  }
  EXPECT_EQ(HeaderOf(ListColumn::kDiscTrack), "Disc/Track");
  EXPECT_EQ(TitleOf(ListColumn::kPlaying), "Playing");
}

TEST(ListColumns, NumbersAreAlignedRight) {
  EXPECT_TRUE(IsNumber(ListColumn::kLength));
  EXPECT_TRUE(IsNumber(ListColumn::kPosition));
  EXPECT_FALSE(IsNumber(ListColumn::kTitle));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/columns/column_choice.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/preferences.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

using Columns = std::vector<ChosenColumn>;

std::vector<ListColumn> Kinds(const Columns& columns) {
  std::vector<ListColumn> kinds;
  for (const ChosenColumn& column : columns) kinds.push_back(column.column);
  return kinds;
}

class ColumnChoice : public testing::Test {
 protected:
  void Store(const std::vector<std::string>& texts) { preferences.Set("columns.modern", texts); }

  Preferences preferences;
};

TEST_F(ColumnChoice, ClassicBeginsWithNameAndKey) {
  EXPECT_EQ(ColumnsOf(preferences, false), (Columns{{ListColumn::kName}, {ListColumn::kKey}}));
}

TEST_F(ColumnChoice, ModernBeginsWithDetails) {
  EXPECT_EQ(Kinds(ColumnsOf(preferences, true)),
            (std::vector<ListColumn>{ListColumn::kPlaying, ListColumn::kPosition,
                                     ListColumn::kTitle, ListColumn::kArtist, ListColumn::kAlbum,
                                     ListColumn::kYear, ListColumn::kLength, ListColumn::kRank}));
}

TEST_F(ColumnChoice, EachStyleKeepsItsColumnsWithOrderAndWidths) {
  const Columns modern{{ListColumn::kAlbum, 180}, {ListColumn::kTitle}};
  const Columns classic{{ListColumn::kKey, 50}, {ListColumn::kName}, {ListColumn::kPlays}};
  ChooseColumns(preferences, true, modern);
  ChooseColumns(preferences, false, classic);
  EXPECT_EQ(ColumnsOf(preferences, true), modern);
  EXPECT_EQ(ColumnsOf(preferences, false), classic);
}

TEST_F(ColumnChoice, AnotherRunReadsWhatTheFileHas) {
  const TempFolder folder;
  const std::string path = folder.path() + "Preferences.json";
  Preferences first;
  ASSERT_TRUE(first.Load(path));
  ChooseColumns(first, true, {{ListColumn::kLastPlayed, 99}, {ListColumn::kDiscTrack}});
  Preferences second;
  ASSERT_TRUE(second.Load(path));
  EXPECT_EQ(ColumnsOf(second, true),
            (Columns{{ListColumn::kLastPlayed, 99}, {ListColumn::kDiscTrack}}));
}

TEST_F(ColumnChoice, NoColumnsAreTheFirstOnesAgain) {
  ChooseColumns(preferences, true, {{ListColumn::kAlbum}});
  ChooseColumns(preferences, true, {});
  EXPECT_EQ(ColumnsOf(preferences, true), FirstColumns(true));
}

TEST_F(ColumnChoice, UnknownAndRepeatedColumnsAreLeftOut) {
  Store({"smell 20", "album", "title 30", "album 70", ""});
  EXPECT_EQ(ColumnsOf(preferences, true),
            (Columns{{ListColumn::kAlbum}, {ListColumn::kTitle, 30}}));
  Store({"smell"});
  EXPECT_EQ(ColumnsOf(preferences, true), FirstColumns(true));
}

TEST_F(ColumnChoice, AWidthThatIsNoneIsTheUsualOne) {
  Store({"title -5", "artist x", "album 12px", "year ", "length 0", "rank 99999", "genre 7 7"});
  EXPECT_EQ(ColumnsOf(preferences, true), (Columns{{ListColumn::kTitle},
                                                   {ListColumn::kArtist},
                                                   {ListColumn::kAlbum},
                                                   {ListColumn::kYear},
                                                   {ListColumn::kLength},
                                                   {ListColumn::kRank, kMaxColumnWidth},
                                                   {ListColumn::kGenre}}));
}

TEST_F(ColumnChoice, AShownColumnGoesBeforeThoseThatFollowIt) {
  const Columns columns{{ListColumn::kTitle, 20}, {ListColumn::kRank}};
  EXPECT_EQ(Kinds(WithColumn(columns, ListColumn::kYear, true)),
            (std::vector<ListColumn>{ListColumn::kTitle, ListColumn::kYear, ListColumn::kRank}));
  EXPECT_EQ(Kinds(WithColumn(columns, ListColumn::kFolder, true)),
            (std::vector<ListColumn>{ListColumn::kTitle, ListColumn::kRank, ListColumn::kFolder}));
  EXPECT_EQ(WithColumn(columns, ListColumn::kTitle, true), columns);
}

TEST_F(ColumnChoice, AColumnMovesByOnePlace) {
  const Columns columns{{ListColumn::kTitle, 20}, {ListColumn::kRank}, {ListColumn::kYear, 30}};
  const Columns moved{{ListColumn::kRank}, {ListColumn::kTitle, 20}, {ListColumn::kYear, 30}};
  EXPECT_EQ(WithColumnMoved(columns, ListColumn::kRank, true), moved);
  EXPECT_EQ(WithColumnMoved(columns, ListColumn::kTitle, false), moved);
  EXPECT_EQ(WithColumnMoved(columns, ListColumn::kTitle, true), columns);
  EXPECT_EQ(WithColumnMoved(columns, ListColumn::kYear, false), columns);
  EXPECT_EQ(WithColumnMoved(columns, ListColumn::kFolder, true), columns);
}

TEST_F(ColumnChoice, TheLastColumnIsNotHidden) {
  const Columns columns{{ListColumn::kTitle, 20}, {ListColumn::kRank}};
  const Columns one = WithColumn(columns, ListColumn::kRank, false);
  EXPECT_EQ(one, (Columns{{ListColumn::kTitle, 20}}));
  EXPECT_EQ(WithColumn(one, ListColumn::kTitle, false), one);
  EXPECT_EQ(WithColumn(one, ListColumn::kAlbum, false), one);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/details_table.h"

#include <gtest/gtest.h>
#include <string>

#include "details/song_details.h"

namespace tallow {
namespace {

DetailsRow RowWithTitle(std::string_view title) { return {.known = true, .title = title}; }

TEST(DetailsTable, ReturnsWhatWasStored) {
  SongDetails details{.tags = {.found = true,
                               .title = "Title",
                               .artist = "Artist",
                               .album_artist = "Album Artist",
                               .album = "Album",
                               .date = "12/05/1999",
                               .genre = "Rock",
                               .disc = 2,
                               .track = 11},
                      .length_ms = 185'000,
                      .bit_rate = 320,
                      .format = "FLAC"};
  DetailsTable table;
  EXPECT_TRUE(table.Set(7, RowOf(details)));
  const DetailsRow row = table.Row(7);
  EXPECT_EQ(row, (DetailsRow{.known = true,
                             .title = "Title",
                             .artist = "Artist",
                             .album_artist = "Album Artist",
                             .album = "Album",
                             .genre = "Rock",
                             .format = "FLAC",
                             .disc = 2,
                             .track = 11,
                             .year = 1999,
                             .length_ms = 185'000,
                             .bit_rate = 320}));
  for (const std::int32_t other : {-1, 0, 6, 8}) {
    EXPECT_FALSE(table.Row(other).known);
    EXPECT_EQ(table.ChangedAt(other), 0U);
  }
}

TEST(DetailsTable, AnUnreadSongIsNotKnown) {
  EXPECT_FALSE(RowOf(SongDetails{.tags = {.unread = true, .title = "Title"}}).known);
  DetailsTable table;
  EXPECT_FALSE(table.Set(1, {}));
  EXPECT_FALSE(table.Knows(1));
}

TEST(DetailsTable, SongsShareTheirTexts) {
  DetailsTable table;
  table.Set(1, {.known = true, .artist = "Artist", .album = "Artist"});
  table.Set(2, {.known = true, .artist = "Artist", .album = "Other"});
  EXPECT_EQ(table.Shared(1).artist, table.Shared(2).artist);
  EXPECT_EQ(table.Shared(1).album, table.Shared(1).artist);
  EXPECT_NE(table.Shared(1).album, table.Shared(2).album);
  EXPECT_EQ(table.Shared(1).genre, 0U);
  EXPECT_EQ(table.Shared(3).artist, 0U);
}

TEST(DetailsTable, SongsOfAnAlbumHaveOneSet) {
  DetailsTable table;
  table.Set(1, {.known = true, .title = "a", .artist = "Artist", .album = "Album", .year = 1999});
  table.Set(2, {.known = true, .artist = "Other", .album = "Album", .year = 1999});
  table.Set(3, {.known = true, .title = "b", .artist = "Artist", .album = "Album", .year = 1999});
  table.Set(4, {.known = true, .artist = "Artist", .album = "Album", .year = 2000});
  EXPECT_EQ(table.SharedSet(1), table.SharedSet(3));
  EXPECT_NE(table.SharedSet(1), table.SharedSet(2));
  EXPECT_NE(table.SharedSet(1), table.SharedSet(4));
  EXPECT_EQ(table.Sets(), 4U);
  EXPECT_EQ(table.Text(table.Texts(table.SharedSet(2)).artist), "Other");
  EXPECT_EQ(table.Row(4).year, 2000);
  EXPECT_EQ(table.SharedSet(5), 0U);
}

TEST(DetailsTable, OnlyAChangeCounts) {
  DetailsTable table;
  EXPECT_TRUE(table.Set(1, RowWithTitle("One")));
  EXPECT_TRUE(table.Set(2, RowWithTitle("")));
  const std::uint32_t version = table.Version();
  EXPECT_FALSE(table.Set(1, RowWithTitle("One")));
  EXPECT_FALSE(table.Set(2, RowWithTitle("")));
  EXPECT_EQ(table.Version(), version);
  EXPECT_TRUE(table.Set(1, RowWithTitle("Two")));
  EXPECT_GT(table.ChangedAt(1), version);
  EXPECT_LE(table.ChangedAt(2), version);
  EXPECT_EQ(table.Row(1).title, "Two");
}

TEST(DetailsTable, ReplacedTitlesDoNotFillTheMemory) {
  DetailsTable table;
  table.Set(1, {.known = true, .title = "Kept", .artist = "Artist"});
  const std::string text(1000, 'x');
  for (int k = 0; k < 20'000; ++k) table.Set(2, RowWithTitle(text + std::to_string(k)));
  EXPECT_LT(table.Bytes(), 4'000'000U);
  EXPECT_GT(table.Packings(), 0U);
  EXPECT_EQ(table.Row(1).title, "Kept");
  EXPECT_EQ(table.Row(1).artist, "Artist");
  EXPECT_EQ(table.Row(2).title, text + "19999");
  EXPECT_EQ(table.SharedSet(2), 0U);
  EXPECT_EQ(table.Sets(), 2U);
}

TEST(DetailsTable, IsEmptyAfterClear) {
  DetailsTable table;
  table.Set(1, RowWithTitle("One"));
  const std::uint32_t version = table.Version();
  table.Clear();
  EXPECT_FALSE(table.Row(1).known);
  EXPECT_GT(table.Version(), version);
}

}  // namespace
}  // namespace tallow

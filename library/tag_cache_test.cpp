// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/tag_cache.h"

#include <gtest/gtest.h>

#include "tests/tagged_file.h"

namespace tallow {
namespace {

TEST(TagCache, ReturnsArtistYearAndGenreOfEverySong) {
  TagCache cache;
  constexpr int kSongs = 5000;
  for (int k = 0; k < kSongs; ++k)
    cache.Add("/m/", std::to_string(k),
              k % 10 == 0 ? std::string(kTagBytes, 'x')
                          : Tag({.title = "t",
                                 .artist = "artist " + std::to_string(k),
                                 .year = std::to_string(1000 + k),
                                 .genra = static_cast<unsigned char>(k % 256)}));
  cache.Seal();
  MP3TagEditor editor;
  for (int k = 0; k < kSongs; ++k) {
    const auto block = cache.Find("/m/", std::to_string(k));
    ASSERT_TRUE(block.has_value()) << k;
    editor.LoadMP3("", *block);
    ASSERT_EQ(editor.TagExists(), k % 10 != 0);
    if (!editor.TagExists()) continue;
    ASSERT_EQ(editor.Artist(), "artist " + std::to_string(k));
    ASSERT_EQ(editor.Year(), std::to_string(1000 + k));
    ASSERT_EQ(editor.Genra(), k % 256);
  }
  EXPECT_FALSE(cache.Find("/m/", "5000").has_value());
  EXPECT_FALSE(cache.Find("/n/", "1").has_value());
}

TEST(TagCache, ATailOfAnotherLengthIsNotAdded) {
  TagCache cache;
  cache.Add("/m/", "short", "TAG");
  cache.Seal();
  EXPECT_FALSE(cache.Find("/m/", "short").has_value());
}

TEST(TagCache, ClearRemovesAllEntries) {
  TagCache cache;
  cache.Add("/m/", "a", Tag({}));
  cache.Seal();
  EXPECT_TRUE(cache.Find("/m/", "a").has_value());
  cache.Clear();
  EXPECT_FALSE(cache.Find("/m/", "a").has_value());
}

}  // namespace
}  // namespace tallow

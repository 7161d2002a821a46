// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/records_by_path.h"

#include <gtest/gtest.h>

#include "tests/library_fixture.h"

namespace tallow {
namespace {

using RecordsByPathTest = LibraryTest;
using Records = std::vector<std::int32_t>;

Records Of(const RecordsByPath& songs, std::string_view path) {
  Records found;
  songs.ForEach(path, [&](std::int32_t record) { found.push_back(record); });
  return found;
}

TEST_F(RecordsByPathTest, FindsAllSongsOfAPath) {
  for (int k = 1; k <= 1000; ++k) AddSong("/m/", "song " + std::to_string(k) + ".mp3");
  AddSong("/m/", "song 7.mp3");
  AddSong("/m", "/song 7.mp3");
  Records all;
  for (std::int32_t k = 2; k <= library.UBoundOfMp3Array(); ++k) all.push_back(k);
  const RecordsByPath songs(library, all);
  EXPECT_EQ(Of(songs, "/m/song 7.mp3").size(), 3U);
  EXPECT_EQ(Of(songs, "/m/song 1000.mp3"), (Records{1000}));
  EXPECT_EQ(Of(songs, "/m/song 1.mp3"), Records{});
  EXPECT_EQ(Of(songs, ""), Records{});
  EXPECT_EQ(Of(RecordsByPath(library, {}), "/m/song 7.mp3"), Records{});
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/follow_returned_songs.h"

#include <gtest/gtest.h>

#include "jukebox/jukebox.h"
#include "tests/library_fixture.h"

namespace tallow {
namespace {

using FollowReturnedSongsTest = LibraryTest;

TEST_F(FollowReturnedSongsTest, TheSongsOfThePlayerAndOfJukeboxesGetTheirNewNumbers) {
  Jukebox jukebox;
  Folder& folder = jukebox.Nodes().AddChild(nullptr, "one");
  folder.Items().emplace_back(2, 2);
  tallow.handed_over.Add(std::vector<HandedOverSong>{{1, 5}, {2, 6}, {3, 7}}, {&jukebox, 1});
  Jukebox* const open[] = {&jukebox};
  FollowReturnedSongs({{2, 9}, {3, 2}}, open, tallow);
  EXPECT_EQ(folder.Items()[0].SubItem(), 9);
  EXPECT_EQ(tallow.handed_over.SongOf(5), 1);
  EXPECT_EQ(tallow.handed_over.SongOf(6), 9);
  EXPECT_EQ(tallow.handed_over.SongOf(7), 2);
  EXPECT_EQ(tallow.handed_over.OriginOf(7).jukebox, &jukebox);
  const std::uint64_t before = tallow.handed_over.Revision();
  FollowReturnedSongs({}, open, tallow);
  EXPECT_EQ(tallow.handed_over.Revision(), before);
}

}  // namespace
}  // namespace tallow

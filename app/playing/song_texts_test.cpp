// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/song_texts.h"

#include <gtest/gtest.h>

#include "tests/id3v2_tag.h"
#include "tests/library_fixture.h"
#include "tests/tagged_file.h"
#include "tests/wait_until.h"

namespace tallow {
namespace {

using SongTextsTest = LibraryTest;

TEST_F(SongTextsTest, TheDetailsGiveTitleAndArtistAndElseTheFileName) {
  AddSong(music.path(), "both.mp3");
  AddSong(music.path(), "title.mp3");
  AddSong(music.path(), "artist.mp3");
  AddSong(music.path(), "none.mp3");
  AddSong("0", "0", "0");
  music.File("both.mp3", Id3v2Tag({{"TIT2", "A Title"}, {"TPE1", "An Artist"}}) + Audio(300));
  music.File("title.mp3", Audio(300) + Tag({.title = "A Title"}));
  music.File("artist.mp3", Id3v2Tag({{"TPE1", "An Artist"}}) + Audio(300));
  music.File("none.mp3", Audio(300));
  SongTexts texts(tallow);
  // The details are not read yet.
  EXPECT_EQ(texts.Of(1), "both.mp3");
  tallow.details.Start(library);
  EXPECT_TRUE(WaitUntil([&] {
    tallow.details.Poll();
    return !tallow.details.IsReading();
  }));
  EXPECT_EQ(texts.Of(1), "A Title - An Artist");
  EXPECT_EQ(texts.Of(2), "A Title");
  EXPECT_EQ(texts.Of(3), "artist.mp3");
  EXPECT_EQ(texts.Of(4), "none.mp3");
  for (const std::int32_t missing : {5, 6, 0, -1}) EXPECT_EQ(texts.Of(missing), "");
}

}  // namespace
}  // namespace tallow

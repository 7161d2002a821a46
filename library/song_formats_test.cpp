// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/song_formats.h"

#include <gtest/gtest.h>

namespace tallow {
namespace {

TEST(SongFormats, InClassicStyleSongsAreMp3Files) {
  EXPECT_TRUE(IsSongName("a.mp3", kClassicStyle));
  EXPECT_TRUE(IsSongName("A.MP3", kClassicStyle));
  EXPECT_FALSE(IsSongName("a.flac", kClassicStyle));
  EXPECT_FALSE(IsSongName("a.mp3.part", kClassicStyle));
}

TEST(SongFormats, InModernStyleSongsAreFilesOfAllFormats) {
  for (const std::string_view name :
       {"a.mp3", "a.flac", "a.OGG", "a.oga", "a.opus", "a.spx", "a.m4a", "a.m4b", "a.mp4", "a.aac",
        "a.wma", "a.wav", "a.aif", "a.AIFF", "a.ape", "a.wv", "a.mpc"})
    EXPECT_TRUE(IsSongName(name, kModernStyle)) << name;
  for (const std::string_view name : {"cover.jpg", "a.m3u", "mp3", "flac", "a.mp4v", "a;b"})
    EXPECT_FALSE(IsSongName(name, kModernStyle)) << name;
}

TEST(SongFormats, OnlyAListOfMp3FilesLeavesOtherSongsOut) {
  EXPECT_EQ(OtherSongs(SongPattern(kClassicStyle)), kModernSongPattern);
  EXPECT_EQ(OtherSongs(SongPattern(kModernStyle)), "");
  EXPECT_EQ(OtherSongs("winamp.exe"), "");
}

TEST(SongFormats, TheOtherSwitchesDoNotMatter) {
  Switches switches = kModernStyle;
  switches.more_formats = false;
  EXPECT_FALSE(IsSongName("a.flac", switches));
  EXPECT_TRUE(IsSongName("a.flac", {.more_formats = true}));
}

}  // namespace
}  // namespace tallow

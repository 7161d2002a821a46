// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/path_text.h"

#include <gtest/gtest.h>

#include "tests/temp_folder.h"

namespace tallow {
namespace {

TEST(PathText, ASeparatorIsAddedOnce) {
  EXPECT_EQ(EnsureTrailingBackslash("music"), "music" + kSep);
  EXPECT_EQ(EnsureTrailingBackslash("music" + kSep), "music" + kSep);
  EXPECT_EQ(EnsureTrailingBackslash(""), kSep);
}

TEST(PathText, TheTitleOfAFileHasNoFolderAndNoExtension) {
  EXPECT_EQ(FileTitleWithoutExtension(kSep + "a" + kSep + "mix.juk"), "mix");
  EXPECT_EQ(FileTitleWithoutExtension("  mix.juk  "), "mix");
  EXPECT_EQ(FileTitleWithoutExtension("mix"), "");
  EXPECT_EQ(FileTitleWithoutExtension(".juk"), "");
  EXPECT_EQ(FileTitleWithoutExtension("noextension"), "noexten");
  EXPECT_EQ(FileTitleWithoutExtension("x\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"), "x");
}

TEST(PathText, APathIsSplitIntoFolderAndName) {
  const std::string path = kSep + "a" + kSep + "b.mp3";
  EXPECT_EQ(FolderOfPath(path), kSep + "a" + kSep);
  EXPECT_EQ(NameOfPath(path), "b.mp3");
  EXPECT_EQ(FolderOfPath("b.mp3"), "");
  EXPECT_EQ(NameOfPath("b.mp3"), "b.mp3");
}

TEST(PathText, AbsolutePathsAndLineBreaks) {
  EXPECT_TRUE(IsAbsolutePath(kSep + "a"));
  EXPECT_FALSE(IsAbsolutePath("0"));
  EXPECT_FALSE(IsAbsolutePath(""));
  EXPECT_EQ(IsAbsolutePath("C:" + kSep), kSeparator == '\\');
  EXPECT_TRUE(HasLineBreak("a\nb"));
  EXPECT_TRUE(HasLineBreak("a\r"));
  EXPECT_FALSE(HasLineBreak("a b"));
}

}  // namespace
}  // namespace tallow

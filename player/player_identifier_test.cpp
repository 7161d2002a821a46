// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_identifier.h"

#include <gtest/gtest.h>

#include "util/path_text.h"

namespace tallow {
namespace {

TEST(PlayerIdentifier, IsTheChecksumOfThePathInHexadecimal) {
  // The XXH3 checksum of no bytes, as its documentation gives it.
  EXPECT_EQ(PlayerIdentifier(""), "2d06800538d394c2");
}

TEST(PlayerIdentifier, DiffersByFolder) {
  EXPECT_NE(PlayerIdentifier("/home/a/"), PlayerIdentifier("/home/b/"));
  EXPECT_EQ(PlayerIdentifier("/home/a/"), PlayerIdentifier("/home/a/"));
  EXPECT_EQ(PlayerIdentifier("/home/a/").size(), 16U);
}

TEST(PlayerIdentifier, ComparesFoldersAsTheSystemDoes) {
  // Only Windows ignores the case.
  EXPECT_EQ(PlayerIdentifier("C:\\Tallow\\") == PlayerIdentifier("c:\\tallow\\"),
            kSeparator == '\\');
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/other_formats.h"

#include <gtest/gtest.h>

namespace tallow {
namespace {

TEST(OtherFormats, CountsEachFolderOnce) {
  OtherFormats others;
  others.Set("/m/b/", 3);
  others.Set("/m/a/", 2);
  others.Set("/m/c/", 0);
  EXPECT_EQ(others.Files(), 5U);
  others.Set("/m/b/", 1);
  EXPECT_EQ(others.Files(), 3U);
  EXPECT_EQ(others.ByFolder(), (OtherFormats::Folders{{"/m/a/", 2}, {"/m/b/", 1}}));
  others.Set("/m/a/", 0);
  EXPECT_EQ(others.ByFolder(), (OtherFormats::Folders{{"/m/b/", 1}}));
  others.Clear();
  EXPECT_EQ(others.Files(), 0U);
  EXPECT_TRUE(others.ByFolder().empty());
}

}  // namespace
}  // namespace tallow

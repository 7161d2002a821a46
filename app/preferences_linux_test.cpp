// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "app/preferences.h"
#include "tests/as_nobody_linux.h"
#include "tests/temp_folder.h"
#include "util/file_system.h"

namespace tallow {
namespace {

TEST(PreferencesOnLinux, AFileWithoutReadPermissionStaysAsItIs) {
  const TempFolder folder;
  const std::string path = folder.File("Preferences.json", R"({"style":"modern"})");
  ASSERT_EQ(chmod(folder.path().c_str(), 0777), 0);
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  {
    const AsNobody nobody;
    Preferences preferences;
    preferences.Load(path);
    EXPECT_EQ(preferences.style(), Style::kClassic);
    EXPECT_EQ(preferences.TakeProblems().size(), 1U);
    preferences.SetSwitches({.albums = true});
    EXPECT_EQ(preferences.TakeProblems().size(), 1U);
  }
  ASSERT_EQ(chmod(path.c_str(), 0600), 0);
  EXPECT_EQ(ReadWholeFile(path, 100), R"({"style":"modern"})");
  EXPECT_FALSE(FileExists(path + ".bak"));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/as_nobody_linux.h"
#include "tests/environment_linux.h"
#include "tests/temp_folder.h"
#include "util/errors.h"
#include "util/runtime_folder_linux.h"
#include "util/user_folders.h"

namespace tallow {
namespace {

TEST(UserFoldersLinux, TheDataFolderIsThatOfTheEnvironment) {
  const EnvironmentVariable home("HOME", "/home/ada");
  const EnvironmentVariable data("XDG_DATA_HOME", "/data/ada");
  EXPECT_EQ(UserDataFolder(), "/data/ada/");
}

TEST(UserFoldersLinux, TheHomeFolderIsThatOfTheEnvironment) {
  const EnvironmentVariable home("HOME", "/home/ada");
  EXPECT_EQ(HomeFolder(), "/home/ada/");
}

TEST(UserFoldersLinux, WithoutAnAbsolutePathTheDataFolderIsInTheHomeFolder) {
  const EnvironmentVariable home("HOME", "/home/ada");
  for (const char* const path : {"", "data"}) {
    const EnvironmentVariable data("XDG_DATA_HOME", path);
    EXPECT_EQ(UserDataFolder(), "/home/ada/.local/share/");
  }
  const EnvironmentVariable data("XDG_DATA_HOME", std::nullopt);
  EXPECT_EQ(UserDataFolder(), "/home/ada/.local/share/");
}

TEST(UserFoldersLinux, WithoutAnEnvironmentTheHomeFolderIsThatOfTheUserDatabase) {
  const passwd* const user = getpwuid(getuid());
  if (user == nullptr) GTEST_SKIP() << "This user is not in the database.";
  const std::string expected = EnsureTrailingBackslash(user->pw_dir) + ".local/share/";
  const EnvironmentVariable data("XDG_DATA_HOME", std::nullopt);
  const EnvironmentVariable none("HOME", std::nullopt);
  EXPECT_EQ(UserDataFolder(), expected);
  const EnvironmentVariable relative("HOME", "ada");
  EXPECT_EQ(UserDataFolder(), expected);
}

TEST(UserFoldersLinux, ARuntimeFolderThatCannotBeMadeIsAnError) {
  const TempFolder folder;
  if (geteuid() == 0) {
    ASSERT_EQ(chown(folder.path().c_str(), 65534, getgid()), 0);
  }
  const AsNobody nobody;
  ASSERT_EQ(chmod(folder.path().c_str(), S_IRUSR | S_IXUSR), 0);
  const EnvironmentVariable runtime("XDG_RUNTIME_DIR", folder.path());
  try {
    RuntimeFolder();
    ADD_FAILURE();
  } catch (const FileError& error) {
    EXPECT_EQ(error.path(), folder / "tallow");
    EXPECT_EQ(error.reason(), "Permission denied");
  }
  ASSERT_EQ(chmod(folder.path().c_str(), S_IRWXU), 0);
  EXPECT_EQ(RuntimeFolder(), folder / "tallow/");
}

}  // namespace
}  // namespace tallow

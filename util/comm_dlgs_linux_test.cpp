// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/as_nobody_linux.h"
#include "tests/recorded_messages.h"
#include "tests/temp_folder.h"
#include "util/comm_dlgs.h"

namespace tallow {
namespace {

TEST(FileCheckOnLinux, SystemErrorsMapToErrorNumbers) {
  const std::pair<unsigned long, std::int64_t> absent[] = {
      {ENOENT, 53}, {ENOTDIR, 76}, {ENODEV, 68}, {ENXIO, 68}};
  for (const auto& [error, number] : absent) {
    EXPECT_EQ(ProblemOfError(error).number, number);
    EXPECT_TRUE(ProblemOfError(error).absent);
  }
  for (const unsigned long error :
       std::initializer_list<unsigned long>{EACCES, EIO, ELOOP, ENAMETOOLONG}) {
    EXPECT_EQ(ProblemOfError(error).number, static_cast<std::int64_t>(error));
    EXPECT_FALSE(ProblemOfError(error).absent);
    EXPECT_EQ(ProblemOfError(error).text, std::strerror(static_cast<int>(error)));
  }
}

TEST(FileCheckOnLinux, APathBelowAFileIsPathNotFound) {
  const TempFolder folder;
  const auto problem = ProblemOfFileDate(folder.File("a.mp3") + "/b.mp3");
  ASSERT_TRUE(problem);
  EXPECT_EQ(problem->number, 76);
  EXPECT_TRUE(problem->absent);
}

TEST(FileCheckOnLinux, AForbiddenFolderIsShownWithTheSystemsNumberAndText) {
  const TempFolder folder;
  const std::string file = folder.File("locked/a.mp3");
  ASSERT_EQ(chmod((folder / "locked").c_str(), 0), 0);
  RecordedMessages messages;
  {
    const AsNobody nobody;
    EXPECT_TRUE(FileExistsCheck(file, messages.Shower()));
  }
  EXPECT_EQ(messages.Take(), std::vector<std::string>{"Error Number: 13\nPermission denied"});
  chmod((folder / "locked").c_str(), S_IRWXU);
}

TEST(FileCheckOnLinux, ALinkToItselfIsShown) {
  const TempFolder folder;
  std::filesystem::create_symlink("a.mp3", folder / "a.mp3");
  RecordedMessages messages;
  EXPECT_TRUE(FileExistsCheck(folder / "a.mp3", messages.Shower()));
  EXPECT_EQ(messages.Take(),
            std::vector<std::string>{"Error Number: 40\nToo many levels of symbolic links"});
}

TEST(FileCheckOnLinux, ALinkToNothingIsMissing) {
  const TempFolder folder;
  std::filesystem::create_symlink("gone.mp3", folder / "a.mp3");
  RecordedMessages messages;
  EXPECT_FALSE(FileExistsCheck(folder / "a.mp3", messages.Shower()));
  EXPECT_TRUE(messages.shown.empty());
}

TEST(FileCheckOnLinux, ANameWithInvalidUtf8IsFound) {
  const TempFolder folder;
  RecordedMessages messages;
  EXPECT_TRUE(FileExistsCheck(folder.File("caf\xE9\n.mp3"), messages.Shower()));
}

}  // namespace
}  // namespace tallow

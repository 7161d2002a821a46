// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <windows.h>

#include "tests/recorded_messages.h"
#include "util/comm_dlgs.h"

namespace tallow {
namespace {

TEST(FileCheckOnWindows, SystemErrorsMapToErrorNumbers) {
  const std::pair<DWORD, std::int64_t> absent[] = {
      {ERROR_FILE_NOT_FOUND, 53}, {ERROR_PATH_NOT_FOUND, 76}, {ERROR_INVALID_DRIVE, 76},
      {ERROR_BAD_NETPATH, 76},    {ERROR_BAD_NET_NAME, 76},   {ERROR_NOT_READY, 68},
      {ERROR_BAD_UNIT, 68},       {ERROR_DEV_NOT_EXIST, 68}};
  for (const auto& [error, number] : absent) {
    EXPECT_EQ(ProblemOfError(error).number, number) << error;
    EXPECT_TRUE(ProblemOfError(error).absent) << error;
  }
  for (const DWORD error : {ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION, ERROR_INVALID_NAME}) {
    EXPECT_EQ(ProblemOfError(error).number, static_cast<std::int64_t>(error));
    EXPECT_FALSE(ProblemOfError(error).absent);
    EXPECT_FALSE(ProblemOfError(error).text.empty());
  }
}

TEST(FileCheckOnWindows, ADriveLetterThatDoesNotExistIsMissingWithoutAMessage) {
  RecordedMessages messages;
  EXPECT_FALSE(FileExistsCheck("Q:\\Music\\a.mp3", messages.Shower()));
  EXPECT_EQ(ProblemOfFileDate("Q:\\Music\\a.mp3")->number, 76);
  EXPECT_TRUE(messages.shown.empty());
}

}  // namespace
}  // namespace tallow

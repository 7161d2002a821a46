// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_socket_linux.h"

#include <cerrno>
#include <gtest/gtest.h>

#include "tests/temp_folder.h"
#include "util/errors.h"

namespace tallow {
namespace {

/// Longer than an address of a socket can be.
const std::string kTooLong = "/" + std::string(200, 'd');

TEST(PlayerSocket, APathThatIsTooLongIsAnErrorOfItsOwn) {
  errno = 0;
  EXPECT_LT(ListenAsPlayer(kTooLong), 0);
  EXPECT_EQ(errno, ENAMETOOLONG);
  errno = 0;
  EXPECT_LT(ConnectToPlayer(kTooLong), 0);
  EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST(PlayerSocket, AtAPathThatIsTooLongNoPlayerRunsWhateverFailedBefore) {
  // A start lock that was not free at once leaves this error.
  errno = EAGAIN;
  EXPECT_FALSE(PlayerRuns(kTooLong));
}

TEST(PlayerSocket, AFolderThatIsNotThereIsAnError) {
  const TempFolder folder;
  errno = 0;
  EXPECT_LT(ListenAsPlayer(folder / "none/player"), 0);
  EXPECT_EQ(errno, ENOENT);
  errno = 0;
  EXPECT_LT(ConnectToPlayer(folder / "none/player"), 0);
  EXPECT_EQ(errno, ENOENT);
  try {
    const PlayerStartLock lock(folder / "none/player");
    ADD_FAILURE();
  } catch (const FileError& error) {
    EXPECT_EQ(error.path(), folder / "none/player.lock");
    EXPECT_EQ(error.reason(), "No such file or directory");
  }
}

TEST(PlayerSocket, TheSocketOfAPlayerThatHasEndedIsReplaced) {
  const TempFolder folder;
  const std::string path = folder / "player";
  { const OpenFile ended(ListenAsPlayer(path)); }
  EXPECT_FALSE(PlayerRuns(path));
  const OpenFile listening(ListenAsPlayer(path));
  ASSERT_TRUE(listening);
  EXPECT_TRUE(PlayerRuns(path));
}

TEST(PlayerSocket, TheStartLockIsFreeAgainAfterItsEnd) {
  const TempFolder folder;
  const std::string path = folder / "player";
  {
    const PlayerStartLock lock(path);
    try {
      const PlayerStartLock second(path);
      ADD_FAILURE();
    } catch (const FileError& error) {
      EXPECT_EQ(error.path(), path + ".lock");
      EXPECT_EQ(error.reason(), "another process has held the start lock for too long");
    }
  }
  EXPECT_NO_THROW(PlayerStartLock{path});
}

}  // namespace
}  // namespace tallow

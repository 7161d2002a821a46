// SPDX-License-Identifier: GPL-3.0-or-later
// Keeping unsaved changes when the operating system refuses the write.
#include <filesystem>
#include <gtest/gtest.h>

#include "jukebox/jukebox.h"
#include "tests/as_nobody_linux.h"
#include "tests/library_fixture.h"
#include "util/errors.h"

namespace tallow {
namespace {

class FailingKeep : public LibraryTest {
 protected:
  FailingKeep() { jukebox.Nodes().AddChild(nullptr, "mine"); }
  std::string Folder() const { return SystemFolder(application.path()); }

  Jukebox jukebox;
};

TEST_F(FailingKeep, AFolderWithoutPermissionsIsReported) {
  std::filesystem::permissions(Folder(), std::filesystem::perms(0000));
  {
    const AsNobody nobody;
    EXPECT_THROW(tallow.unsaved.Keep(jukebox, library), FileError);
  }
  std::filesystem::permissions(Folder(), std::filesystem::perms(0755));
  tallow.unsaved.Keep(jukebox, library);
  EXPECT_TRUE(FileExists(Folder() + "Jukebox-1.unsaved"));
}

TEST_F(FailingKeep, AFolderThatIsALinkToItselfIsReported) {
  std::filesystem::remove_all(Folder());
  const std::string link = Folder().substr(0, Folder().size() - 1);
  std::filesystem::create_symlink(link, link);
  EXPECT_THROW(tallow.unsaved.Keep(jukebox, library), FileError);
}

}  // namespace
}  // namespace tallow

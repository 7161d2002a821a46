// SPDX-License-Identifier: GPL-3.0-or-later
// The sanitizers give out memory that they have reserved at the start, so they do not run these
// tests; Wine does not limit the memory of a job.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "details/child_reader.h"
#include "tests/served_details.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

bool Never() { return false; }

/// The children of this process.
std::vector<pid_t> Children() {
  std::vector<pid_t> children;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream status(entry.path() / "stat");
    pid_t process = 0;
    pid_t parent = 0;
    std::string name;
    char state = 0;
    // The name of this test program has no blank.
    if (status >> process >> name >> state >> parent && parent == getpid())
      children.push_back(process);
  }
  return children;
}

TEST(LinuxChildren, AFileThatEatsMemoryHasNoTagsAndTheNextIsRead) {
  const TempFolder folder;
  const std::string good = folder.File("good.mp3", Audio(400) + Tag({.title = "Title"}));
  const std::string hungry =
      folder.File(std::string(kHungryName), Audio(400) + Tag({.title = "Title"}));
  ChildReader reader({.program = OwnProgram(), .arguments = {std::string(kServeDetailsOption)}});
  for (int k = 0; k < 2; ++k) {
    EXPECT_EQ(reader.Read(good, Never).tags.title, "Title");
    EXPECT_TRUE(reader.Read(hungry, Never).failed);
  }
  EXPECT_EQ(reader.Read(good, Never).tags.title, "Title");
}

TEST(LinuxChildren, AChildThatWasKilledFromOutsideIsReplaced) {
  const TempFolder folder;
  const std::string good = folder.File("good.mp3", Audio(400) + Tag({.title = "Title"}));
  ChildReader reader({.program = OwnProgram(), .arguments = {std::string(kServeDetailsOption)}});
  ASSERT_EQ(reader.Read(good, Never).tags.title, "Title");
  const std::vector<pid_t> children = Children();
  ASSERT_EQ(children.size(), 1U);
  ASSERT_EQ(kill(children[0], SIGKILL), 0);
  EXPECT_EQ(reader.Read(good, Never).tags.title, "Title");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/comm_dlgs.h"

#include <gtest/gtest.h>

#include "tests/recorded_messages.h"
#include "tests/temp_folder.h"

namespace tallow {
namespace {

class FileCheck : public testing::Test {
 protected:
  bool Exists(const std::string& path) { return FileExistsCheck(path, messages.Shower()); }

  TempFolder folder;
  RecordedMessages messages;
};

TEST_F(FileCheck, AnExistingFileIsThere) {
  EXPECT_TRUE(Exists(folder.File("a.mp3")));
  EXPECT_TRUE(Exists(folder.File("Ünïcödé 曲.mp3")));
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(FileCheck, AFolderExistsToo) { EXPECT_TRUE(Exists(folder.path())); }

TEST_F(FileCheck, AnAbsentFileIsMissingWithoutAMessage) {
  EXPECT_FALSE(Exists(folder / "a.mp3"));
  EXPECT_EQ(ProblemOfFileDate(folder / "a.mp3")->number, 53);
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(FileCheck, AnAbsentFolderIsMissingWithoutAMessage) {
  EXPECT_FALSE(Exists(folder / "no/a.mp3"));
  EXPECT_TRUE(ProblemOfFileDate(folder / "no/a.mp3")->absent);
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(FileCheck, AnEmptyPathIsMissing) { EXPECT_FALSE(Exists("")); }

TEST_F(FileCheck, AnyOtherProblemIsShownOncePerCallAndTheFileCountsAsPresent) {
  const std::string path = folder / kImpossibleName;
  const auto problem = ProblemOfFileDate(path);
  ASSERT_TRUE(problem);
  EXPECT_FALSE(problem->absent);
  EXPECT_FALSE(problem->text.empty());
  EXPECT_TRUE(Exists(path));
  EXPECT_TRUE(Exists(path));
  ASSERT_EQ(messages.shown.size(), 2U);
  const Message& message = messages.shown[1];
  EXPECT_EQ(message.title, "Error");
  EXPECT_EQ(message.text,
            "Error Number: " + std::to_string(problem->number) + "\n" + problem->text);
  EXPECT_EQ(message.icon, MessageIcon::kNone);
  EXPECT_EQ(message.buttons, MessageButtons::kOk);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/play_counts.h"

#include <gtest/gtest.h>
#include <optional>

#include "tests/temp_folder.h"
#include "util/file_system.h"

namespace tallow {
namespace {

using std::chrono::sys_days;
using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

constexpr sys_days kMonday = 2026y / 11 / 23;

class PlayCountsTest : public testing::Test {
 protected:
  /// The file is read as by the next start.
  PlayCounts& Restart() { return counts.emplace(folder.path()); }
  std::string File(const std::string& name = "PlayCounts.json") const {
    return ReadWholeFile(folder / name, 1 << 20).value_or("no file");
  }

  TempFolder folder;
  std::optional<PlayCounts> counts{std::in_place, folder.path()};
};

TEST_F(PlayCountsTest, WithoutPlaysThereIsNoFile) {
  EXPECT_EQ(counts->Of("/m/a.mp3"), PlayCount());
  EXPECT_EQ(counts->Songs(), 0U);
  EXPECT_EQ(File(), "no file");
  EXPECT_EQ(counts->TakeProblems(), Texts{});
}

TEST_F(PlayCountsTest, PlaysAreCountedAndStored) {
  counts->Add("/m/b.mp3", kMonday);
  counts->Add("/m/a\xFF.mp3", kMonday);
  counts->Add("/m/b.mp3", kMonday + std::chrono::days(1));
  EXPECT_EQ(Restart().Of("/m/b.mp3"), (PlayCount{2, kMonday + std::chrono::days(1)}));
  EXPECT_EQ(counts->Of("/m/a\xFF.mp3"), (PlayCount{1, kMonday}));
  EXPECT_EQ(counts->Songs(), 2U);
  EXPECT_EQ(File(),
            "{\"format\":\"Tallow play counts\",\"version\":1,\"songs\":[\n"
            "{\"path\":\"/m/a\xF4\x8F\xBB\xBF.mp3\",\"count\":1,\"last\":\"2026-11-23\"},\n"
            "{\"path\":\"/m/b.mp3\",\"count\":2,\"last\":\"2026-11-24\"}]}\n");
}

TEST_F(PlayCountsTest, TheFileBeforeTheLastPlayIsKept) {
  counts->Add("/m/a.mp3", kMonday);
  EXPECT_EQ(File("PlayCounts.json.bak"), "no file");
  const std::string first = File();
  counts->Add("/m/a.mp3", kMonday);
  EXPECT_EQ(File("PlayCounts.json.bak"), first);
}

TEST_F(PlayCountsTest, ADamagedFileIsSetAsideAndTheBackupUsed) {
  counts->Add("/m/a.mp3", kMonday);
  counts->Add("/m/a.mp3", kMonday);
  for (const char* const damaged :
       {"", "{", "{\"format\":\"Tallow queue\",\"version\":1,\"songs\":[]}",
        "{\"format\":\"Tallow play counts\",\"version\":1,\"songs\":[\n"
        "{\"path\":\"/m/a.mp3\",\"count\":0,\"last\":\"2026-11-23\"}]}",
        "{\"format\":\"Tallow play counts\",\"version\":1,\"songs\":[\n"
        "{\"path\":\"/m/a.mp3\",\"count\":1,\"last\":\"2026-02-30\"}]}"}) {
    folder.File("PlayCounts.json", damaged);
    EXPECT_EQ(Restart().Of("/m/a.mp3"), (PlayCount{1, kMonday}));
    EXPECT_EQ(counts->TakeProblems(),
              Texts{folder / "PlayCounts.json" +
                    " is damaged. It was renamed to end in .damaged. The counts before the last "
                    "play are used."});
    EXPECT_EQ(File("PlayCounts.json.damaged"), damaged);
    EXPECT_EQ(File(), "no file");
    EXPECT_NE(File("PlayCounts.json.bak"), "no file");
  }
  // The next play makes the file anew, and does not touch the backup.
  const std::string backup = File("PlayCounts.json.bak");
  counts->Add("/m/a.mp3", kMonday);
  EXPECT_EQ(File("PlayCounts.json.bak"), backup);
  EXPECT_EQ(Restart().Of("/m/a.mp3"), (PlayCount{2, kMonday}));
}

TEST_F(PlayCountsTest, ALostFileIsReadFromTheBackup) {
  counts->Add("/m/a.mp3", kMonday);
  counts->Add("/m/a.mp3", kMonday);
  RemoveFile(folder / "PlayCounts.json");
  EXPECT_EQ(Restart().Of("/m/a.mp3"), (PlayCount{1, kMonday}));
  EXPECT_EQ(counts->TakeProblems(), Texts{});
}

TEST_F(PlayCountsTest, AFileThatCannotBeReadIsNotReplaced) {
  CreateFolder(folder / "PlayCounts.json");
  counts->Add("/m/a.mp3", kMonday);
  EXPECT_EQ(counts->Of("/m/a.mp3").count, 1);
  const Texts problems = counts->TakeProblems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].find("cannot be read"), std::string::npos);
  EXPECT_TRUE(FolderExists(folder / "PlayCounts.json"));
}

TEST_F(PlayCountsTest, AFailureToStoreIsReportedOnce) {
  CreateFolder(folder / "PlayCounts.json.new");
  counts->Add("/m/a.mp3", kMonday);
  counts->Add("/m/a.mp3", kMonday);
  const Texts problems = counts->TakeProblems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_TRUE(problems[0].starts_with("The play counts could not be saved. ")) << problems[0];
  EXPECT_EQ(counts->Of("/m/a.mp3").count, 2);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/saved_queue.h"

#include <gtest/gtest.h>
#include <optional>

#include "tests/temp_folder.h"
#include "util/file_system.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

class SavedQueueTest : public testing::Test {
 protected:
  /// The file is read as by the next start.
  SavedQueue& Restart() { return queue.emplace(folder.path()); }
  std::string File(const std::string& name = "Queue.json") const {
    return ReadWholeFile(folder / name, 1 << 20).value_or("no file");
  }

  TempFolder folder;
  const SavedSongs songs{{folder / "a.mp3", folder / "b\xFF.mp3", folder / "a.mp3"}, 61'500};
  std::optional<SavedQueue> queue{std::in_place, folder.path()};
};

TEST_F(SavedQueueTest, WithoutSongsThereIsNoFile) {
  EXPECT_EQ(queue->Load(), SavedSongs());
  queue->Store({});
  EXPECT_EQ(File(), "no file");
}

TEST_F(SavedQueueTest, TheNextStartGetsTheSongsAndThePosition) {
  queue->Store(songs);
  EXPECT_EQ(Restart().Load(), songs);
  EXPECT_TRUE(File().starts_with(
      "{\"format\":\"Tallow queue\",\"version\":1,\"position\":61500,\"songs\":[\n\""));
  queue->Store({});
  EXPECT_EQ(Restart().Load(), SavedSongs());
  EXPECT_EQ(queue->TakeProblems(), Texts{});
}

TEST_F(SavedQueueTest, TheNumbersInThePlayersListAreKept) {
  SavedSongs numbered = songs;
  numbered.list = 12;
  numbered.entries = {4, 7, 5};
  queue->Store(numbered);
  EXPECT_EQ(Restart().Load(), numbered);
  EXPECT_TRUE(File().ends_with("],\"list\":12,\"entries\":[4,7,5]}\n")) << File();
}

TEST_F(SavedQueueTest, ADamagedFileIsRenamedAndReplaced) {
  for (const char* const damaged :
       {"", "[1]", "{\"format\":\"Tallow queue\",\"version\":2,\"position\":0,\"songs\":[]}",
        "{\"format\":\"Tallow queue\",\"version\":1,\"position\":-1,\"songs\":[]}",
        "{\"format\":\"Tallow queue\",\"version\":1,\"position\":0,\"songs\":[\"a.mp3\"]}",
        "{\"format\":\"Tallow "
        "queue\",\"version\":1,\"position\":0,\"songs\":[],\"entries\":[1]}"}) {
    folder.File("Queue.json", damaged);
    EXPECT_EQ(Restart().Load(), SavedSongs());
    EXPECT_EQ(queue->TakeProblems(),
              Texts{folder / "Queue.json" + " is damaged. It was renamed to end in .bak."});
    EXPECT_EQ(File("Queue.json.bak"), damaged);
    queue->Store(songs);
    EXPECT_EQ(Restart().Load(), songs);
  }
}

TEST_F(SavedQueueTest, AFailureToStoreIsReportedOnce) {
  CreateFolder(folder / "Queue.json.new");
  queue->Store(songs);
  queue->Store(songs);
  const Texts problems = queue->TakeProblems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_TRUE(problems[0].starts_with("The queue could not be saved. ")) << problems[0];
}

}  // namespace
}  // namespace tallow

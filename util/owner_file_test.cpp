// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/owner_file.h"

#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "tests/temp_folder.h"

namespace tallow {
namespace {

using Answer = OwnerFile::Answer;
using Unknown = OwnerFile::Unknown;

class OwnerFileTest : public testing::Test {
 protected:
  /// An ended process of this computer: the current process id with another start time.
  static ProcessName EndedProcess() {
    ProcessName ended = ThisProcess();
    ++ended.started;
    return ended;
  }
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const FileEntry& file : ListFolder(folder.path(), {.pattern = "*"}).files)
      names.push_back(file.name);
    return names;
  }

  TempFolder folder;
  const std::string path = folder / "it.owner";

  /// The results of eight threads that replace the file of an ended process at the same time.
  std::vector<Answer> ReplaceAtOnce() const {
    folder.File("it.owner", OwnerText(EndedProcess()));
    constexpr std::size_t kMany = 8;
    std::atomic<std::size_t> ready{0};
    std::vector<Answer> answers(kMany);
    std::vector<OwnerFile> owners(kMany);
    std::vector<std::thread> threads;
    for (std::size_t k = 0; k < kMany; ++k)
      threads.emplace_back([&, k] {
        ++ready;
        while (ready < kMany) std::this_thread::yield();
        answers[k] = owners[k].Acquire(path, Unknown::kStays);
      });
    for (std::thread& thread : threads) thread.join();
    return answers;
  }
};

TEST_F(OwnerFileTest, NamesThisProcessAndRemovesTheFileAtTheEnd) {
  {
    OwnerFile owner;
    EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kHeld);
    EXPECT_EQ(ReadOwner(path), ThisProcess());
    EXPECT_EQ(Files(), std::vector<std::string>{"it.owner"});
  }
  EXPECT_TRUE(Files().empty());
}

TEST_F(OwnerFileTest, OnlyOneObjectOwnsTheFile) {
  OwnerFile second;
  {
    OwnerFile first;
    EXPECT_EQ(first.Acquire(path, Unknown::kStays), Answer::kHeld);
    EXPECT_EQ(second.Acquire(path, Unknown::kStays), Answer::kInUse);
    EXPECT_EQ(second.Acquire(path, Unknown::kIsReplaced), Answer::kInUse);
  }
  EXPECT_EQ(second.Acquire(path, Unknown::kStays), Answer::kHeld);
}

TEST_F(OwnerFileTest, AFileOfAnEndedProcessIsReplaced) {
  folder.File("it.owner", OwnerText(EndedProcess()));
  OwnerFile owner;
  EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kHeld);
  EXPECT_EQ(ReadOwner(path), ThisProcess());
  EXPECT_EQ(Files(), std::vector<std::string>{"it.owner"});
}

TEST_F(OwnerFileTest, OfManyThreadsExactlyOneReplacesTheFile) {
  for (int round = 0; round < 100; ++round) {
    const std::vector<Answer> answers = ReplaceAtOnce();
    EXPECT_EQ(std::count(answers.begin(), answers.end(), Answer::kHeld), 1);
  }
}

#ifndef _WIN32
// On Windows a file that is being deleted may also give kUnknown.
TEST_F(OwnerFileTest, AllOtherThreadsFindTheFileInUse) {
  for (int round = 0; round < 100; ++round) {
    const std::vector<Answer> answers = ReplaceAtOnce();
    EXPECT_EQ(std::count(answers.begin(), answers.end(), Answer::kInUse), 7);
  }
}
#endif

TEST_F(OwnerFileTest, AClaimOfAKilledProcessIsReplaced) {
  folder.File("it.owner", OwnerText(EndedProcess()));
  folder.File("it.owner.claim", OwnerText(EndedProcess()));
  folder.File("it.owner.new", "Tall");
  OwnerFile owner;
  EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kHeld);
  EXPECT_EQ(Files(), std::vector<std::string>{"it.owner"});
}

TEST_F(OwnerFileTest, AClaimOfARunningProcessIsRespected) {
  folder.File("it.owner", OwnerText(EndedProcess()));
  OwnerFile claim;
  ASSERT_EQ(claim.Acquire(path + ".claim", Unknown::kStays), Answer::kHeld);
  OwnerFile owner;
  EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kInUse);
  EXPECT_EQ(ReadOwner(path), EndedProcess());
}

TEST_F(OwnerFileTest, AFileOfAnotherComputerStaysUnlessReplacingIsRequested) {
  ProcessName far = ThisProcess();
  far.host += "2";
  folder.File("it.owner", OwnerText(far));
  {
    OwnerFile owner;
    EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kUnknown);
  }
  EXPECT_EQ(ReadOwner(path), far);
  EXPECT_EQ(Files(), std::vector<std::string>{"it.owner"});
  OwnerFile owner;
  EXPECT_EQ(owner.Acquire(path, Unknown::kIsReplaced), Answer::kHeld);
  EXPECT_EQ(ReadOwner(path), ThisProcess());
}

TEST_F(OwnerFileTest, AnUnreadableFileStaysUnlessReplacingIsRequested) {
  const std::string whole = OwnerText(EndedProcess());
  const std::string contents[] = {"",
                                  "x",
                                  std::string(100000, 'x'),
                                  whole.substr(0, whole.size() - 1),
                                  whole + "more\n",
                                  whole.substr(0, 20)};
  for (const std::string& content : contents) {
    folder.File("it.owner", content);
    {
      OwnerFile owner;
      EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kUnknown);
    }
    EXPECT_EQ(ReadWholeFile(path), content);
    OwnerFile owner;
    EXPECT_EQ(owner.Acquire(path, Unknown::kIsReplaced), Answer::kHeld);
  }
}

TEST_F(OwnerFileTest, AFolderOfThatNameStays) {
  folder.Folder("it.owner");
  OwnerFile owner;
  EXPECT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kUnknown);
  EXPECT_EQ(owner.Acquire(path, Unknown::kIsReplaced), Answer::kImpossible);
  EXPECT_TRUE(Files().empty());
}

TEST_F(OwnerFileTest, AFileThatCannotBeCreatedIsImpossible) {
  OwnerFile owner;
  EXPECT_EQ(owner.Acquire(folder / "none/it.owner", Unknown::kStays), Answer::kImpossible);
}

TEST_F(OwnerFileTest, AFileThatAnotherOwnerHasCreatedMeanwhileIsNotRemoved) {
  ProcessName far = ThisProcess();
  far.host += "2";
  {
    OwnerFile owner;
    ASSERT_EQ(owner.Acquire(path, Unknown::kStays), Answer::kHeld);
    folder.File("it.owner", OwnerText(far));
  }
  EXPECT_EQ(ReadOwner(path), far);
}

TEST_F(OwnerFileTest, TheEncodedTextIsParsedBack) {
  const ProcessName odd{"a b", "", "run", "pid:[1]", 18446744073709551615U, 1};
  EXPECT_EQ(OwnerOf(OwnerText(odd)), odd);
  ProcessName broken = odd;
  broken.host = "a\nb";
  EXPECT_EQ(OwnerOf(OwnerText(broken)), odd);
  EXPECT_EQ(OwnerText({"anna", "6e", "0b", "pid:[4026531836]", 4711, 883214}),
            "Tallow 1\nhost anna\nmachine 6e\nrun 0b\nset pid:[4026531836]\nprocess "
            "4711\nstarted 883214\n");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// Behaviour when the system cannot create threads.
#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <random>
#include <sys/stat.h>

#include "app/search/file_search.h"
#include "app/search/winamp_search.h"
#include "library/size_finder.h"
#include "tests/library_fixture.h"
#include "tests/no_threads_linux.h"
#include "tests/recorded_progress.h"
#include "util/quicksort.h"
#include "util/read_ahead.h"
#include "util/threads.h"

namespace tallow {
namespace {

class WithoutThreads : public LibraryTest {};

TEST_F(WithoutThreads, StartThreadFailsAndStartThreadOrRunRunsTheWork) {
  const NoThreads none;
  bool done = false;
  EXPECT_FALSE(StartThread([&] { done = true; }).joinable());
  EXPECT_FALSE(done);
  EXPECT_FALSE(StartThreadOrRun([&] { done = true; }).joinable());
  EXPECT_TRUE(done);
}

TEST_F(WithoutThreads, WithThreadsTheWorkRunsOnAnotherThread) {
  std::thread::id other;
  std::thread thread = StartThreadOrRun([&] { other = std::this_thread::get_id(); });
  Join(thread);
  EXPECT_NE(other, std::this_thread::get_id());
}

TEST_F(WithoutThreads, TextsAreRankedOnTheCallersThread) {
  std::mt19937 random(1);
  std::vector<std::string> texts(20000);
  for (std::string& text : texts) text = "song " + std::to_string(random() % 5000);
  const std::vector<std::string_view> views(texts.begin(), texts.end());
  const std::vector<std::int32_t> expected = RankText(views);
  const NoThreads none;
  EXPECT_EQ(RankText(views), expected);
}

TEST_F(WithoutThreads, ReadingAheadAnswersOnTheCallersThread) {
  const NoThreads none;
  const auto caller = std::this_thread::get_id();
  std::size_t next = 0;
  for (const std::size_t count : {1U, 500U}) {
    next = 0;
    ReadAhead(
        count, 8, [](std::size_t i) { return i; },
        [&](std::size_t i) {
          EXPECT_EQ(std::this_thread::get_id(), caller);
          return i;
        },
        [&](std::size_t i, std::size_t value) {
          EXPECT_EQ(i, next++);
          EXPECT_EQ(value, i);
        },
        [](std::size_t, std::chrono::milliseconds) { return WaitDecision::kWait; },
        [](std::size_t i) { return i; });
    EXPECT_EQ(next, count);
  }
}

TEST_F(WithoutThreads, AnswersGoOnOnTheCallersThreadOnceNoWorkerThreadIsLeft) {
  // Shared, because abandoned threads use it after the call.
  struct Disk {
    std::atomic<bool> is_back = false;
    std::atomic<std::size_t> waiting = 0;
  };
  const auto disk = std::make_shared<Disk>();
  const auto caller = std::this_thread::get_id();
  constexpr std::size_t kCount = 50;
  std::optional<NoThreads> none;
  std::vector<std::size_t> answers;
  ReadAhead(
      kCount, 1, [](std::size_t i) { return i; },
      [disk, caller](std::size_t i) {
        if (std::this_thread::get_id() == caller) return i;
        ++disk->waiting;
        disk->is_back.wait(false);
        --disk->waiting;
        return i;
      },
      [&](std::size_t, std::size_t answer) { answers.push_back(answer); },
      [&](std::size_t, std::chrono::milliseconds) {
        if (!none) none.emplace();
        return WaitDecision::kGiveUp;
      },
      [](std::size_t i) { return i + 1000; });
  ASSERT_EQ(answers.size(), kCount);
  // Each worker thread had started one question; these questions were given up.
  const std::size_t workers =
      std::clamp(std::thread::hardware_concurrency(), kMinReaders, kMaxReaders);
  for (std::size_t i = 0; i < kCount; ++i) EXPECT_EQ(answers[i], i < workers ? i + 1000 : i);
  disk->is_back = true;
  disk->is_back.notify_all();
  while (disk->waiting != 0) std::this_thread::yield();
}

TEST_F(WithoutThreads, ASearchFindsSongsAndThePlayer) {
  music.File("a/one.mp3");
  music.File("b/c/two.mp3");
  music.File("b/" + std::string(PlayerProgramName()));
  EXPECT_EQ(chmod((music / "b/tallow-player").c_str(), 0755), 0);
  const NoThreads none;
  RecordedProgress progress;
  const TestDrives drives({{music.path()}});
  const auto nowhere = [] { return std::string(); };
  FileSearch(tallow, drives, &progress).SearchDrivesForMp3s(true, {});
  EXPECT_EQ(library.UBoundOfMp3Array(), 2);
  WinampSearch(tallow, drives, &progress, nowhere).SearchDrivesForWinamp();
  EXPECT_EQ(tallow.settings.LocOfWinAmpExe(), music / "b/tallow-player");
}

TEST_F(WithoutThreads, AStartFindsPresentMissingAndNewSongs) {
  AddSong(music.path(), "there.mp3");
  AddSong(music.path(), "gone.mp3");
  music.File("there.mp3");
  ASSERT_TRUE(library.Save());
  library.WriteOutMp3DirectoryLocations();
  music.File("new.mp3");
  const NoThreads none;
  library.UseDrives([] { return MountedVolumes(); }, {});
  library.CheckToSeeIfFilesAreMissingAndMakeFalse([](std::string_view) { return true; });
  library.AddAnyAdditionalMp3FromTheNormalDirectories([](std::string_view) { return true; });
  EXPECT_EQ(Cells(2), (Texts{"there.mp3", "0", "new.mp3"}));
}

TEST_F(WithoutThreads, SizesAreFoundInSmallBatches) {
  constexpr std::int32_t kSongs = 500;
  for (std::int32_t k = 1; k <= kSongs; ++k) {
    const std::string name = std::to_string(k) + ".mp3";
    AddSong(music.path(), name);
    if (k == 1 || k == kSongs) music.File(name, "12345");
  }
  const NoThreads none;
  SizeFinder finder(library);
  int calls = 1;
  EXPECT_TRUE(finder.StoreSizes(library));
  EXPECT_EQ(library.Facts(1).size, 5);
  EXPECT_EQ(library.Facts(kSongs).size, kUnknownSize);
  while (finder.StoreSizes(library)) ++calls;
  EXPECT_GT(calls, 1);
  EXPECT_EQ(library.Facts(kSongs).size, 5);
}

}  // namespace
}  // namespace tallow

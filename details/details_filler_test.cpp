// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/details_filler.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "details/tag_reader.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"
#include "tests/wait_until.h"

namespace tallow {
namespace {

class Filler : public testing::Test {
 protected:
  Filler() { store_->Open(folder_ / kDetailsFileName); }

  void MakeSongs(std::size_t count) {
    for (std::size_t k = 0; k < count; ++k) {
      paths_.push_back(folder_.File("m/" + std::to_string(k) + ".mp3",
                                    Audio(300) + Tag({.title = "Title " + std::to_string(k)})));
    }
  }
  DetailsFiller::PathAt PathAt() {
    return [this](std::size_t index) { return paths_[index]; };
  }
  /// Polls until all songs are done. \returns the titles by index
  std::vector<std::string> Finish(DetailsFiller& filler) {
    std::vector<std::string> titles(paths_.size());
    std::vector<int> counts(paths_.size());
    EXPECT_TRUE(WaitUntil([&] {
      return filler
          .Poll([&](std::size_t index, const SongDetails& details) {
            titles[index] = details.tags.title;
            ++counts[index];
          })
          .IsFinished();
    }));
    EXPECT_TRUE(std::ranges::all_of(counts, [](int count) { return count == 1; }));
    return titles;
  }

  TempFolder folder_;
  std::shared_ptr<DetailsStore> store_ = std::make_shared<DetailsStore>();
  std::vector<std::string> paths_;
};

TEST_F(Filler, ReadsAndStoresEachSongOnce) {
  MakeSongs(300);
  DetailsFiller filler(store_);
  filler.Start(paths_.size(), PathAt());
  const std::vector<std::string> titles = Finish(filler);
  for (std::size_t k = 0; k < titles.size(); ++k) {
    EXPECT_EQ(titles[k], "Title " + std::to_string(k));
    const auto stored = store_->Find(paths_[k], StampOf(paths_[k]).value());
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->tags.title, titles[k]);
  }
}

TEST_F(Filler, WhatIsStoredIsNotReadAgain) {
  MakeSongs(40);
  std::atomic<int> reads = 0;
  const DetailsFiller::MakeReader counting = [&reads] {
    return [&reads](const std::string& path, const std::function<bool()>& /*stopped*/) {
      ++reads;
      // On a busy computer the thread may be abandoned, and the file deleted by now.
      return SongDetails{.stamp = StampOf(path).value_or(FileStamp())};
    };
  };
  DetailsFiller filler(store_, counting);
  filler.Start(paths_.size(), PathAt());
  Finish(filler);
  EXPECT_EQ(reads, 40);
  folder_.File("m/7.mp3", "changed");
  filler.Start(paths_.size(), PathAt());
  Finish(filler);
  EXPECT_EQ(reads, 41);
}

TEST_F(Filler, MissingSongsAreDoneAndNotStored) {
  MakeSongs(3);
  RemoveFile(paths_[1]);
  DetailsFiller filler(store_);
  filler.Start(paths_.size(), PathAt());
  EXPECT_EQ(Finish(filler), (std::vector<std::string>{"Title 0", "", "Title 2"}));
}

TEST_F(Filler, WhatTheDiskDidNotGiveIsReadAgainAtTheNextRun) {
  MakeSongs(1);
  const auto has_failed = std::make_shared<std::atomic<bool>>(false);
  const auto fails_once = [has_failed]() -> DetailsFiller::Reader {
    return [has_failed](const std::string& path, const std::function<bool()>& /*stopped*/) {
      if (!has_failed->exchange(true)) return SongDetails{.tags = {.unread = true}, .failed = true};
      return ReadSongDetails(path);
    };
  };
  for (const char* const title : {"", "Title 0"}) {
    DetailsFiller filler(store_, fails_once);
    filler.Start(paths_.size(), PathAt());
    EXPECT_EQ(Finish(filler), std::vector<std::string>{title});
  }
}

/// Readers that read nothing.
/// \param threads the number of threads that have a reader; a thread loses it when it ends
DetailsFiller::MakeReader CountedReaders(const std::shared_ptr<std::atomic<int>>& threads) {
  return [threads] {
    ++*threads;
    const std::shared_ptr<void> end(nullptr, [threads](void*) { --*threads; });
    return [end](const std::string& path, const std::function<bool()>& /*stopped*/) {
      return SongDetails{.stamp = StampOf(path).value()};
    };
  };
}

TEST_F(Filler, MarksTheDetailsOfFilesThatAreGone) {
  MakeSongs(3);
  const FileStamp stamp = StampOf(paths_[1]).value();
  const auto threads = std::make_shared<std::atomic<int>>(0);
  DetailsFiller filler(store_, CountedReaders(threads));
  filler.Start(paths_.size(), PathAt());
  Finish(filler);
  RemoveFile(paths_[1]);
  filler.Start(paths_.size(), PathAt());
  Finish(filler);
  ASSERT_TRUE(WaitUntil([&] { return *threads == 0; }));
  EXPECT_TRUE(store_->Find(paths_[1], stamp));
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  store_->DropGone({}, std::chrono::floor<std::chrono::days>(now).count() + kDropAfterDays);
  EXPECT_FALSE(store_->Find(paths_[1], stamp));
  EXPECT_TRUE(store_->Find(paths_[0], StampOf(paths_[0]).value()));
}

TEST_F(Filler, APassOverSomeSongsMarksNoDetailsAsGone) {
  MakeSongs(2);
  const std::string other = paths_.back();
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const std::int64_t today = std::chrono::floor<std::chrono::days>(now).count();
  for (const bool are_all : {false, true}) {
    store_->Put(other, SongDetails{.stamp = StampOf(other).value()});
    // Removes the mark of the iteration before.
    store_->DropGone({DetailsStore::HashOf(paths_[0]), DetailsStore::HashOf(other)}, today);
    const auto threads = std::make_shared<std::atomic<int>>(0);
    DetailsFiller filler(store_, CountedReaders(threads));
    filler.Start(1, PathAt(), are_all);
    // The thread that has read the last song marks what is gone, and ends.
    EXPECT_TRUE(WaitUntil([&] { return filler.Poll({}).IsFinished() && *threads == 0; }));
    // Only what was marked before is dropped.
    store_->DropGone({DetailsStore::HashOf(paths_[0])}, today + kDropAfterDays);
    EXPECT_EQ(store_->Find(other, StampOf(other).value()).has_value(), !are_all);
  }
}

TEST_F(Filler, NoSongsAreDoneAtOnce) {
  DetailsFiller filler(store_);
  filler.Start(0, PathAt());
  EXPECT_TRUE(filler.Poll({}).IsFinished());
}

/// A reader that blocks until it is stopped or released.
struct BlockedReader {
  SongDetails Read(const std::string& path, const std::function<bool()>& stopped,
                   bool ignores_stop) {
    ++waiting;
    while (!released && (ignores_stop || !stopped())) std::this_thread::yield();
    return SongDetails{.stamp = StampOf(path).value()};
  }
  std::atomic<int> waiting = 0;
  std::atomic<bool> released = false;
};

TEST_F(Filler, StopEndsAReadAndStoresNothingOfIt) {
  MakeSongs(20);
  const auto blocked = std::make_shared<BlockedReader>();
  DetailsFiller filler(store_, [blocked] {
    return [blocked](const std::string& path, const std::function<bool()>& stopped) {
      return blocked->Read(path, stopped, false);
    };
  });
  filler.Start(paths_.size(), PathAt());
  filler.Poll({});
  ASSERT_TRUE(WaitUntil([&] { return blocked->waiting == 2; }));
  filler.Stop();
  for (const std::string& path : paths_) EXPECT_FALSE(store_->Find(path, StampOf(path).value()));
}

TEST_F(Filler, StoppedWhileTheDatabaseIsWrittenTheNextRunReadsTheRest) {
  MakeSongs(60);
  std::atomic<int> calls = 0;
  for (std::size_t run = 1; run < 6; ++run) {
    // By this clock each song is a transaction of its own.
    store_ = std::make_shared<DetailsStore>(
        [&calls] { return std::chrono::steady_clock::time_point(2 * kCommitEvery * ++calls); });
    store_->Open(folder_ / kDetailsFileName);
    DetailsFiller filler(store_);
    filler.Start(paths_.size(), PathAt());
    EXPECT_TRUE(WaitUntil([&] { return filler.Poll({}).done >= 10 * run; }));
    filler.Stop();
    // A thread that was abandoned may be writing.
    EXPECT_TRUE(WaitUntil([&] { return store_.use_count() == 2; }));
    EXPECT_TRUE(store_->TakeProblems().empty());
    std::size_t stored = 0;
    for (std::size_t k = 0; k < paths_.size(); ++k) {
      const auto details = store_->Find(paths_[k], StampOf(paths_[k]).value());
      if (!details) continue;
      ++stored;
      EXPECT_EQ(details->tags.title, "Title " + std::to_string(k));
    }
    EXPECT_GE(stored, 10 * run);
    store_->Close();
  }
  store_ = std::make_shared<DetailsStore>();
  store_->Open(folder_ / kDetailsFileName);
  DetailsFiller filler(store_);
  filler.Start(paths_.size(), PathAt());
  EXPECT_EQ(Finish(filler).back(), "Title 59");
  EXPECT_TRUE(store_->TakeProblems().empty());
}

TEST_F(Filler, AThreadThatIsBlockedIsAbandoned) {
  MakeSongs(2);
  const auto blocked = std::make_shared<BlockedReader>();
  const auto ended = std::make_shared<std::atomic<int>>(0);
  DetailsFiller filler(store_, [blocked, ended] {
    return [blocked, ended](const std::string& path, const std::function<bool()>& stopped) {
      SongDetails details = blocked->Read(path, stopped, true);
      ++*ended;
      return details;
    };
  });
  filler.Start(paths_.size(), PathAt());
  filler.Poll({});
  ASSERT_TRUE(WaitUntil([&] { return blocked->waiting == 2; }));
  filler.Stop();
  EXPECT_EQ(*ended, 0);
  blocked->released = true;
  EXPECT_TRUE(WaitUntil([&] { return *ended == 2; }));
  EXPECT_TRUE(WaitUntil([&] { return store_.use_count() == 2; }));
}

TEST_F(Filler, WorkerThreadsWaitForThePolls) {
  MakeSongs(1);
  std::atomic<std::size_t> reads = 0;
  DetailsFiller filler(store_, [&reads] {
    return [&reads](const std::string& /*path*/, const std::function<bool()>& /*stopped*/) {
      ++reads;
      return SongDetails();
    };
  });
  std::size_t asked = 0;
  filler.Start(5000, [&](std::size_t index) {
    EXPECT_EQ(index, asked++);
    return paths_[0];
  });
  filler.Poll({});
  EXPECT_EQ(asked, DetailsFiller::kMaxWaiting);
  ASSERT_TRUE(WaitUntil([&] { return reads == DetailsFiller::kMaxWaiting; }));
  std::size_t results = 0;
  EXPECT_TRUE(WaitUntil([&] {
    return filler.Poll([&](std::size_t, const SongDetails&) { ++results; }).IsFinished();
  }));
  EXPECT_EQ(results, 5000U);
  EXPECT_EQ(asked, 5000U);
}

}  // namespace
}  // namespace tallow

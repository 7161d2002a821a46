// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/all_rows.h"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "details/database.h"
#include "details/details_store.h"
#include "tests/temp_folder.h"
#include "util/atomic_file.h"
#include "util/file_system.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

class AllRowsTest : public testing::Test {
 protected:
  void Store(const Texts& paths) {
    DetailsStore store;
    store.Open(database_);
    for (const std::string& path : paths)
      store.Put(path, {.tags = {.found = true, .title = "Title of " + path, .artist = "Artist"},
                       .length_ms = 1000});
  }
  /// The paths that are read, and how reading ended.
  std::pair<Texts, AllRows::State> Read(Texts wanted = {}) {
    AllRows rows(database_, std::move(wanted));
    Texts paths;
    const AllRows::State state = rows.Take(
        [&](std::string_view path, const DetailsRow& row) {
          EXPECT_EQ(row, (DetailsRow{.known = true,
                                     .title = titles_.emplace_back("Title of " + std::string(path)),
                                     .artist = "Artist",
                                     .length_ms = 1000}));
          paths.emplace_back(path);
        },
        std::chrono::steady_clock::now() + std::chrono::minutes(1));
    return {paths, state};
  }

  TempFolder folder_;
  std::string database_ = folder_ / "SongDetails.db";
  Texts titles_;
};

TEST_F(AllRowsTest, ReadsAllRowsInTheOrderOfTheirPaths) {
  Store({"/m/b.mp3", "/m/\xFF.mp3", "/m/a b.mp3"});
  EXPECT_EQ(Read(),
            std::pair(Texts{"/m/a b.mp3", "/m/b.mp3", "/m/\xFF.mp3"}, AllRows::State::kComplete));
}

TEST_F(AllRowsTest, ReadsMoreRowsThanOnePartHas) {
  Texts paths;
  for (int k = 0; k < 45'000; ++k) paths.push_back("/m/" + std::to_string(k) + ".mp3");
  Store(paths);
  std::ranges::sort(paths);
  EXPECT_EQ(Read(), std::pair(paths, AllRows::State::kComplete));
}

TEST_F(AllRowsTest, ReadsTheSongsThatAreAskedFor) {
  Store({"/m/a.mp3", "/m/b.mp3", "/m/c.mp3"});
  EXPECT_EQ(Read({"/m/c.mp3", "/m/none.mp3", "/m/a.mp3"}),
            std::pair(Texts{"/m/c.mp3", "/m/a.mp3"}, AllRows::State::kComplete));
}

TEST_F(AllRowsTest, FailsWithoutADatabase) {
  EXPECT_EQ(Read().second, AllRows::State::kFailed);
  EXPECT_FALSE(FileExists(database_));
  WriteFileAtomically(database_, std::string(5000, 'x'));
  EXPECT_EQ(Read().second, AllRows::State::kFailed);
}

TEST_F(AllRowsTest, ReadsWhileTheStoreHasATransaction) {
  Store({"/m/a.mp3"});
  std::chrono::steady_clock::time_point now;
  DetailsStore store([&] { return now; });
  store.Open(database_);
  now += std::chrono::hours(1);
  // The first is committed at once, the second stays in the transaction.
  store.Put("/m/b.mp3", {.tags = {.found = true, .title = "Title of /m/b.mp3", .artist = "Artist"},
                         .length_ms = 1000});
  store.Put("/m/c.mp3", {});
  EXPECT_EQ(Read(), std::pair(Texts{"/m/a.mp3", "/m/b.mp3"}, AllRows::State::kComplete));
  store.Put("/m/d.mp3", {});
  store.Commit();
  EXPECT_TRUE(store.TakeProblems().empty());
}

TEST_F(AllRowsTest, WaitsForACommit) {
  Store({"/m/a.mp3"});
  Database other(database_);
  other.Execute("BEGIN EXCLUSIVE");
  AllRows rows(database_);
  const auto ignore = [](std::string_view, const DetailsRow&) {};
  EXPECT_EQ(rows.Take(ignore, {}), AllRows::State::kReading);
  other.Execute("COMMIT");
  EXPECT_EQ(rows.Take(ignore, std::chrono::steady_clock::now() + std::chrono::minutes(1)),
            AllRows::State::kComplete);
}

TEST_F(AllRowsTest, AnUnfinishedReadIsStopped) {
  Store({"/m/a.mp3"});
  Database other(database_);
  other.Execute("BEGIN EXCLUSIVE");
  const AllRows rows(database_);
}

}  // namespace
}  // namespace tallow

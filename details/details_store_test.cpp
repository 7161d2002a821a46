// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/details_store.h"

#include <chrono>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "details/database.h"
#include "details/details_table.h"
#include "tests/temp_folder.h"
#include "util/atomic_file.h"

namespace tallow {
namespace {

SongDetails Details(std::uint64_t size, const std::string& title) {
  SongDetails details;
  details.tags = {.found = true,
                  .title = title,
                  .artist = "坂本 九",
                  .album_artist = "Кино",
                  .album = "Café",
                  .date = "12/05/1999",
                  .genre = "Rock",
                  .disc = 1,
                  .track = 12};
  details.comment = "A comment";
  details.length_ms = 1000;
  details.bit_rate = 320;
  details.sample_rate = 44100;
  details.format = "MP3";
  details.has_id3v1 = true;
  details.stamp = {size, 1234567890123456789};
  return details;
}

class Store : public testing::Test {
 protected:
  std::chrono::steady_clock::time_point now_{std::chrono::hours(1)};
  TempFolder folder_;
  std::string path_ = folder_ / kDetailsFileName;
  DetailsStore store_{[this] { return now_; }};

  /// What a store that opens a copy of the file as it is on disk now finds.
  std::optional<SongDetails> OnDisk(const std::string& song, const FileStamp& stamp) {
    const std::string copy = folder_ / "copy.db";
    WriteFileAtomically(copy, ReadWholeFile(path_).value());
    RemoveFile(copy + "-journal");
    DetailsStore other;
    other.Open(copy);
    return other.Find(song, stamp);
  }
};

TEST_F(Store, KeepsDetailsBetweenRuns) {
  const SongDetails details = Details(7, "上を向いて歩こう");
  store_.Open(path_);
  store_.Put("/m/\xFF.mp3", details);
  EXPECT_EQ(store_.Find("/m/\xFF.mp3", details.stamp), details);
  store_.Close();
  EXPECT_EQ(store_.Find("/m/\xFF.mp3", details.stamp), std::nullopt);
  store_.Open(path_);
  EXPECT_EQ(store_.Find("/m/\xFF.mp3", details.stamp), details);
  EXPECT_TRUE(store_.TakeProblems().empty());
}

TEST_F(Store, IsEmptyUntilDetailsAreStored) {
  EXPECT_TRUE(store_.IsEmpty());
  store_.Open(path_);
  EXPECT_TRUE(store_.IsEmpty());
  store_.Put("/m/a.mp3", Details(7, "Title"));
  EXPECT_FALSE(store_.IsEmpty());
  store_.Close();
  EXPECT_TRUE(store_.IsEmpty());
  store_.Open(path_);
  EXPECT_FALSE(store_.IsEmpty());
}

TEST_F(Store, ADatabaseOfAnotherVersionIsEmptied) {
  const SongDetails details = Details(7, "a");
  store_.Open(path_);
  store_.Put("/m/a.mp3", details);
  store_.Close();
  Database(path_).Execute(
      "DROP TABLE song; CREATE TABLE song (path BLOB PRIMARY KEY); PRAGMA user_version = 1;"
      "INSERT INTO song VALUES ('/m/a.mp3');");
  store_.Open(path_);
  EXPECT_TRUE(store_.IsEmpty());
  EXPECT_TRUE(store_.TakeProblems().empty());
  store_.Put("/m/a.mp3", details);
  EXPECT_EQ(store_.Find("/m/a.mp3", details.stamp), details);
}

TEST_F(Store, ASongThatChangedIsNotFound) {
  const SongDetails details = Details(7, "a");
  store_.Open(path_);
  store_.Put("/m/a.mp3", details);
  EXPECT_FALSE(store_.Find("/m/a.mp3", {8, details.stamp.modified}));
  EXPECT_FALSE(store_.Find("/m/a.mp3", {7, details.stamp.modified + 1}));
  EXPECT_FALSE(store_.Find("/m/b.mp3", details.stamp));
  const SongDetails newer = Details(8, "b");
  store_.Put("/m/a.mp3", newer);
  EXPECT_EQ(store_.Find("/m/a.mp3", newer.stamp), newer);
  EXPECT_FALSE(store_.Find("/m/a.mp3", details.stamp));
}

TEST_F(Store, CommitsOnceASecond) {
  store_.Open(path_);
  const SongDetails details = Details(7, "a");
  store_.Put("/m/1", details);
  EXPECT_TRUE(OnDisk("/m/1", details.stamp));
  now_ += std::chrono::milliseconds(999);
  store_.Put("/m/2", details);
  EXPECT_FALSE(OnDisk("/m/2", details.stamp));
  now_ += std::chrono::milliseconds(1);
  store_.Put("/m/3", details);
  EXPECT_TRUE(OnDisk("/m/2", details.stamp));
  store_.Put("/m/4", details);
  store_.Commit();
  EXPECT_TRUE(OnDisk("/m/4", details.stamp));
}

TEST_F(Store, ADamagedFileIsSetAsideAndMadeAgain) {
  const std::string damaged(5000, 'x');
  WriteFileAtomically(path_, damaged);
  store_.Open(path_);
  const std::vector<std::string> problems = store_.TakeProblems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0], path_ +
                             " is damaged. It was renamed to end in .bak, and is made again from "
                             "the songs.");
  EXPECT_EQ(ReadWholeFile(path_ + ".bak"), damaged);
  const SongDetails details = Details(7, "a");
  store_.Put("/m/a.mp3", details);
  store_.Close();
  store_.Open(path_);
  EXPECT_EQ(store_.Find("/m/a.mp3", details.stamp), details);
  EXPECT_TRUE(store_.TakeProblems().empty());
}

TEST_F(Store, DamageInTheMiddleOfTheFileLosesOnlyTheCache) {
  const SongDetails details = Details(7, "a");
  const auto song = [](int k) { return "/m/" + std::to_string(k) + ".mp3"; };
  store_.Open(path_);
  for (int k = 0; k < 2000; ++k) store_.Put(song(k), details);
  store_.Close();
  std::string bytes = ReadWholeFile(path_).value();
  std::mt19937 random(4);
  for (std::size_t k = 4096; k < bytes.size(); ++k) bytes[k] = static_cast<char>(random());
  WriteFileAtomically(path_, bytes);
  store_.Open(path_);
  for (int k = 0; k < 2000; ++k) store_.Find(song(k), details.stamp);
  EXPECT_EQ(store_.TakeProblems().size(), 1U);
  EXPECT_EQ(ReadWholeFile(path_ + ".bak"), bytes);
  store_.Put(song(1), details);
  EXPECT_EQ(store_.Find(song(1), details.stamp), details);
}

TEST_F(Store, AnOldJournalIsNotAppliedToTheNewFile) {
  WriteFileAtomically(path_, std::string(5000, 'x'));
  WriteFileAtomically(path_ + "-journal", std::string(5000, 'y'));
  store_.Open(path_);
  const SongDetails details = Details(7, "a");
  store_.Put("/m/a.mp3", details);
  store_.Close();
  store_.Open(path_);
  EXPECT_EQ(store_.Find("/m/a.mp3", details.stamp), details);
}

TEST_F(Store, WithoutAFolderItStoresNothingAndSaysSoOnce) {
  store_.Open(folder_ / "missing/SongDetails.db");
  const SongDetails details = Details(7, "a");
  store_.Put("/m/a.mp3", details);
  store_.Put("/m/b.mp3", details);
  EXPECT_FALSE(store_.Find("/m/a.mp3", details.stamp));
  EXPECT_EQ(store_.TakeProblems().size(), 1U);
}

TEST_F(Store, DetailsOfFilesThatAreGoneForLongAreDropped) {
  store_.Open(path_);
  const SongDetails details = Details(7, "a");
  const auto song = [](int k) { return "/m/\xFF" + std::to_string(k); };
  constexpr int kSongs = 1200;
  for (int k = 0; k < kSongs; ++k) store_.Put(song(k), details);
  std::vector<std::size_t> odd;
  std::vector<std::size_t> but_two;
  for (int k = 0; k < kSongs; ++k) {
    if (k % 2 == 1) odd.push_back(DetailsStore::HashOf(song(k)));
    if (k % 2 == 1 || k == 2) but_two.push_back(DetailsStore::HashOf(song(k)));
  }
  constexpr std::int64_t kToday = 20'000;
  store_.DropGone(odd, kToday);
  // Song 2 is back for a day, so that its days count again.
  store_.DropGone(but_two, kToday + 1);
  store_.DropGone(odd, kToday + kDropAfterDays - 1);
  for (int k = 0; k < kSongs; ++k) ASSERT_TRUE(store_.Find(song(k), details.stamp)) << k;
  store_.Close();
  store_.Open(path_);
  store_.DropGone(odd, kToday + kDropAfterDays);
  for (int k = 0; k < kSongs; ++k)
    ASSERT_EQ(store_.Find(song(k), details.stamp).has_value(), k % 2 == 1 || k == 2) << k;
  EXPECT_TRUE(store_.TakeProblems().empty());
}

/// The number of commits that changed a database.
std::uint32_t CommitsOf(const std::string& path) {
  const std::string bytes = ReadWholeFile(path).value();
  std::uint32_t commits = 0;
  // The file change counter of SQLite's header, big-endian.
  for (std::size_t k = 24; k < 28; ++k)
    commits = commits * 256 + static_cast<unsigned char>(bytes.at(k));
  return commits;
}

TEST_F(Store, DroppingCommitsOnceASecondAtMost) {
  store_.Open(path_);
  for (int k = 0; k < 5000; ++k) store_.Put("/m/" + std::to_string(k), Details(7, "a"));
  store_.Commit();
  // All is dropped within one second.
  std::uint32_t commits = CommitsOf(path_);
  store_.DropGone({}, 20'000);
  store_.DropGone({}, 20'000 + kDropAfterDays);
  EXPECT_EQ(CommitsOf(path_), commits);
  EXPECT_FALSE(store_.Find("/m/7", Details(7, "a").stamp));
  store_.Commit();
  EXPECT_EQ(CommitsOf(path_), commits + 1);
}

TEST_F(Store, LongDroppingCommitsEachSecond) {
  store_.Open(path_);
  for (int k = 0; k < 5000; ++k) store_.Put("/m/" + std::to_string(k), Details(7, "a"));
  store_.Commit();
  const std::uint32_t commits = CommitsOf(path_);
  // Ten parts of the rows, and a question before each and after the last.
  int asked = 0;
  store_.DropGone({}, 20'000, [&] {
    now_ += std::chrono::milliseconds(kCommitEvery) / 4;
    ++asked;
    return false;
  });
  EXPECT_EQ(asked, 11);
  EXPECT_EQ(CommitsOf(path_), commits + 2);
}

TEST_F(Store, DroppingEndsWhenItIsStopped) {
  store_.Open(path_);
  for (int k = 0; k < 2000; ++k) store_.Put("/m/" + std::to_string(k), Details(7, "a"));
  int asked = 0;
  store_.DropGone({}, 20'000, [&] { return ++asked == 2; });
  EXPECT_EQ(asked, 2);
  store_.Close();
  const Database database(path_);
  Statement marked(database.get(), "SELECT count(*) FROM gone");
  ASSERT_TRUE(marked.Step());
  EXPECT_EQ(marked.Number(0), 500);
}

TEST_F(Store, AgreesWithAMapOnRandomCalls) {
  std::mt19937 random(5);
  std::map<std::string, SongDetails> expected;
  store_.Open(path_);
  for (int k = 0; k < 3000; ++k) {
    const std::string song = "/m/" + std::to_string(random() % 50);
    const SongDetails details = Details(random() % 4, std::to_string(random() % 9));
    switch (random() % 8) {
      case 0:
        now_ += std::chrono::milliseconds(random() % 1500);
        break;
      case 1:
        store_.Close();
        store_.Open(path_);
        break;
      case 2:
      case 3:
        store_.Put(song, details);
        expected[song] = details;
        break;
      default: {
        const auto known = expected.find(song);
        std::optional<SongDetails> right;
        if (known != expected.end() && known->second.stamp == details.stamp) right = known->second;
        ASSERT_EQ(store_.Find(song, details.stamp), right);
      }
    }
  }
  EXPECT_TRUE(store_.TakeProblems().empty());
}

TEST_F(Store, ReadsTheDetailsOfAllFilesInOrder) {
  store_.ReadAll([](std::string_view, const DetailsRow&) { FAIL(); });
  store_.Open(path_);
  const SongDetails details = Details(7, "Title");
  store_.Put("/m/b.mp3", details);
  store_.Put("/m/\xFF.mp3", Details(8, "Other"));
  store_.Put("/m/a b.mp3", Details(9, ""));
  std::vector<std::string> paths;
  store_.ReadAll([&](std::string_view path, const DetailsRow& row) {
    paths.emplace_back(path);
    if (path == "/m/b.mp3") {
      EXPECT_EQ(row, RowOf(details));
    }
  });
  EXPECT_EQ(paths, (std::vector<std::string>{"/m/a b.mp3", "/m/b.mp3", "/m/\xFF.mp3"}));
}

TEST_F(Store, ReturnsTheLastDetailsOfAFileThatHasChanged) {
  EXPECT_FALSE(store_.LastOf("/m/a.mp3").has_value());
  store_.Open(path_);
  const SongDetails details = Details(7, "Title");
  store_.Put("/m/a.mp3", details);
  EXPECT_EQ(store_.LastOf("/m/a.mp3"), details);
  EXPECT_FALSE(store_.LastOf("/m/b.mp3").has_value());
}

}  // namespace
}  // namespace tallow

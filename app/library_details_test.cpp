// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/library_details.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "details/details_store.h"
#include "details/tag_reader.h"
#include "tests/id3v2_tag.h"
#include "tests/library_fixture.h"
#include "tests/served_details.h"
#include "tests/tagged_file.h"
#include "tests/temp_folder.h"
#include "tests/wait_until.h"
#include "util/atomic_file.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class LibraryDetailsTest : public testing::Test {
 protected:
  /// Stores a title for a file as it is now.
  void Store(const std::string& path, const std::string& title) {
    SongDetails details;
    details.tags = {.found = true, .title = title};
    details.stamp = StampOf(path).value();
    DetailsStore store;
    store.Open(database_);
    store.Put(path, details);
  }

  TempFolder folder_;
  std::string database_ = folder_ / "SongDetails.db";
};

TEST_F(LibraryDetailsTest, ReadsTheTagsOfAFile) {
  const std::string song =
      folder_.File("a.mp3", Id3v2Tag({{"TIT2", "Пачка сигарет"}}) + Audio(300));
  EXPECT_EQ(LibraryDetails(database_).TagReader()(song).title, "Пачка сигарет");
}

TEST_F(LibraryDetailsTest, UsesStoredTagsWhileTheFileIsTheSame) {
  const std::string song = folder_.File("a.mp3", Audio(300) + Tag({.title = "In the file"}));
  Store(song, "Stored");
  LibraryDetails details(database_);
  const ReadTags read = details.TagReader();
  EXPECT_EQ(read(song).title, "Stored");
  WriteFileAtomically(song, Audio(301) + Tag({.title = "Written now"}));
  EXPECT_EQ(read(song).title, "Written now");
}

TEST_F(LibraryDetailsTest, AMissingFileHasNoTags) {
  Store(folder_.File("a.mp3"), "Stored");
  EXPECT_FALSE(LibraryDetails(database_).TagReader()(folder_ / "b.mp3").found);
}

TEST_F(LibraryDetailsTest, AFileThatCrashesItsReaderInAChildHasNoTags) {
  // The byte between tag and audio makes it a file that is read in a child, see IsPlainMp3.
  const std::string newer = Id3v2Tag({{"TIT2", "Title"}}) + "x" + Audio(300);
  const std::string crashing = folder_.File(std::string(kCrashingName), newer);
  LibraryDetails details(database_);
  details.ReadInChildren(
      {.program = OwnProgram(), .arguments = {std::string(kServeDetailsOption)}});
  const ReadTags read = details.TagReader();
  EXPECT_FALSE(read(crashing).found);
  EXPECT_EQ(read(folder_.File("a.mp3", newer)).title, "Title");
}

TEST_F(LibraryDetailsTest, AReaderOutlivesTheDetails) {
  const std::string song = folder_.File("a.mp3");
  Store(song, "Stored");
  const ReadTags read = LibraryDetails(database_).TagReader();
  EXPECT_EQ(read(song).title, "Stored");
}

TEST_F(LibraryDetailsTest, OpensNothingBeforeTheFirstFile) {
  const ReadTags read = LibraryDetails(database_).TagReader();
  EXPECT_FALSE(FileExists(database_));
  read(folder_ / "a.mp3");
  EXPECT_TRUE(FileExists(database_));
}

using Records = std::vector<std::int32_t>;

/// Filling the details of a library.
class LibraryDetailsFill : public LibraryTest {
 protected:
  static std::string Newer() { return Id3v2Tag({{"TIT2", "Newer"}}) + Audio(300); }
  static std::string Older() { return Audio(300) + Tag({.title = "Older"}); }

  void Song(const std::string& name, const std::string& content) {
    music.File(name, content);
    AddSong(music.path(), name);
  }
  /// Stores the details of songs as an earlier run would, whose threads have ended.
  void StoreDetailsOf(const std::vector<std::string>& songs) {
    DetailsStore store;
    store.Open(database_);
    for (const std::string& song : songs) store.Put(song, ReadSongDetails(song));
  }
  /// Polls until all songs are read.
  static void Finish(LibraryDetails& details) {
    EXPECT_TRUE(WaitUntil([&] {
      details.Poll();
      return !details.IsReading();
    }));
  }
  /// A reader whose files are all unreadable; counts them, and the threads that read.
  DetailsFiller::MakeReader Failing() {
    return [this] {
      ++*threads_;
      const std::shared_ptr<void> end(nullptr, [threads = threads_](void*) { --*threads; });
      return [this, end](const std::string& path, const std::function<bool()>&) {
        ++reads_;
        SongDetails details;
        details.failed = true;
        details.stamp = StampOf(path).value();
        return details;
      };
    };
  }

  std::string database_ = application / "details.db";
  std::atomic<int> reads_ = 0;
  std::shared_ptr<std::atomic<int>> threads_ = std::make_shared<std::atomic<int>>(0);
  LibraryDetails details_{database_};
};

TEST_F(LibraryDetailsFill, CountsTheSongsWithNewerTagsAlone) {
  Song("a.mp3", Newer());
  Song("b.mp3", Older());
  Song("c.mp3", Audio(300));
  Song("d.mp3", Newer() + Older());
  Song("e.mp3", Newer());
  details_.Start(library);
  Finish(details_);
  EXPECT_EQ(details_.Songs(), 5);
  EXPECT_EQ(details_.SongsWithOnlyNewerTags(), 2);
  EXPECT_EQ(details_.OnlyNewerTags(), (Records{1, 5}));
  EXPECT_EQ(details_.Unreadable(), Records{});
  EXPECT_TRUE(details_.TakeProblems().empty());
}

TEST_F(LibraryDetailsFill, ReadsNothingBeforeTheStart) {
  Song("a.mp3", Newer());
  details_.Poll();
  EXPECT_FALSE(details_.IsReading());
  EXPECT_EQ(details_.ProgressText(), "");
  EXPECT_EQ(details_.Songs(), 0);
  EXPECT_FALSE(FileExists(database_));
}

TEST_F(LibraryDetailsFill, ReadsSongsThatAreAddedLater) {
  Song("a.mp3", Newer());
  details_.Start(library);
  Finish(details_);
  Song("b.mp3", Newer());
  details_.Poll();
  Finish(details_);
  EXPECT_EQ(details_.Songs(), 2);
  EXPECT_EQ(details_.OnlyNewerTags(), (Records{1, 2}));
}

TEST_F(LibraryDetailsFill, SongsThatAreGoneDoNotCount) {
  Song("a.mp3", Newer());
  Song("b.mp3", Newer());
  AddSong("0", "0", "0");
  details_.Start(library);
  Finish(details_);
  EXPECT_EQ(details_.SongsWithOnlyNewerTags(), 2);
  RemoveFile(music / "b.mp3");
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  details_.Refresh();
  details_.Poll();
  EXPECT_EQ(details_.Songs(), 1);
  EXPECT_EQ(details_.SongsWithOnlyNewerTags(), 1);
  EXPECT_EQ(details_.OnlyNewerTags(), Records{1});
}

TEST_F(LibraryDetailsFill, AFileThatWasNotThereIsTriedAgainAfterAScan) {
  AddSong(music.path(), "a.mp3");
  details_.Start(library);
  Finish(details_);
  EXPECT_EQ(details_.Unreadable(), Records{1});
  music.File("a.mp3", Newer());
  details_.Poll();
  EXPECT_EQ(details_.Unreadable(), Records{1});
  details_.Refresh();
  details_.Poll();
  Finish(details_);
  EXPECT_EQ(details_.Unreadable(), Records{});
  EXPECT_EQ(details_.OnlyNewerTags(), Records{1});
}

TEST_F(LibraryDetailsFill, TheNextRunReadsOnlyTheRest) {
  Song("a.mp3", Older());
  Song("b.mp3", Older());
  {
    LibraryDetails first(database_);
    first.Start(library, Failing());
    Finish(first);
    EXPECT_EQ(first.Unreadable(), (Records{1, 2}));
    // A thread that is committing would be abandoned.
    EXPECT_TRUE(WaitUntil([this] { return *threads_ == 0; }));
  }
  EXPECT_EQ(reads_, 2);
  Song("c.mp3", Older());
  details_.Start(library, Failing());
  Finish(details_);
  EXPECT_EQ(reads_, 3);
  EXPECT_EQ(details_.Unreadable(), (Records{1, 2, 3}));
}

TEST_F(LibraryDetailsFill, AFileThatCrashesItsReaderCostsOnlyItsOwnDetails) {
  Song("a.mp3", Newer());
  Song(std::string(kCrashingName), Newer());
  Song("b.mp3", Newer());
  // On a busy computer a child, which has a low priority, may wait long for a processor.
  details_.ReadInChildren({.program = OwnProgram(),
                           .arguments = {std::string(kServeDetailsOption)},
                           .max_start = std::chrono::minutes(1),
                           .max_wait = std::chrono::minutes(1)});
  details_.Start(library);
  Finish(details_);
  EXPECT_EQ(details_.OnlyNewerTags(), (Records{1, 3}));
  EXPECT_EQ(details_.Unreadable(), Records{2});
}

TEST_F(LibraryDetailsFill, AStopLeavesTheRestToTheNextRun) {
  for (int k = 0; k < 20; ++k) Song(std::to_string(k) + ".mp3", Newer());
  std::atomic<bool> is_reading = false;
  details_.Start(library, [&] {
    return [&](const std::string&, const std::function<bool()>& stopped) {
      is_reading = true;
      while (!stopped()) std::this_thread::yield();
      return SongDetails();
    };
  });
  EXPECT_TRUE(WaitUntil([&] {
    details_.Poll();
    return is_reading.load();
  }));
  details_.Stop();
  EXPECT_FALSE(details_.IsReading());
  details_.Poll();
  EXPECT_EQ(details_.SongsWithOnlyNewerTags(), 0);
  LibraryDetails next(database_);
  next.Start(library);
  Finish(next);
  EXPECT_EQ(next.SongsWithOnlyNewerTags(), 20);
}

TEST_F(LibraryDetailsFill, ShowsTheProgressOfLongWork) {
  RemainingTime::Time now{std::chrono::hours(1)};
  for (int k = 0; k < 1200; ++k) AddSong(music.path(), "a.mp3");
  music.File("a.mp3", Older());
  std::atomic<bool> may_read = false;
  LibraryDetails details(database_, [&] { return now; });
  details.Start(library, [&] {
    return [&](const std::string&, const std::function<bool()>& stopped) {
      while (!may_read && !stopped()) std::this_thread::yield();
      return SongDetails();
    };
  });
  details.Poll();
  EXPECT_EQ(details.ProgressText(), "");
  now += std::chrono::seconds(1);
  EXPECT_EQ(details.ProgressText(), "Reading the details of songs: 0 of 1,200");
  may_read = true;
  Finish(details);
  EXPECT_EQ(details.ProgressText(), "");
}

TEST_F(LibraryDetailsFill, ADamagedDatabaseIsSetAside) {
  Song("a.mp3", Newer());
  WriteFileAtomically(database_, std::string(5000, 'x'));
  details_.Start(library);
  Finish(details_);
  EXPECT_EQ(details_.OnlyNewerTags(), Records{1});
  const Texts problems = details_.TakeProblems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].find(database_ + " is damaged. It was renamed"), 0U) << problems[0];
  EXPECT_TRUE(FileExists(database_ + ".bak"));
}

TEST_F(LibraryDetailsFill, ARowIsKnownWhenItsSongIsRead) {
  Song("a.mp3", Newer());
  Song("b.mp3", Older());
  AddSong("0", "0", "0");
  LibraryDetails details(database_);
  EXPECT_FALSE(details.RowOf(1).known);
  details.Start(library);
  Finish(details);
  EXPECT_EQ(details.RowOf(1).title, "Newer");
  EXPECT_EQ(details.RowOf(2).title, "Older");
  for (const std::int32_t other : {3, 4, 0, -1}) EXPECT_FALSE(details.RowOf(other).known);
}

TEST_F(LibraryDetailsFill, ARowIsKnownWhenItsSongIsStored) {
  Song("a.mp3", Newer());
  StoreDetailsOf({music / "a.mp3"});
  LibraryDetails details(database_);
  details.Use(library);
  EXPECT_FALSE(details.RowOf(1).known);
  // This opens the database.
  details.TagReader()(music / "none.mp3");
  EXPECT_FALSE(details.Table().Knows(1));
  EXPECT_EQ(details.RowOf(1).title, "Newer");
  // Others may show the song as not known.
  EXPECT_EQ(details.Version(), 1U);
  EXPECT_EQ(details.RowOf(1).title, "Newer");
  EXPECT_EQ(details.Version(), 1U);
}

TEST_F(LibraryDetailsFill, ARowIsKnownWhenAllSongsAreAway) {
  const std::string drive = music.Folder("drive");
  music.File("drive/a.mp3", Newer());
  StoreDetailsOf({drive + "a.mp3"});
  MountedVolumes mounted{{drive, {"uuid", kSep}, false}};
  library.UseDrives([&] { return mounted; }, {});
  library.BeginScan(ScanKind::kComputer);
  library.AddSong(drive, "a.mp3", 0);
  library.ImportFoundSongs(0);
  library.FinishScan(true);
  mounted.clear();
  RemoveFile(drive + "a.mp3");
  library.BeginScan(ScanKind::kFolderList);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  ASSERT_TRUE(library.IsAway(1));
  LibraryDetails details(database_);
  details.Start(library);
  EXPECT_FALSE(details.RowOf(1).known);
  EXPECT_TRUE(WaitUntil([&] {
    details.Poll();
    return details.Version() > 0 && !details.IsLoading();
  }));
  EXPECT_EQ(details.RowOf(1).title, "Newer");
}

TEST_F(LibraryDetailsFill, LoadAllReadsWhatIsStored) {
  Song("a.mp3", Newer());
  Song("b.mp3", Older());
  StoreDetailsOf({music / "a.mp3", music / "b.mp3"});
  Song("c.mp3", Older());
  LibraryDetails again(database_);
  EXPECT_FALSE(again.LoadAll().Knows(1));
  again.Use(library);
  EXPECT_EQ(again.LoadAll().Title(1), "Newer");
  EXPECT_EQ(again.Table().Title(2), "Older");
  EXPECT_FALSE(again.Table().Knows(3));
  EXPECT_FALSE(again.RowOf(3).known);
  // What is known stays known.
  again.Start(library);
  EXPECT_TRUE(again.Table().Knows(1));
  Finish(again);
  EXPECT_EQ(again.RowOf(3).title, "Older");
}

TEST_F(LibraryDetailsFill, LoadAllReadsOneNewSongByItsPath) {
  for (int k = 0; k < 40; ++k) Song(std::to_string(k) + ".mp3", Newer());
  Texts paths;
  for (int k = 0; k < 40; ++k) paths.push_back(music / (std::to_string(k) + ".mp3"));
  Song("last.mp3", Older());
  StoreDetailsOf(paths);
  LibraryDetails details(database_);
  details.Use(library);
  EXPECT_EQ(details.LoadAll().Title(40), "Newer");
  EXPECT_FALSE(details.Table().Knows(41));
  // Nothing is read again for a song that is not stored.
  StoreDetailsOf({music / "last.mp3"});
  EXPECT_FALSE(details.LoadAll().Knows(41));
  Song("new.mp3", Older());
  StoreDetailsOf({music / "new.mp3"});
  const std::uint32_t version = details.Table().Version();
  EXPECT_EQ(details.LoadAll().Title(42), "Older");
  EXPECT_EQ(details.Table().Version(), version + 1);
}

TEST_F(LibraryDetailsFill, PollTakesWhatIsBeingLoaded) {
  Song("a.mp3", Newer());
  StoreDetailsOf({music / "a.mp3"});
  LibraryDetails details(database_);
  details.Use(library);
  EXPECT_FALSE(details.RowOf(1).known);
  details.BeginLoading();
  EXPECT_TRUE(WaitUntil([&] {
    details.Poll();
    return !details.IsLoading();
  }));
  EXPECT_EQ(details.Table().Title(1), "Newer");
  EXPECT_EQ(details.Version(), 1U);
}

TEST_F(LibraryDetailsFill, LoadingBeginsAnewWhenSongsChange) {
  Song("a.mp3", Newer());
  Song("b.mp3", Older());
  StoreDetailsOf({music / "a.mp3", music / "b.mp3"});
  LibraryDetails details(database_);
  details.Use(library);
  details.BeginLoading();
  library.Mp3Info(kFileName, 1, "b.mp3");
  EXPECT_EQ(details.LoadAll().Title(1), "Older");
}

TEST_F(LibraryDetailsFill, WhatWasReadMeanwhileIsNotReplacedByWhatIsStored) {
  Song("a.mp3", Newer());
  Song("b.mp3", Older());
  StoreDetailsOf({music / "a.mp3", music / "b.mp3"});
  music.File("a.mp3", Audio(300) + Tag({.title = "Now"}));
  LibraryDetails details(database_);
  details.Start(library);
  Finish(details);
  EXPECT_EQ(details.LoadAll().Title(1), "Now");
}

TEST_F(LibraryDetailsFill, LoadAllMakesADatabaseThatCannotBeRead) {
  Song("a.mp3", Newer());
  WriteFileAtomically(database_, std::string(5000, 'x'));
  details_.Use(library);
  EXPECT_FALSE(details_.LoadAll().Knows(1));
  EXPECT_TRUE(FileExists(database_ + ".bak"));
  EXPECT_EQ(details_.TakeProblems().size(), 1U);
}

TEST_F(LibraryDetailsFill, TheVersionGrowsWhenARowBecomesKnown) {
  Song("a.mp3", Newer());
  details_.Start(library);
  const std::uint64_t before = details_.Version();
  EXPECT_FALSE(details_.RowOf(1).known);
  Finish(details_);
  const std::uint64_t after = details_.Version();
  EXPECT_GT(after, before);
  EXPECT_EQ(details_.RowOf(1).title, "Newer");
  details_.LoadAll();
  EXPECT_EQ(details_.Version(), after);
}

}  // namespace
}  // namespace tallow

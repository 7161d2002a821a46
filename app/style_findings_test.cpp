// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/style_findings.h"

#include <filesystem>
#include <map>
#include <utility>

#include "app/search/file_search.h"
#include "tests/id3v2_tag.h"
#include "tests/library_fixture.h"
#include "tests/recorded_progress.h"
#include "tests/tagged_file.h"
#include "tests/wait_until.h"
#include "util/atomic_file.h"

namespace tallow {
namespace {

TEST(StyleFindingsText, NamesEachCount) {
  EXPECT_EQ(TextOf({.songs = 264, .newer_tags = 90, .left_out = 32, .other_formats = 61}),
            "90 of 264 songs carry only newer tags, 32 were left out because a song of that file "
            "name is there, 61 are of other formats.");
  EXPECT_EQ(TextOf({.songs = 264, .newer_tags = 1, .left_out = 1, .other_formats = 1}),
            "1 of 264 songs carries only newer tags, 1 was left out because a song of that file "
            "name is there, 1 is of another format.");
  EXPECT_EQ(TextOf({.songs = 12345, .newer_tags = 1234}),
            "1,234 of 12,345 songs carry only newer tags.");
  EXPECT_EQ(TextOf({.songs = 1, .newer_tags = 1}), "1 of 1 song carries only newer tags.");
}

TEST(StyleFindingsText, LeavesOutWhatIsZero) {
  EXPECT_EQ(TextOf({.songs = 264}), "");
  EXPECT_EQ(TextOf({.songs = 264, .newer_tags = 90, .other_formats = 61}),
            "90 of 264 songs carry only newer tags, 61 are of other formats.");
  EXPECT_EQ(TextOf({.songs = 264, .left_out = 32, .other_formats = 61}),
            "32 files were left out because a song of that file name is there, 61 are of other "
            "formats.");
  EXPECT_EQ(TextOf({.songs = 264, .left_out = 1}),
            "1 file was left out because a song of that file name is there.");
  EXPECT_EQ(TextOf({.songs = 264, .other_formats = 61}), "61 files are of other formats.");
  EXPECT_EQ(TextOf({.songs = 264, .other_formats = 1}), "1 file is of another format.");
}

TEST(StyleFindingsText, WithoutASongSaysWhyThereIsNone) {
  EXPECT_EQ(TextOf({.other_formats = 1234}),
            "1,234 music files are not MP3 files, so the classic style does not show them.");
  EXPECT_EQ(TextOf({.other_formats = 1}),
            "1 music file is not an MP3 file, so the classic style does not show it.");
}

class StyleFindingsTest : public LibraryTest {
 protected:
  /// Finds all songs, as the first run does, and reads their details.
  void Search() {
    library.BeginScan(ScanKind::kComputer);
    RecordedProgress progress;
    library.AddAnyAdditionalMp3FromTheNormalDirectories({}, {}, [&] {
      FileSearch(tallow, TestDrives({{music.path()}}), &progress).SearchDrivesForMp3s(true, {});
    });
    library.FinishScan(true);
    tallow.details.Start(library);
    EXPECT_TRUE(WaitUntil([this] {
      tallow.details.Poll();
      return !tallow.details.IsReading();
    }));
  }
  /// Searches the whole computer again.
  void SearchAgain() {
    library.BeginScan(ScanKind::kComputer);
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
    std::int32_t before = library.UBoundOfMp3Array();
    RecordedProgress progress;
    FileSearch(tallow, TestDrives({{music.path()}}), &progress).SearchDrivesForMp3s(true, {});
    library.DeleteIdenticalFileNamesAndPaths(before);
    library.FinishScan(true);
    tallow.details.Refresh();
    EXPECT_TRUE(WaitUntil([this] {
      tallow.details.Poll();
      return !tallow.details.IsReading();
    }));
  }
  /// Searches the folders of songs.
  static void SearchKnownFolders(clsMain& library) {
    library.BeginScan(ScanKind::kFolderList);
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
    library.AddAnyAdditionalMp3FromTheNormalDirectories();
    library.FinishScan(true);
  }
  /// The numbers of files that are left out and of other formats in the next run.
  std::pair<std::int64_t, std::int64_t> CountsOfTheNextRun() {
    Tallow next(application.path());
    next.settings.GetandLoadIniInfo(next.settings_path);
    EXPECT_TRUE(next.library.LoadMain());
    SearchKnownFolders(next.library);
    EXPECT_TRUE(next.library.LoadFindings());
    EXPECT_EQ(next.library.TakeProblems(), Texts());
    const StyleCounts counts = CountStyleFindings(next);
    return {counts.left_out, counts.other_formats};
  }
  /// The paths and notes below each heading.
  std::map<std::string, Texts> Lists() const {
    std::map<std::string, Texts> lists;
    for (const StyleFindings& findings : ListStyleFindings(tallow)) {
      Texts& rows = lists[findings.heading];
      for (std::size_t k = 0; k < findings.rows; ++k)
        rows.push_back(findings.row(k).path + "|" + findings.row(k).note);
      std::sort(rows.begin(), rows.end());
    }
    return lists;
  }
};

TEST_F(StyleFindingsTest, CountsRealFiles) {
  const std::string newer = Id3v2Tag({{"TIT2", "Title"}}) + Audio(300);
  music.File("one/a.mp3", newer);
  music.File("one/b.mp3", Audio(300) + Tag({.title = "Title"}));
  music.File("one/c.mp3", newer + Tag({.title = "Title"}));
  music.File("two/a.mp3", newer);
  music.File("two/d.mp3", newer);
  music.File("two/e.flac");
  music.File("two/cover.jpg");
  music.File("three/f.ogg");
  music.File("three/g.wma");
  Search();
  EXPECT_EQ(CountStyleFindings(tallow),
            (StyleCounts{.songs = 4, .newer_tags = 2, .left_out = 1, .other_formats = 3}));
  const std::string first = std::string(library.LeftOut()[0].stands_for_it);
  const std::string other = std::string(library.LeftOut()[0].path);
  EXPECT_EQ(Lists(),
            (std::map<std::string, Texts>{
                {"Only newer tags, which the classic style does not read (2)",
                 first < music / "two/d.mp3" ? Texts{first + "|", music / "two/d.mp3|"}
                                             : Texts{music / "two/d.mp3|", first + "|"}},
                {"Left out because a song of that file name is there (1)",
                 {other + "|the song: " + first}},
                {"Of other formats (3 files in 2 folders)",
                 {"1 file in " + music / "two/" + "|", "2 files in " + music / "three/" + "|"}}}));
}

TEST_F(StyleFindingsTest, AnOrdinaryCollectionHasNone) {
  music.File("a.mp3", Audio(300) + Tag({.title = "Title"}));
  music.File("b.mp3", Audio(300));
  Search();
  EXPECT_EQ(CountStyleFindings(tallow), StyleCounts{.songs = 2});
  EXPECT_TRUE(ListStyleFindings(tallow).empty());
}

TEST_F(StyleFindingsTest, SongsThatAreSetAsideCountAsTheFilesThatTheyWere) {
  for (const char* const name : {"one/a.mp3", "two/a.mp3", "two/e.flac", "two/f.flac", "six/g.ogg"})
    music.File(name);
  Search();
  StyleCounter counter(tallow);
  const StyleCounts classic{.songs = 1, .left_out = 1, .other_formats = 3};
  EXPECT_EQ(counter.Count(), classic);
  const std::map<std::string, Texts> lists = Lists();
  library.UseSwitches(kModernStyle);
  SearchAgain();
  counter.Refresh();
  EXPECT_EQ(counter.Count(), StyleCounts{.songs = 5});
  library.UseSwitches(kClassicStyle);
  tallow.details.Refresh();
  tallow.details.Poll();
  EXPECT_EQ(counter.Count(), classic);
  EXPECT_EQ(Lists(), lists);
  SearchAgain();
  counter.Refresh();
  EXPECT_EQ(counter.Count(), classic);
  EXPECT_EQ(Lists(), lists);
  // The folders of songs that are set aside are among the known ones.
  music.File("two/h.flac");
  library.BeginScan(ScanKind::kFolderList);
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  library.AddAnyAdditionalMp3FromTheNormalDirectories();
  library.FinishScan(true);
  counter.Refresh();
  EXPECT_EQ(counter.Count(), (StyleCounts{.songs = 1, .left_out = 1, .other_formats = 4}));
  // A song that is the only one of its name after a change is no longer set aside.
  RemoveFile(library.Song(1).Path());
  library.CheckToSeeIfFilesAreMissingAndMakeFalse();
  EXPECT_EQ(counter.Count(), (StyleCounts{.songs = 1, .other_formats = 4}));
}

TEST_F(StyleFindingsTest, TheCountsHoldAfterSearchesOfOtherFoldersAndInTheNextRun) {
  using Counts = std::pair<std::int64_t, std::int64_t>;
  for (const char* const name : {"one/a.mp3", "one/b.mp3", "two/a.mp3", "two/c.mp3", "two/d.flac",
                                 "three/a.mp3", "four/e.ogg", "four/below/f.ogg"})
    music.File(name);
  Search();
  const StyleCounts first{.songs = 3, .left_out = 2, .other_formats = 3};
  EXPECT_EQ(CountStyleFindings(tallow), first);
  SearchKnownFolders(library);
  EXPECT_EQ(CountStyleFindings(tallow), first);
  EXPECT_EQ(CountsOfTheNextRun(), Counts(2, 3));
  SearchAgain();
  EXPECT_EQ(CountStyleFindings(tallow), first);
  // A search of the whole computer finds that a folder is gone.
  std::filesystem::remove_all(std::filesystem::path(music / "four"));
  EXPECT_EQ(CountsOfTheNextRun(), Counts(2, 3));
  SearchAgain();
  EXPECT_EQ(CountStyleFindings(tallow).other_formats, 1);
  // A twin in the folder of a song is gone.
  const ScanFindings::Folders findings = library.Findings().ByFolder();
  const std::string folder = findings.at(music / "two/").left_out.empty() ? "one/" : "two/";
  RemoveFile(music / folder + "a.mp3");
  EXPECT_EQ(CountsOfTheNextRun(), Counts(1, 1));
  SearchKnownFolders(library);
  EXPECT_EQ(CountStyleFindings(tallow).left_out, 1);
}

TEST_F(StyleFindingsTest, AfterDecliningTheyAreShownWhenOneMoreFileIsLeftOut) {
  tallow.preferences.Load(PreferencesPath(application.path()));
  for (const char* const name : {"one/a.mp3", "two/a.mp3", "three/a.mp3", "four/e.ogg"})
    music.File(name);
  Search();
  StyleHint hint(tallow.preferences);
  EXPECT_TRUE(hint.Update(CountStyleFindings(tallow), true));
  hint.Decline();
  SearchKnownFolders(library);
  EXPECT_FALSE(StyleHint(tallow.preferences).Update(CountStyleFindings(tallow), true));
  const std::string folder(library.Song(1).Folder());
  WriteFileAtomically(folder + "f.flac", "x");
  SearchKnownFolders(library);
  EXPECT_TRUE(StyleHint(tallow.preferences).Update(CountStyleFindings(tallow), true));
}

TEST_F(StyleFindingsTest, NamesWhatCouldNotBeRead) {
  AddSong(music.path(), "a.mp3");
  tallow.details.Start(library);
  EXPECT_TRUE(WaitUntil([this] {
    tallow.details.Poll();
    return !tallow.details.IsReading();
  }));
  EXPECT_EQ(Lists(), (std::map<std::string, Texts>{
                         {"Could not be read completely (1)", {music / "a.mp3" + "|"}}}));
}

TEST_F(StyleFindingsTest, SongsThatCouldNotBeReadAreToldOnceARunAndWhenThereAreMore) {
  tallow.preferences.Load(PreferencesPath(application.path()));
  UnreadableNotice notice(tallow.preferences);
  EXPECT_EQ(notice.Update(0), "");
  EXPECT_EQ(notice.Update(1), "1 song could not be read completely (click for the list)");
  EXPECT_EQ(notice.Update(5), "");
  Preferences next;
  next.Load(PreferencesPath(application.path()));
  EXPECT_EQ(UnreadableNotice(next).Update(1), "");
  EXPECT_EQ(UnreadableNotice(next).Update(3),
            "3 songs could not be read completely (click for the list)");
  EXPECT_EQ(UnreadableNotice(next).Update(3), "");
}

class StyleHintTest : public LibraryTest {
 protected:
  StyleHintTest() { Load(tallow.preferences); }
  void Load(Preferences& preferences) {
    preferences.Load(PreferencesPath(application.path()));
    EXPECT_TRUE(preferences.TakeProblems().empty());
  }
  /// Whether the counts are shown in the next run.
  bool IsShownInTheNextRun(const StyleCounts& counts) {
    Preferences preferences;
    Load(preferences);
    return StyleHint(preferences).Update(counts, true);
  }

  const StyleCounts counts_{.songs = 264, .newer_tags = 90, .left_out = 32, .other_formats = 61};
  StyleHint hint_{tallow.preferences};
};

TEST_F(StyleHintTest, IsShownWhenThereIsSomethingToSay) {
  EXPECT_FALSE(hint_.Update({}, false));
  EXPECT_FALSE(hint_.Update({.songs = 264}, true));
  EXPECT_TRUE(hint_.Update({.songs = 264, .newer_tags = 1}, false));
  EXPECT_TRUE(hint_.Update(counts_, true));
  EXPECT_FALSE(hint_.Update({.songs = 264}, true));
  EXPECT_TRUE(hint_.Update({.songs = 264, .other_formats = 1}, true));
}

TEST_F(StyleHintTest, IsNotShownInAnotherStyle) {
  tallow.preferences.OverrideStyle(Style::kModern);
  EXPECT_FALSE(hint_.Update(counts_, true));
  tallow.preferences.SetStyle(Style::kClassic);
  EXPECT_FALSE(hint_.Update(counts_, true));
  EXPECT_TRUE(IsShownInTheNextRun(counts_));
  tallow.preferences.SetSwitches({.albums = true});
  EXPECT_FALSE(IsShownInTheNextRun(counts_));
}

TEST_F(StyleHintTest, ASwitchOfTheStyleEndsItForThisRun) {
  EXPECT_TRUE(hint_.Update(counts_, true));
  tallow.preferences.SetStyle(Style::kModern);
  EXPECT_FALSE(hint_.Update(counts_, true));
  tallow.preferences.SetStyle(Style::kClassic);
  EXPECT_FALSE(hint_.Update(counts_, true));
  EXPECT_TRUE(IsShownInTheNextRun(counts_));
}

TEST_F(StyleHintTest, AfterDecliningItWaitsUntilACountGrows) {
  EXPECT_TRUE(hint_.Update(counts_, true));
  hint_.Decline();
  StyleCounts more = counts_;
  ++more.left_out;
  EXPECT_FALSE(hint_.Update(more, true));
  EXPECT_FALSE(IsShownInTheNextRun(counts_));
  EXPECT_FALSE(IsShownInTheNextRun({.songs = 300, .newer_tags = 89}));
  EXPECT_TRUE(IsShownInTheNextRun(more));
  EXPECT_TRUE(IsShownInTheNextRun({.songs = 264, .newer_tags = 91}));
  EXPECT_TRUE(IsShownInTheNextRun({.other_formats = 62}));
}

TEST_F(StyleHintTest, DecliningAgainForgetsNoLargerCount) {
  EXPECT_TRUE(hint_.Update(counts_, true));
  hint_.Decline();
  Preferences preferences;
  Load(preferences);
  StyleHint next(preferences);
  EXPECT_TRUE(next.Update({.songs = 264, .newer_tags = 91, .left_out = 1}, true));
  next.Decline();
  EXPECT_FALSE(IsShownInTheNextRun({.songs = 264, .newer_tags = 91, .left_out = 32}));
  EXPECT_TRUE(IsShownInTheNextRun({.songs = 264, .newer_tags = 92}));
}

TEST_F(StyleHintTest, DecliningCountsThatAreNotFinalDeclinesTheFinalOnes) {
  EXPECT_TRUE(hint_.Update({.songs = 264, .newer_tags = 3}, false));
  hint_.Decline();
  EXPECT_FALSE(hint_.Update({.songs = 264, .newer_tags = 40}, false));
  EXPECT_FALSE(hint_.Update({.songs = 264, .newer_tags = 90}, true));
  EXPECT_FALSE(hint_.Update({.songs = 264, .newer_tags = 95}, true));
  EXPECT_FALSE(IsShownInTheNextRun({.songs = 264, .newer_tags = 90}));
  EXPECT_TRUE(IsShownInTheNextRun({.songs = 264, .newer_tags = 95}));
}

TEST_F(StyleHintTest, ClosingItEndsItForThisRunOnly) {
  EXPECT_TRUE(hint_.Update(counts_, true));
  hint_.Close();
  EXPECT_FALSE(hint_.Update(counts_, true));
  EXPECT_TRUE(IsShownInTheNextRun(counts_));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/style_changes.h"

#include <functional>
#include <set>

#include "app/search/file_search.h"
#include "app/style_findings.h"
#include "tests/id3v2_tag.h"
#include "tests/system_fixture.h"
#include "util/atomic_file.h"
#include "util/file_system.h"

namespace tallow {
namespace {

TEST(StyleWork, SearchesWhereSongsMayBeThatWereLeftOut) {
  const auto search = [](const Switches& before, const Switches& now) {
    return WorkFor(before, now).search;
  };
  EXPECT_EQ(search(kClassicStyle, kModernStyle), NewSongsPlace::kWholeComputer);
  EXPECT_EQ(search(kModernStyle, kClassicStyle), std::nullopt);
  EXPECT_EQ(search({}, {.more_formats = true}), NewSongsPlace::kWholeComputer);
  EXPECT_EQ(search({}, {.songs_by_path = true}), NewSongsPlace::kWholeComputer);
  EXPECT_EQ(search({}, {.new_subfolders = true}), NewSongsPlace::kKnownFolders);
  EXPECT_EQ(search({}, {.newer_tags = true, .reopens_jukeboxes = true}), std::nullopt);
}

TEST(StyleWork, FilesAgainOnlyForSwitchesThatChangeFiling) {
  const auto files = [](const Switches& before, const Switches& now) {
    return WorkFor(before, now).files_differently;
  };
  EXPECT_TRUE(files(kClassicStyle, kModernStyle));
  EXPECT_TRUE(files(kModernStyle, kClassicStyle));
  EXPECT_FALSE(files({}, {.more_formats = true,
                          .songs_by_path = true,
                          .new_subfolders = true,
                          .fills_new_jukeboxes = true,
                          .reopens_jukeboxes = true,
                          .plays_on = true,
                          .columns_of_details = true,
                          .find_field = true,
                          .more_commands = true}));
  for (bool Switches::*const one : {&Switches::newer_tags, &Switches::whole_artists,
                                    &Switches::four_digit_years, &Switches::all_decades}) {
    Switches with;
    with.*one = true;
    EXPECT_TRUE(files({}, with));
    EXPECT_TRUE(files(with, {}));
  }
  EXPECT_TRUE(files({}, {.albums = true}));
  EXPECT_FALSE(files({.albums = true}, {}));
  EXPECT_TRUE(files({}, {.natural_order = true}));
  EXPECT_FALSE(files({.natural_order = true}, {}));
}

/// Starts on real files, of which the classic style does not know all.
class StyleChangesTest : public SystemTest, protected StyleWindows, private NewSongsWindows {
 protected:
  StyleChangesTest() {
    EXPECT_TRUE(Start());
    // This song gets the last number, and is therefore filed in the folder of another artist.
    MakeSong("a/stone.mp3", {.artist = "Queens of the Stone Age"});
    // Only the modern style finds these.
    music.File("c/one.mp3", Audio(300) + Tag({.artist = "Zappa"}));
    music.File(
        "flac/new.aac",
        Id3v2Tag({{"TPE1", "Кино"}, {"TALB", "Звезда"}, {"TDRC", "2024-05-01"}}) + Audio(300));
  }

  bool StartHere() {
    if (!Start()) return false;
    changes.emplace(*tallow, static_cast<StyleWindows&>(*this));
    tallow->preferences.OnChange([this](const Switches& before) { changes->Follow(before); });
    return true;
  }
  void Choose(Style style) {
    tallow->preferences.SetStyle(style);
    changes->FinishStyle();
  }
  Jukebox& Box() { return *windows->open.at(0); }
  /// The texts of the direct subfolders of a folder, sorted.
  std::string Below(const char* text) {
    std::set<std::string> sorted;
    const Folder* const folder = Box().Nodes().Find(text);
    for (std::int32_t k = 0; folder != nullptr && k < folder->Children(); ++k)
      sorted.insert(folder->ChildAt(k).Text());
    std::string texts;
    for (const std::string& one : sorted) texts += (texts.empty() ? "" : "|") + one;
    return texts;
  }
  /// The names of the songs that are listed in "All Songs".
  Texts Listed() {
    Texts names;
    for (const SongEntry& entry : Box().Nodes().Find("All Songs")->Items())
      if (!tallow->library.IsHidden(entry.SubItem()))
        names.emplace_back(tallow->library.Song(entry.SubItem()).Name());
    return names;
  }

  // StyleWindows
  NewSongsResult Search(NewSongsPlace place) override {
    searched.push_back(place);
    NewSongsWindows& search_windows = *this;
    return BringInNewSongs(
        place, *tallow, search_windows,
        [this](SearchProgress& shown) {
          if (cancels) return false;
          return FileSearch(*tallow, drives, &shown).SearchDrivesForMp3s(true, {});
        },
        NewSongsTarget::kOpenJukeboxes);
  }
  // Both
  void NoticeScan(const std::vector<std::string>& lines) override { noticed = lines; }
  MessageAnswer Show(const Message& message) override {
    questions.push_back(message.text);
    asked.push_back(message.text.substr(0, message.text.find('.')));
    return answer;
  }
  void Notice(const std::vector<std::string>& lines) override { noticed = lines; }
  std::span<Jukebox* const> OpenJukeboxes() override { return windows->open; }

  std::optional<StyleChanges> changes;
  std::vector<NewSongsPlace> searched;
  bool cancels = false;
  MessageAnswer answer = MessageAnswer::kYes;
  Texts questions;
  Texts asked;  ///< the first sentence of each question
  Texts noticed;

 private:
  // NewSongsWindows
  SearchProgress& ShowSearching() override { return progress_; }
  void UnloadSearching() override {}
  void EnableFrame(bool /*enabled*/) override {}
  Jukebox* ActiveJukebox() override { return nullptr; }

  RecordedProgress progress_;
};

TEST_F(StyleChangesTest, AWholeStyleActsAtOnceAndBack) {
  ASSERT_TRUE(StartHere());
  const Texts classic = Listed();
  EXPECT_EQ(classic.size(), 4U);
  EXPECT_EQ(Below("Artist"), "ABBA|Queen");
  Choose(Style::kModern);
  EXPECT_EQ(searched, std::vector{NewSongsPlace::kWholeComputer});
  EXPECT_EQ(asked, Texts{});
  EXPECT_EQ(noticed, Texts{"2 new songs; 6 songs were filed again by the tags."});
  EXPECT_EQ(Listed().size(), 6U);
  EXPECT_EQ(Below("Artist"), "ABBA|Queen|Queens of the Stone Age|Zappa|Кино");
  EXPECT_EQ(Below("Album"), "Звезда (Кино)");
  EXPECT_EQ(Box().History().Steps(), 1U);
  Choose(Style::kClassic);
  EXPECT_EQ(searched.size(), 1U);
  EXPECT_EQ(noticed, Texts{"2 songs are set aside; 4 songs were filed again by the tags."});
  EXPECT_EQ(Listed(), classic);
}

TEST_F(StyleChangesTest, ProblemsAreLeftToTheCallerThatChangedTheStyle) {
  ASSERT_TRUE(StartHere());
  tallow->AddProblem("not saved");
  Choose(Style::kModern);
  EXPECT_EQ(noticed, Texts{"2 new songs; 6 songs were filed again by the tags."});
  EXPECT_EQ(tallow->TakeProblems(), Texts{"not saved"});
}

TEST_F(StyleChangesTest, SingleSwitchesListAtOnceAndAskOnceAtTheEnd) {
  ASSERT_TRUE(StartHere());
  tallow->preferences.SetSwitches({.whole_artists = true});
  tallow->preferences.SetSwitches({.whole_artists = true, .natural_order = true});
  EXPECT_EQ(Below("Artist"), "ABBA|Queen");
  EXPECT_EQ(tallow->library.Switches().natural_order, true);
  answer = MessageAnswer::kNo;
  changes->Finish();
  EXPECT_EQ(asked, Texts{"The rules by which songs are filed have changed"});
  EXPECT_NE(questions[0].find("below Artist, Year, Genre and Decades."), std::string::npos);
  EXPECT_EQ(Below("Artist"), "ABBA|Queen");
  changes->Finish();
  EXPECT_EQ(asked.size(), 1U);
  answer = MessageAnswer::kYes;
  tallow->preferences.SetSwitches({.whole_artists = true, .four_digit_years = true});
  changes->Finish();
  EXPECT_EQ(Below("Artist"), "ABBA|Queen|Queens of the Stone Age");
  EXPECT_EQ(searched.size(), 0U);
}

TEST_F(StyleChangesTest, ASwitchToAndFroLeavesNothingToDo) {
  ASSERT_TRUE(StartHere());
  tallow->preferences.SetSwitches({.more_formats = true, .whole_artists = true});
  tallow->preferences.SetSwitches({});
  changes->Finish();
  EXPECT_EQ(asked, Texts{});
  EXPECT_EQ(searched.size(), 0U);
  EXPECT_EQ(noticed, Texts{});
}

TEST_F(StyleChangesTest, OtherFormatsAreSearchedForWhenTheDialogCloses) {
  ASSERT_TRUE(StartHere());
  tallow->preferences.SetSwitches({.more_formats = true});
  EXPECT_EQ(Listed().size(), 4U);
  changes->Finish();
  EXPECT_EQ(searched, std::vector{NewSongsPlace::kWholeComputer});
  EXPECT_EQ(Listed().size(), 5U);
  EXPECT_EQ(asked, Texts{});
  EXPECT_EQ(noticed, Texts{"1 new song, 1 skipped because a song with that file name exists"});
  // Without the switch they are set aside at once, and with it listed again at once.
  tallow->preferences.SetSwitches({});
  EXPECT_EQ(Listed().size(), 4U);
  changes->Finish();
  EXPECT_EQ(noticed, Texts{"1 song is set aside"});
  tallow->preferences.SetSwitches({.more_formats = true});
  EXPECT_EQ(Listed().size(), 5U);
  changes->Finish();
  EXPECT_EQ(noticed, Texts{"1 song is shown again"});
}

TEST_F(StyleChangesTest, TheLastSwitchOfAStyleAsksAtTheEndAsEveryOther) {
  ASSERT_TRUE(StartHere());
  tallow->preferences.SetSwitches({.whole_artists = true});
  changes->Finish();
  asked.clear();
  tallow->preferences.SetSwitches({});
  EXPECT_EQ(tallow->preferences.style(), Style::kClassic);
  EXPECT_EQ(asked, Texts{});
  EXPECT_EQ(Below("Artist"), "ABBA|Queen|Queens of the Stone Age");
  EXPECT_TRUE(changes->HasWork());
  changes->Finish();
  EXPECT_EQ(asked.size(), 1U);
}

TEST_F(StyleChangesTest, TheQuestionNamesAlbumOnlyWhereThereIsOneOrWillBe) {
  ASSERT_TRUE(StartHere());
  answer = MessageAnswer::kNo;
  tallow->preferences.SetSwitches({.newer_tags = true, .albums = true});
  changes->Finish();
  ASSERT_EQ(questions.size(), 1U);
  EXPECT_NE(questions[0].find("Decades and Album."), std::string::npos) << questions[0];
  Box().Caption("MINE");
  tallow->preferences.SetSwitches({.albums = true});
  changes->Finish();
  ASSERT_EQ(questions.size(), 2U);
  EXPECT_EQ(questions[1].find("Album"), std::string::npos) << questions[1];
}

TEST_F(StyleChangesTest, ACancelledSearchIsSaidAfterAllCounts) {
  ASSERT_TRUE(StartHere());
  cancels = true;
  Choose(Style::kModern);
  EXPECT_EQ(noticed, Texts{"4 songs were filed again by the tags. The search was cancelled; the "
                           "folders searched so far are complete."});
}

TEST_F(StyleChangesTest, AfterACancelledSearchTheUserDecidesWhetherToFileAgain) {
  ASSERT_TRUE(StartHere());
  cancels = true;
  answer = MessageAnswer::kNo;
  Choose(Style::kModern);
  EXPECT_EQ(asked, Texts{"The search for songs was cancelled"});
  EXPECT_EQ(Below("Artist"), "ABBA|Queen");
}

TEST_F(StyleChangesTest, WithoutAJukeboxNothingIsFiled) {
  ASSERT_TRUE(StartHere());
  windows->open.clear();
  tallow->preferences.SetSwitches({.newer_tags = true});
  changes->Finish();
  EXPECT_EQ(asked, Texts{});
}

TEST_F(StyleChangesTest, AStartUsesTheSwitchesOnceAStyleWasChosen) {
  ASSERT_TRUE(StartHere());
  EXPECT_FALSE(tallow->library.HasNamesakes());
  EXPECT_FALSE(FileExists(PreferencesPath(application.path())));
  tallow->preferences.Set("bar.hidden", true);
  ASSERT_TRUE(StartHere());
  EXPECT_FALSE(tallow->library.HasNamesakes());
  EXPECT_FALSE(tallow->preferences.IsStyleChosen());
  Choose(Style::kModern);
  ASSERT_TRUE(StartHere());
  EXPECT_EQ(tallow->library.Switches(), kModernStyle);
  EXPECT_EQ(Listed().size(), 6U);
  EXPECT_EQ(Below("Artist"), "ABBA|Queen|Queens of the Stone Age|Zappa|Кино");
  Choose(Style::kClassic);
  ASSERT_TRUE(StartHere());
  EXPECT_TRUE(tallow->library.HasNamesakes());
  EXPECT_EQ(Listed().size(), 4U);
}

TEST_F(StyleChangesTest, TheCountsOfTheBarAreTheSameAfterTheModernStyle) {
  ASSERT_TRUE(StartHere());
  Search(NewSongsPlace::kWholeComputer);
  const StyleCounts classic{.left_out = 1, .other_formats = 1};
  EXPECT_EQ(CountStyleFindings(*tallow), classic);
  Choose(Style::kModern);
  EXPECT_EQ(CountStyleFindings(*tallow), StyleCounts{});
  Choose(Style::kClassic);
  EXPECT_EQ(CountStyleFindings(*tallow), classic);
  // A user who declines these is not shown them again.
  StyleHint hint(tallow->preferences);
  EXPECT_TRUE(hint.Update(CountStyleFindings(*tallow), true));
  hint.Decline();
  ASSERT_TRUE(StartHere());
  EXPECT_EQ(CountStyleFindings(*tallow), classic);
  EXPECT_FALSE(StyleHint(tallow->preferences).Update(CountStyleFindings(*tallow), true));
}

TEST_F(StyleChangesTest, WithoutItsPreferencesALibraryOfTheModernStyleIsSetAside) {
  ASSERT_TRUE(StartHere());
  Choose(Style::kModern);
  EXPECT_EQ(Listed().size(), 6U);
  const std::string preferences = PreferencesPath(application.path());
  const std::function<void()> losses[] = {
      [&] { RemoveFile(preferences); },
      [&] { WriteFileAtomically(preferences, "{"); },
      [&] {
        RemoveFile(preferences);
        CreateFolders(preferences + kSeparator);
      },
  };
  for (const auto& lose : losses) {
    lose();
    ASSERT_TRUE(StartHere());
    EXPECT_EQ(tallow->preferences.style(), Style::kClassic);
    EXPECT_EQ(Listed().size(), 4U);
    const clsMain& library = tallow->library;
    ASSERT_EQ(library.UBoundOfMp3Array(), 6);
    for (std::int32_t row = 1; row <= 6; ++row) EXPECT_FALSE(library.Song(row).IsMissing());
    EXPECT_TRUE(tallow->library.Save());
    Choose(Style::kModern);
    EXPECT_EQ(library.UBoundOfMp3Array(), 6);
    EXPECT_EQ(Listed().size(), 6U);
  }
}

TEST_F(StyleChangesTest, ARunInModernStyleIsSetAsideByTheNextClassicOne) {
  ASSERT_TRUE(StartHere());
  const std::string preferences = PreferencesPath(application.path());
  for (const std::string& content : {std::string(), std::string("{\"bar\":{\"hidden\":true}}")}) {
    if (!content.empty()) WriteFileAtomically(preferences, content);
    windows.emplace();
    tallow.emplace(application.path());
    tallow->preferences.OverrideStyle(Style::kModern);
    system.emplace(*tallow, drives, *windows);
    ASSERT_TRUE(system->Main(runtime_file));
    Search(NewSongsPlace::kWholeComputer);
    EXPECT_EQ(Listed().size(), 6U);
    ASSERT_TRUE(StartHere());
    EXPECT_EQ(tallow->preferences.style(), Style::kClassic);
    EXPECT_EQ(Listed().size(), 4U);
    // The style of one run is not stored.
    EXPECT_EQ(ReadWholeFile(preferences).value_or(""), content);
  }
}

}  // namespace
}  // namespace tallow

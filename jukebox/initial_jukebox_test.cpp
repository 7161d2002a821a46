// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/initial_jukebox.h"

#include <gtest/gtest.h>

#include "jukebox/jukebox.h"
#include "jukebox/sorting.h"
#include "tests/library_fixture.h"
#include "tests/tagged_file.h"

namespace tallow {
namespace {

class InitialJukebox : public LibraryTest {
 protected:
  void Build() {
    Jukebox* const windows[] = {&jukebox};
    BuildInitialJukebox(library, jukebox, windows, [this] {
      ++shown;
      caption_when_shown = jukebox.Caption();
    });
  }

  /// All folders as lines, indented by two blanks per level.
  Texts Outline(const FolderTree& tree) {
    Texts lines;
    for (std::int32_t k = 0; k < tree.Children(); ++k) Outline(tree.ChildAt(k), lines);
    return lines;
  }
  void Outline(const Folder& folder, Texts& lines) {
    lines.push_back(std::string(static_cast<std::size_t>(folder.Level()) * 2, ' ') + folder.Text());
    for (std::int32_t k = 0; k < folder.Children(); ++k) Outline(folder.ChildAt(k), lines);
  }

  Jukebox jukebox;
  int shown = 0;
  std::string caption_when_shown;
};

const Texts kTemplate = {"All Songs",
                         "Artist",
                         "Year",
                         "Genre",
                         "New",
                         "Decades",
                         "  20's",
                         "  30's",
                         "  40's",
                         "  50's",
                         "  60's",
                         "  70's",
                         "  80's",
                         "  90's",
                         "  00's",
                         "By Mood",
                         "  Happy",
                         "  Sad",
                         "  Smokey",
                         "  Romantic",
                         "  New Age/ Spiritual",
                         "  Powerful",
                         "  Soothing",
                         "  Up Lifting",
                         "My Favorite Play Lists",
                         "  Super Hits 1",
                         "  Super Hits 2",
                         "Dad's",
                         "Seasonal",
                         "  Christmas",
                         "  Valentines Day",
                         "  Hanukah",
                         "  Halloween",
                         "My Sweetie's favorites",
                         "Best friend's favorites"};

TEST_F(InitialJukebox, WithAnEmptyLibraryAllFoldersAreMadeAndEmpty) {
  Build();
  EXPECT_EQ(Outline(jukebox.Nodes()), kTemplate);
  EXPECT_TRUE(jukebox.Nodes().Find("All Songs")->Items().empty());
  EXPECT_FALSE(jukebox.IsFormDirty());
}

TEST_F(InitialJukebox, TheWindowIsSetUpAndShown) {
  Build();
  EXPECT_EQ(jukebox.Tag(), "1");
  EXPECT_EQ(jukebox.Caption(), "Jukebox One  (sample Jukebox you can use as a starting point)");
  EXPECT_EQ(jukebox.ColumnHeaders(), (Texts{"Name    --        (click to sort)", "Key"}));
  EXPECT_TRUE(jukebox.Expanded());
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(caption_when_shown, jukebox.Caption());
}

TEST_F(InitialJukebox, SongsAreFiledAfterTheDecadesExist) {
  music.File("a.mp3", Audio(300) + Tag({.artist = "ABBA", .year = "1976", .genra = 13}));
  AddSong(music.path(), "a.mp3");
  struct View : JukeboxView {
    explicit View(Jukebox& jukebox) : jukebox(jukebox) {}
    void CaptionChanged() override { captions.push_back(jukebox.Caption()); }
    void ListChanged() override {}
    void LabelsChanged() override {}
    void HeadersChanged() override {}
    Jukebox& jukebox;
    Texts captions;
  } view(jukebox);
  jukebox.SetView(&view);
  Build();
  jukebox.SetView(nullptr);
  EXPECT_EQ(view.captions,
            (Texts{"No saved Jukebox found, building initial Jukebox - may take a while. . . ",
                   "Jukebox One  (sample Jukebox you can use as a starting point)"}));
  FolderTree& tree = jukebox.Nodes();
  EXPECT_EQ(tree.Find("All Songs")->Items().size(), 1U);
  EXPECT_EQ(tree.Find("New")->Items().size(), 1U);
  EXPECT_EQ(tree.Find("70's", tree.Find("Decades"))->Items().size(), 1U);
  EXPECT_EQ(tree.Find("ABBA", tree.Find("Artist"))->Items().size(), 1U);
  EXPECT_TRUE(jukebox.IsFormDirty());
}

TEST_F(InitialJukebox, ABadYearIsReportedAfterEverythingIsBuilt) {
  music.File("a.mp3", Audio(300) + Tag({.year = "x"}));
  AddSong(music.path(), "a.mp3");
  EXPECT_THROW(Build(), FilingError);
  EXPECT_EQ(shown, 1);
  EXPECT_NE(jukebox.Nodes().Find("Best friend's favorites"), nullptr);
}

TEST_F(InitialJukebox, TheSettingsAreNotTouched) {
  tallow.settings.LocOfLastSavedJukeBox("gone.juk");
  Build();
  EXPECT_EQ(tallow.settings.LocOfLastSavedJukeBox(), "gone.juk");
}

TEST_F(InitialJukebox, ANewJukeboxHasAnEmptyFolder) {
  AddSong("/m/", "a.mp3");
  BuildNewJukebox(library, jukebox);
  EXPECT_EQ(Outline(jukebox.Nodes()), Texts{"All Songs"});
  EXPECT_TRUE(jukebox.Nodes().Find("All Songs")->Items().empty());
  EXPECT_EQ(jukebox.ColumnHeaders().size(), 2U);
  EXPECT_FALSE(jukebox.IsFormDirty());
  EXPECT_FALSE(jukebox.DiffersFromFile());
}

TEST_F(InitialJukebox, ANewJukeboxOfTheModernStyleHasAllPresentSongs) {
  library.UseSwitches({.fills_new_jukeboxes = true});
  AddSong("/m/", "a.mp3", "1", "7");
  AddSong("0", "0", "0");
  AddSong("/m/", "c.mp3");
  BuildNewJukebox(library, jukebox);
  EXPECT_EQ(Outline(jukebox.Nodes()), Texts{"All Songs"});
  const std::vector<SongEntry>& entries = jukebox.Nodes().Find("All Songs")->Items();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].SubItem(), 1);
  EXPECT_EQ(entries[0].Icon(), 7);
  EXPECT_EQ(entries[1].SubItem(), 3);
  // Like an empty one, it has nothing to save or to undo.
  EXPECT_FALSE(jukebox.IsFormDirty());
  EXPECT_FALSE(jukebox.DiffersFromFile());
  EXPECT_FALSE(jukebox.Undo().done);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// How start-up handles changes that an earlier run did not save.
#include <gtest/gtest.h>

#include "app/system.h"
#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "tests/system_fixture.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class Recovery : public SystemTest {
 protected:
  Recovery() { Start(); }

  std::string Path(const std::string& name) const { return application / "Grouping/" + name; }
  /// Keeps a change of the open jukebox, as the program does every minute.
  void Change() {
    windows->open[0]->Nodes().AddChild(nullptr, "unsaved");
    tallow->unsaved.Keep(*windows->open[0], tallow->library);
  }
  void SaveAs(const std::string& name) {
    Jukebox& jukebox = *windows->open[0];
    ASSERT_TRUE(jukebox.Save(Path(name), tallow->library));
    tallow->settings.LocOfLastSavedJukeBox(Path(name));
    tallow->SaveSettings();
    jukebox.Caption("MIX");
    jukebox.FileLocation(application / "Grouping/");
  }
  bool HasUnsaved(std::size_t window) const {
    return windows->open.at(window)->Nodes().Find("unsaved") != nullptr;
  }
  std::size_t Kept() const {
    return ListFolder(application / "Grouping/System/", {.pattern = "*.unsaved"}).files.size();
  }
};

TEST_F(Recovery, TheUnsavedSampleIsOfferedInPlaceOfANewOne) {
  Change();
  Start(true);
  EXPECT_EQ(windows->asked,
            Texts{"Tallow was not closed properly. Recover the unsaved changes of " +
                  std::string(kSampleCaption) + "?"});
  ASSERT_EQ(windows->open.size(), 1U);
  EXPECT_EQ(windows->open[0]->Caption(), kSampleCaption);
  EXPECT_TRUE(HasUnsaved(0));
  EXPECT_TRUE(windows->open[0]->IsFormDirty());
  EXPECT_EQ(windows->log, (Texts{"splash", "jukebox", "splash off", "tip"}));
  // The file is kept until the jukebox is saved or closed.
  EXPECT_EQ(Kept(), 1U);
  Start(true);
  EXPECT_TRUE(HasUnsaved(0));
}

TEST_F(Recovery, ARecoveredJukeboxIsInFrontOfTheLastJukebox) {
  Change();
  tallow->settings.LocOfLastSavedJukeBox(application / "Grouping/last.juk");
  tallow->SaveSettings();
  Jukebox last;
  last.Nodes().AddChild(nullptr, "All Songs");
  ASSERT_TRUE(last.Save(application / "Grouping/last.juk", tallow->library));
  Start(true);
  ASSERT_EQ(windows->open.size(), 2U);
  EXPECT_EQ(windows->log, (Texts{"splash", "jukebox", "jukebox", "jukebox", "splash off", "tip"}));
  EXPECT_EQ(windows->last_shown, windows->open[0]);
}

TEST_F(Recovery, NoBacksUpTheFileAndDoesNotAskAgain) {
  Change();
  Start(false);
  EXPECT_EQ(windows->asked.size(), 1U);
  ASSERT_EQ(windows->open.size(), 1U);
  EXPECT_FALSE(HasUnsaved(0));
  EXPECT_EQ(Kept(), 0U);
  EXPECT_TRUE(FileExists(application / "Grouping/System/Jukebox-1.unsaved.bak"));
  Start(false);
  EXPECT_EQ(windows->asked, Texts{});
}

TEST_F(Recovery, ADismissedQuestionIsAskedAgainAtTheNextStart) {
  Change();
  windows.emplace();
  windows->leaves_questions = true;
  tallow.emplace(application.path());
  system.emplace(*tallow, drives, *windows);
  EXPECT_TRUE(system->Main(runtime_file));
  EXPECT_EQ(windows->asked.size(), 1U);
  EXPECT_FALSE(HasUnsaved(0));
  EXPECT_EQ(Kept(), 1U);
  // Changes kept by this run do not overwrite that file.
  Change();
  EXPECT_EQ(Kept(), 2U);
  Start(true);
  EXPECT_EQ(windows->open.size(), 2U);
}

TEST_F(Recovery, TheLastJukeboxIsNotOpenedBesideItsRecoveredState) {
  SaveAs("mix.juk");
  Change();
  MakeSong("b/four.mp3", {.artist = "Zappa"});
  Start(true);
  EXPECT_EQ(windows->asked,
            Texts{"Tallow was not closed properly. Recover the unsaved changes of MIX?"});
  ASSERT_EQ(windows->open.size(), 1U);
  const Jukebox& jukebox = *windows->open[0];
  EXPECT_TRUE(HasUnsaved(0));
  EXPECT_EQ(jukebox.Caption(), "MIX");
  EXPECT_EQ(jukebox.FileLocation(), application / "Grouping/");
  EXPECT_EQ(jukebox.FilePath(), Path("mix.juk"));
  EXPECT_EQ(jukebox.Tag(), "1");
  // The jukebox contains the songs added since.
  EXPECT_EQ(SongsOnShow(), 4U);
}

TEST_F(Recovery, ARecoveredJukeboxIsOpenThoughASongCannotBeFiled) {
  Change();
  MakeSong("a/bad.mp3", {.artist = "Who", .year = "198x"});
  EXPECT_TRUE(Start(true));
  ASSERT_EQ(windows->notices.size(), 1U);
  EXPECT_TRUE(windows->notices[0].starts_with(music / "a/bad.mp3: the year in the tag, '198x', "))
      << windows->notices[0];
  ASSERT_EQ(windows->open.size(), 1U);
  EXPECT_TRUE(HasUnsaved(0));
  EXPECT_EQ(SongsOnShow(), 4U);
  EXPECT_EQ(windows->last_shown, windows->open[0]);
}

TEST_F(Recovery, AnotherLastJukeboxIsOpenedAsWell) {
  SaveAs("mix.juk");
  Change();
  ASSERT_TRUE(windows->open[0]->Save(Path("other.juk"), tallow->library));
  tallow->settings.LocOfLastSavedJukeBox(Path("other.juk"));
  tallow->SaveSettings();
  Start(true);
  ASSERT_EQ(windows->open.size(), 2U);
  EXPECT_EQ(windows->open[0]->Caption(), "MIX");
  EXPECT_EQ(windows->open[1]->Caption(), "OTHER");
}

TEST_F(Recovery, ChangesThatWereSavedAreNotOffered) {
  SaveAs("mix.juk");
  Change();
  // The program ended after saving and before removing the file.
  ASSERT_TRUE(windows->open[0]->Save(Path("mix.juk"), tallow->library));
  Start(false);
  EXPECT_EQ(windows->asked, Texts{});
  EXPECT_EQ(Kept(), 0U);
  EXPECT_TRUE(HasUnsaved(0));
}

TEST_F(Recovery, TwoUnsavedStatesOfOneFileAreTwoJukeboxes) {
  SaveAs("mix.juk");
  Change();
  // The question was dismissed once, and the jukebox was opened and changed again.
  const std::string first = application / "Grouping/System/Jukebox-1.unsaved";
  application.File("Grouping/System/Jukebox-2.unsaved", *ReadWholeFile(first));
  Start(true);
  EXPECT_EQ(windows->asked.size(), 2U);
  ASSERT_EQ(windows->open.size(), 2U);
  EXPECT_EQ(windows->open[0]->Caption(), "MIX");
  EXPECT_EQ(windows->open[0]->FilePath(), Path("mix.juk"));
  // Saving the second jukebox does not overwrite the file of the first.
  EXPECT_EQ(windows->open[1]->Caption(), "MIX (recovered)");
  EXPECT_EQ(windows->open[1]->FileLocation(), "");
  EXPECT_EQ(windows->open[1]->FilePath(), "");
  EXPECT_TRUE(HasUnsaved(0));
  EXPECT_TRUE(HasUnsaved(1));
}

TEST_F(Recovery, AFolderOfThatNameDoesNotPreventKeepingChanges) {
  CreateFolders(application / "Grouping/System/Jukebox-1.unsaved/x");
  Change();
  EXPECT_TRUE(FileExists(application / "Grouping/System/Jukebox-2.unsaved"));
}

TEST_F(Recovery, AFileWithoutAJukeboxIsReportedAndBackedUp) {
  application.File("Grouping/System/Jukebox-7.unsaved",
                   "{\"format\":\"Tallow unsaved jukebox\",\"version\":1,\"caption\":\"X\","
                   "\"location\":\"\",\"file\":\"\"}\nno jukebox");
  application.File("Grouping/System/Jukebox-8.unsaved", "nothing");
  Start(true);
  EXPECT_EQ(windows->asked.size(), 1U);
  ASSERT_EQ(windows->messages.size(), 1U);
  EXPECT_EQ(windows->messages[0],
            SystemFolder(application.path()) + "Jukebox-7.unsaved" +
                ": the unsaved changes in this file cannot be read (at byte 2 it is "
                "damaged or cut off). It was renamed to end in .bak.");
  EXPECT_EQ(windows->notices.size(), 1U);
  ASSERT_EQ(windows->open.size(), 1U);
  EXPECT_EQ(windows->open[0]->Caption(), kSampleCaption);
  EXPECT_EQ(Kept(), 0U);
}

}  // namespace
}  // namespace tallow

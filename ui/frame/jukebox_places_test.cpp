// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/jukebox_places.h"

#include <QtTest>

#include "tests/frame_fixture.h"

namespace tallow {
namespace {

class JukeboxPlacesTest : public FrameTest {
 protected:
  JukeboxPlacesTest() {
    tallow.preferences.SetSwitches({.reopens_jukeboxes = true});
    tallow.open_jukeboxes.BeginStoring();
  }
  frmMain& ShowSaved(const std::string& name) {
    frmMain& window = ShowJukebox();
    EXPECT_TRUE(window.Jukebox().Save(application / name, library));
    return window;
  }
  /// The jukeboxes that the next start opens.
  std::vector<OpenJukebox> Stored() const {
    std::vector<std::string> problems;
    return OpenJukeboxes(SystemFolder(application.path())).Load(problems);
  }
  Texts StoredFiles() const {
    Texts files;
    for (const OpenJukebox& open : Stored()) files.push_back(open.file);
    return files;
  }
};

TEST_F(JukeboxPlacesTest, OpenJukeboxesAreStoredWithTheirPlaces) {
  frmMain& first = ShowSaved("a.juk");
  ShowSaved("b.juk");
  ShowJukebox();  // Has no file, so that it cannot be opened again.
  SubOf(first).showNormal();
  SubOf(first).setGeometry(30, 40, 400, 300);
  Area().setActiveSubWindow(&SubOf(first));
  frame.Places().Store();
  const std::vector<OpenJukebox> stored = Stored();
  ASSERT_EQ(stored.size(), 2U);
  EXPECT_EQ(stored[0].file, application / "a.juk");
  EXPECT_EQ(stored[0].place, (WindowPlace{WindowPlace::State::kNormal, 30, 40, 400, 300}));
  EXPECT_TRUE(stored[0].is_active);
  EXPECT_EQ(stored[0].shown, FolderNames{"one"});
  EXPECT_FALSE(stored[1].is_active);
}

TEST_F(JukeboxPlacesTest, AClosedJukeboxIsNotOpenedAgain) {
  ShowSaved("a.juk");
  frmMain& second = ShowSaved("b.juk");
  QCoreApplication::processEvents();
  frame.Places().Store();
  EXPECT_EQ(StoredFiles().size(), 2U);
  SubOf(second).close();
  DeleteClosedWindows();
  QCoreApplication::processEvents();
  EXPECT_EQ(StoredFiles(), Texts{application / "a.juk"});
}

TEST_F(JukeboxPlacesTest, TheEndOfTheProgramKeepsTheJukeboxesOpen) {
  ShowSaved("a.juk");
  ShowSaved("b.juk");
  EXPECT_TRUE(frame.close());
  DeleteClosedWindows();
  QCoreApplication::processEvents();
  EXPECT_EQ(StoredFiles(), (Texts{application / "a.juk", application / "b.juk"}));
}

TEST_F(JukeboxPlacesTest, InClassicStyleNothingIsStored) {
  tallow.preferences.SetSwitches(kClassicStyle);
  ShowSaved("a.juk");
  EXPECT_TRUE(frame.close());
  EXPECT_TRUE(Stored().empty());
}

TEST_F(JukeboxPlacesTest, WindowsAreMovedToTheirPlaces) {
  frmMain& first = ShowJukebox();
  frmMain& second = ShowJukebox();
  using State = WindowPlace::State;
  frame.Places().Restore({{&first, {State::kNormal, 30, 40, 400, 300}},
                          {&second, {State::kMinimized, 50, 60, 410, 310}}},
                         first);
  EXPECT_EQ(SubOf(first).geometry(), QRect(30, 40, 400, 300));
  EXPECT_TRUE(SubOf(second).isMinimized());
  EXPECT_EQ(Area().currentSubWindow(), &SubOf(first));
  SubOf(second).showNormal();
  EXPECT_EQ(SubOf(second).geometry(), QRect(50, 60, 410, 310));
}

TEST_F(JukeboxPlacesTest, MaximizedWindowsKeepTheirNormalPlaces) {
  frmMain& first = ShowJukebox();
  frmMain& second = ShowJukebox();
  using State = WindowPlace::State;
  frame.Places().Restore({{&first, {State::kMaximized, 30, 40, 400, 300}},
                          {&second, {State::kMaximized, 9000, 9000, 410, 310}}},
                         first);
  EXPECT_TRUE(SubOf(first).isMaximized());
  EXPECT_TRUE(SubOf(second).isMaximized());
  EXPECT_EQ(Area().currentSubWindow(), &SubOf(first));
  SubOf(first).showNormal();
  EXPECT_EQ(SubOf(first).geometry(), QRect(30, 40, 400, 300));
  EXPECT_TRUE(Area().viewport()->rect().intersects(SubOf(second).geometry()));
}

}  // namespace
}  // namespace tallow

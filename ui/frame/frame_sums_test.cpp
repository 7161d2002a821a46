// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_sums.h"

#include <QLabel>
#include <QStatusBar>
#include <QTableView>
#include <QTest>

#include "app/columns/column_choice.h"
#include "app/data_paths.h"
#include "details/details_store.h"
#include "tests/frame_fixture.h"
#include "ui/jukebox/pv_explorer.h"

namespace tallow {
namespace {

class FrameSumsTest : public FrameTest {
 protected:
  QLabel& Label() { return *frame.statusBar()->findChild<QLabel*>(QStringLiteral("lblSongs")); }
  bool Becomes(const QString& text) {
    const bool becomes = QTest::qWaitFor([&] { return Label().text() == text; });
    EXPECT_EQ(Label().text(), text);
    return becomes;
  }
};

TEST_F(FrameSumsTest, ShowThoseOfTheActiveJukebox) {
  tallow.preferences.SetSwitches({.columns_of_details = true});
  frmMain& first = ShowJukebox();
  EXPECT_TRUE(Becomes("2 songs"));
  EXPECT_TRUE(Label().isVisible());
  frmMain& second = ShowJukebox();
  second.PVExplorer1().SelectSong(second.Jukebox().Nodes().ChildAt(0), 1);
  EXPECT_TRUE(Becomes("1 of 2 songs selected"));
  Area().setActiveSubWindow(&SubOf(first));
  EXPECT_TRUE(Becomes("2 songs"));
}

TEST_F(FrameSumsTest, TellLengthAndSizeOfTheSelectionElseOfTheFolder) {
  {
    DetailsStore store;
    store.Open(SystemFolder(application.path()) + std::string(kDetailsFileName));
    store.Put(library.Song(1).Path(), {.length_ms = 185'000});
    store.Put(library.Song(2).Path(), {.length_ms = 3'600'000});
  }
  tallow.details.LoadAll();
  library.SetSize(1, library.Song(1).Folder(), library.Song(1).Name(), 4'000'000);
  library.SetSize(2, library.Song(2).Folder(), library.Song(2).Name(), 60'000'000);
  tallow.preferences.SetSwitches({.columns_of_details = true});
  frmMain& window = ShowJukebox();
  EXPECT_TRUE(Becomes("2 songs, 1:03:05, 64 MB"));
  auto* const list = window.findChild<QTableView*>(QStringLiteral("ListView"));
  const auto click = [&](int row, Qt::KeyboardModifiers keys) {
    QTest::mouseClick(list->viewport(), Qt::LeftButton, keys,
                      list->visualRect(list->model()->index(row, 0)).center());
  };
  click(0, {});
  EXPECT_TRUE(Becomes("1 of 2 songs selected, 3:05, 4 MB"));
  click(1, Qt::ControlModifier);
  EXPECT_TRUE(Becomes("2 of 2 songs selected, 1:03:05, 64 MB"));
  click(0, Qt::ControlModifier);
  EXPECT_TRUE(Becomes("1 of 2 songs selected, 1:00:00, 60 MB"));
  click(1, Qt::ControlModifier);
  EXPECT_TRUE(Becomes("2 songs, 1:03:05, 64 MB"));
}

TEST_F(FrameSumsTest, AreHiddenInTheClassicStyle) {
  ShowJukebox();
  tallow.preferences.SetSwitches({.columns_of_details = true});
  EXPECT_TRUE(Becomes("2 songs"));
  tallow.preferences.SetSwitches({});
  EXPECT_TRUE(Becomes(""));
  EXPECT_FALSE(Label().isVisible());
}

TEST_F(FrameSumsTest, AreGoneWithTheLastJukebox) {
  tallow.preferences.SetSwitches({.columns_of_details = true});
  frmMain& window = ShowJukebox();
  EXPECT_TRUE(Becomes("2 songs"));
  window.Jukebox().IsFormDirty(false);
  SubOf(window).close();
  DeleteClosedWindows();
  EXPECT_TRUE(Becomes(""));
}

TEST_F(FrameSumsTest, AllWindowsHaveTheColumnsOfTheStyle) {
  frmMain& first = ShowJukebox();
  frmMain& second = ShowJukebox();
  const auto columns = [](frmMain& window) {
    return window.findChild<QTableView*>(QStringLiteral("ListView"))->model()->columnCount();
  };
  EXPECT_EQ(columns(first), 2);
  tallow.preferences.SetStyle(Style::kModern);
  EXPECT_EQ(columns(first), 8);
  EXPECT_EQ(columns(second), 8);
  ChooseColumns(tallow.preferences, true, {{ListColumn::kTitle}});
  EXPECT_EQ(columns(first), 1);
  EXPECT_EQ(columns(second), 1);
}

}  // namespace
}  // namespace tallow

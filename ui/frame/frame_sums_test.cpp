// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_sums.h"

#include <QLabel>
#include <QStatusBar>
#include <QTest>

#include "app/columns/column_choice.h"
#include "tests/frame_fixture.h"
#include "ui/jukebox/pv_explorer.h"

namespace tallow {
namespace {

class FrameSumsTest : public FrameTest {
 protected:
  QLabel& Label() { return *frame.statusBar()->findChild<QLabel*>(QStringLiteral("lblSongs")); }
  bool Becomes(const QString& text) {
    return QTest::qWaitFor([&] { return Label().text() == text; });
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_searching.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>

namespace tallow {
namespace {

TEST(FrmSearching, ShowsTheFolderAndTheNumberFound) {
  frmSearching window;
  EXPECT_EQ(window.objectName(), "frmSearching");
  EXPECT_EQ(window.findChild<QLabel*>("Label1")->text(), "Searching to add new songs  . . . ");
  window.VisitFolder("/music/a/");
  EXPECT_EQ(window.findChild<QLabel*>("lStatus")->text(), "/music/a/");
  window.SetFound("Found 12 Mp3s");
  EXPECT_TRUE(QTest::qWaitFor([&] {
    window.YieldAfterSong();
    return window.findChild<QLabel*>("lNoOfMP3Found")->text() == "Found 12 Mp3s";
  }));
  // Work without a folder keeps the last folder on display.
  window.VisitFolder({});
  EXPECT_EQ(window.findChild<QLabel*>("lStatus")->text(), "/music/a/");
}

TEST(FrmSearching, CancelIsCalledOnceAndTheWindowStaysUntilTheSearchStops) {
  int cancelled = 0;
  frmSearching window([&] { ++cancelled; });
  window.Load();
  window.show();
  auto* const button = window.findChild<QPushButton*>("cmdCancel");
  EXPECT_EQ(button->text(), "Cancel");
  button->click();
  button->click();
  EXPECT_EQ(cancelled, 1);
  EXPECT_EQ(button->text(), "Stopping . . .");
  EXPECT_TRUE(window.isVisible());
}

TEST(FrmSearching, EscCancelsOnceToo) {
  int cancelled = 0;
  frmSearching window([&] { ++cancelled; });
  window.Load();
  window.show();
  QTest::keyClick(&window, Qt::Key_Escape);
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_EQ(cancelled, 1);
  EXPECT_EQ(window.findChild<QPushButton*>("cmdCancel")->text(), "Stopping . . .");
}

TEST(FrmSearching, OpensInTheMiddleOfTheScreen) {
  frmSearching window;
  window.Load();
  const QRect screen = QGuiApplication::primaryScreen()->geometry();
  EXPECT_EQ(window.x(), (screen.width() - window.width()) / 2);
  EXPECT_EQ(window.y(), (screen.height() - window.height()) / 2);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frm_searching.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>

namespace tallow {
namespace {

TEST(FrmSearching, SaysWhatGoesOn) {
  frmSearching window;
  EXPECT_EQ(window.objectName(), "frmSearching");
  EXPECT_EQ(window.findChild<QLabel*>()->text(), "Searching to add new songs  . . . ");
}

TEST(FrmSearching, StandsInTheMiddleOfTheScreen) {
  frmSearching window;
  window.Load();
  const QRect screen = QGuiApplication::primaryScreen()->geometry();
  EXPECT_EQ(window.x(), (screen.width() - window.width()) / 2);
  EXPECT_EQ(window.y(), (screen.height() - window.height()) / 2);
}

}  // namespace
}  // namespace tallow

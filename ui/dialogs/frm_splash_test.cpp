// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_splash.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include "util/version.h"

namespace tallow {
namespace {

class FrmSplash : public testing::Test {
 protected:
  QLabel* Label(const char* name) { return splash.findChild<QLabel*>(QLatin1String(name)); }
  QPushButton* Button(const char* name) {
    return splash.findChild<QPushButton*>(QLatin1String(name));
  }

  int cancels = 0;
  frmSplash splash{[this] { ++cancels; }};
};

TEST_F(FrmSplash, AtStartUpNoButtonShowsUntilASearchBegins) {
  splash.ShowOKButton(false);
  splash.Load();
  splash.show();
  EXPECT_FALSE(splash.ShowOKButton());
  EXPECT_FALSE(Button("cmdOK")->isVisible());
  EXPECT_FALSE(Button("cmdCancel")->isVisible());
  splash.ShowCancelButton(true);
  EXPECT_TRUE(Button("cmdCancel")->isVisible());
  splash.ShowCancelButton(false);
  EXPECT_FALSE(Button("cmdCancel")->isVisible());
}

TEST_F(FrmSplash, AsAnAboutBoxItHasAnOkButtonThatClosesIt) {
  splash.ShowOKButton(true);
  splash.Load();
  splash.show();
  EXPECT_TRUE(Button("cmdOK")->isVisible());
  EXPECT_FALSE(Button("cmdCancel")->isVisible());
  QTest::mouseClick(Button("cmdOK"), Qt::LeftButton);
  EXPECT_FALSE(splash.isVisible());
}

TEST_F(FrmSplash, CancelCallsTheCallbackAndKeepsTheWindowOpen) {
  splash.Load();
  splash.show();
  splash.ShowCancelButton(true);
  EXPECT_EQ(Button("cmdCancel")->text(), "Cancel Search");
  QTest::mouseClick(Button("cmdCancel"), Qt::LeftButton);
  EXPECT_EQ(cancels, 1);
  EXPECT_TRUE(splash.isVisible());
}

TEST_F(FrmSplash, EscDoesNotEndASearch) {
  splash.Load();
  splash.show();
  splash.ShowCancelButton(true);
  QTest::keyClick(&splash, Qt::Key_Escape);
  EXPECT_TRUE(splash.isVisible());
  EXPECT_EQ(cancels, 0);
}

TEST_F(FrmSplash, TheVersionHasTwoBlanks) {
  splash.Load();
  EXPECT_EQ(Label("lblVersion")->text(),
            QStringLiteral("Version  %1.%2").arg(kMajorVersion).arg(kMinorVersion));
}

TEST_F(FrmSplash, LoadSetsEveryTextAndPicture) {
  EXPECT_FALSE(splash.IsLoaded());
  splash.Load();
  EXPECT_TRUE(splash.IsLoaded());
  EXPECT_EQ(Label("Label1")->text(), "Tallow");
  EXPECT_FALSE(Label("lWebsite")->text().isEmpty());
  EXPECT_FALSE(Label("lCopyright")->text().isEmpty());
  for (const char* picture : {"ImageHeart", "ImageMom", "ImageMan"})
    EXPECT_FALSE(Label(picture)->pixmap().isNull()) << picture;
}

TEST_F(FrmSplash, TheLinesShowTheTextsThatWereSet) {
  splash.Load();
  splash.show();
  splash.ShowFoundLine(true);
  splash.SetStatus("Looking for Mp3s in C:\\");
  EXPECT_EQ(Label("lStatus")->text(), "Looking for Mp3s in C:\\");
  splash.SetFound("Found 7 Mp3s");
  ASSERT_TRUE(QTest::qWaitFor([this] {
    splash.Yield();
    return Label("lNoOfMP3Found")->text() == QLatin1String("Found 7 Mp3s");
  }));
  splash.ShowFoundLine(false);
  EXPECT_FALSE(Label("lNoOfMP3Found")->isVisible());
}

TEST_F(FrmSplash, ANewDriveIsPaintedAtOnce) {
  struct Paints : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
      count += event->type() == QEvent::Paint;
      return false;
    }
    int count = 0;
  } paints;
  splash.Load();
  splash.show();
  splash.WaitUntilPainted();
  Label("lStatus")->installEventFilter(&paints);
  // Events are not processed here, because a search of a whole disk may follow.
  splash.SetStatus("Looking for WinAmp in D:\\");
  splash.Repaint();
  EXPECT_EQ(paints.count, 1);
  splash.Repaint();
  EXPECT_EQ(paints.count, 1);
}

TEST_F(FrmSplash, TheFoundLineIsHiddenUntilASearchBegins) {
  splash.Load();
  splash.show();
  EXPECT_FALSE(Label("lNoOfMP3Found")->isVisible());
}

TEST_F(FrmSplash, OkUnloadsTheAboutBox) {
  splash.ShowOKButton(true);
  splash.Load();
  splash.show();
  QTest::mouseClick(Button("cmdOK"), Qt::LeftButton);
  EXPECT_FALSE(splash.IsLoaded());
}

TEST_F(FrmSplash, PaintingIsBoundedHoweverManySongsAreFound) {
  splash.Load();
  splash.show();
  splash.ShowFoundLine(true);
  int changes = 0;
  QString last;
  constexpr int kSongs = 100000;
  QElapsedTimer clock;
  clock.start();
  for (int k = 1; k <= kSongs; ++k) {
    splash.SetFound("Found " + std::to_string(k) + " Mp3s");
    splash.Repaint();
    splash.Repaint();
    splash.YieldAfterSong();
    if (Label("lNoOfMP3Found")->text() != last) {
      last = Label("lNoOfMP3Found")->text();
      ++changes;
    }
  }
  EXPECT_LE(changes, clock.elapsed() / 16 + 1);
  // The last line is shown at the latest when Yield is called again.
  ASSERT_TRUE(QTest::qWaitFor([this] {
    splash.Yield();
    return Label("lNoOfMP3Found")->text() == QLatin1String("Found 100000 Mp3s");
  }));
}

TEST_F(FrmSplash, YieldProcessesAClickOnCancel) {
  splash.Load();
  splash.show();
  splash.ShowCancelButton(true);
  QMetaObject::invokeMethod(Button("cmdCancel"), "click", Qt::QueuedConnection);
  EXPECT_EQ(cancels, 0);
  splash.Yield();
  EXPECT_EQ(cancels, 1);
}

TEST_F(FrmSplash, NoWebOrMailAddressIsShown) {
  splash.Load();
  for (const QLabel* const label : splash.findChildren<QLabel*>())
    for (const char* const sign : {"://", "www.", "@", ".example", ".com", ".org"})
      EXPECT_FALSE(label->text().contains(QLatin1String(sign), Qt::CaseInsensitive))
          << label->text().toStdString();
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/status_bar.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHelpEvent>
#include <QImage>
#include <QLabel>
#include <QTest>
#include <QToolTip>

namespace tallow {
namespace {

const QString kEllipsis(u'…');
const QString kText = QStringLiteral("/home/ada/SongDetails.db is damaged and is made again");
const QString kEnd = QStringLiteral("  (and 1 more)");

class StatusBarTest : public testing::Test {
 protected:
  StatusBarTest() {
    bar.addPermanentWidget(&right);
    bar.resize(bar.fontMetrics().horizontalAdvance(kText + kEnd) + right.sizeHint().width() + 60,
               24);
    bar.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&bar));
  }
  void Narrow() {
    bar.resize(bar.width() * 2 / 3, bar.height());
    QApplication::processEvents();
  }
  QString ToolTip() {
    QToolTip::hideText();
    QHelpEvent event(QEvent::ToolTip, QPoint(20, 8), bar.mapToGlobal(QPoint(20, 8)));
    QApplication::sendEvent(&bar, &event);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
  }

  StatusBar bar;
  QLabel right{QStringLiteral("Reading the details of songs")};
};

TEST_F(StatusBarTest, AMessageThatFitsIsShownAsItIs) {
  bar.ShowMessage(kText, kEnd);
  EXPECT_EQ(bar.ShownText(), kText + kEnd);
  EXPECT_EQ(ToolTip(), "");
}

TEST_F(StatusBarTest, ALongMessageEndsInAnEllipsisBeforeTheWidgetAtTheRight) {
  bar.showMessage(kText + kEnd);
  Narrow();
  EXPECT_TRUE(bar.ShownText().endsWith(kEllipsis)) << bar.ShownText().toStdString();
  EXPECT_LT(6 + bar.fontMetrics().horizontalAdvance(bar.ShownText()), right.x());
  EXPECT_EQ(bar.currentMessage(), kText + kEnd);
  EXPECT_EQ(ToolTip(), kText + kEnd);
}

TEST_F(StatusBarTest, TheNumberOfFurtherLinesIsNeverCutOff) {
  bar.ShowMessage(kText, kEnd);
  Narrow();
  EXPECT_TRUE(bar.ShownText().endsWith(kEllipsis + kEnd)) << bar.ShownText().toStdString();
  // Text that has been shown by other means has no such end.
  bar.showMessage(kText + kText);
  EXPECT_TRUE(bar.ShownText().endsWith(kEllipsis)) << bar.ShownText().toStdString();
}

TEST_F(StatusBarTest, AToolTipOfTheBarIsKept) {
  bar.ShowMessage(kText, kEnd);
  bar.setToolTip(QStringLiteral("all lines"));
  Narrow();
  EXPECT_EQ(ToolTip(), "all lines");
}

TEST_F(StatusBarTest, NothingIsDrawnBetweenTheTextAndTheWidget) {
  bar.ShowMessage(kText, kEnd);
  Narrow();
  const QImage picture = bar.grab().toImage();
  const int y = bar.height() / 2;
  const int end = 6 + bar.fontMetrics().horizontalAdvance(bar.ShownText());
  const QColor background = picture.pixelColor(3, y);
  int inked = 0;
  for (int x = 0; x < end; ++x) inked += picture.pixelColor(x, y) != background ? 1 : 0;
  EXPECT_GT(inked, 20);
  for (int x = end + 2; x < right.x() - 3; ++x) EXPECT_EQ(picture.pixelColor(x, y), background);
}

}  // namespace
}  // namespace tallow

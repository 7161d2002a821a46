// SPDX-License-Identifier: GPL-3.0-or-later
// Long work under the frame window.
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>

#include "tests/frame_fixture.h"
#include "tests/wait_until.h"
#include "ui/dialogs/frm_searching.h"
#include "ui/frame/frame_work.h"

namespace tallow {
namespace {

frmSearching* Notice() {
  for (QWidget* const widget : QApplication::topLevelWidgets())
    if (auto* const notice = qobject_cast<frmSearching*>(widget))
      if (notice->isVisible()) return notice;
  return nullptr;
}

class LongWorkTest : public FrameTest {
 protected:
  std::unique_ptr<FrameWork> Begin() {
    frame.show();
    return std::make_unique<FrameWork>(tallow, QStringLiteral("Filing songs  . . . "),
                                       [this](bool enabled) { frame.setEnabled(enabled); });
  }
  static std::string Line() { return "Filed 3 of 5 songs"; }
};

TEST_F(LongWorkTest, QuickWorkShowsNothing) {
  const auto work = Begin();
  EXPECT_TRUE(work->GoOn(Line));
  EXPECT_TRUE(frame.isEnabled());
  EXPECT_EQ(Notice(), nullptr);
}

TEST_F(LongWorkTest, SlowWorkIsShownAndDisablesTheFrame) {
  auto work = Begin();
  int painted = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { ++painted; });
  timer.start(1);
  ASSERT_TRUE(WaitUntil([&] { return work->GoOn(Line), Notice() != nullptr; }));
  EXPECT_FALSE(frame.isEnabled());
  EXPECT_EQ(Notice()->findChild<QLabel*>(QStringLiteral("Label1"))->text(),
            QStringLiteral("Filing songs  . . . "));
  auto* const line = Notice()->findChild<QLabel*>(QStringLiteral("lNoOfMP3Found"));
  EXPECT_TRUE(WaitUntil(
      [&] { return work->GoOn(Line), line->text() == QStringLiteral("Filed 3 of 5 songs"); }));
  // Window events are processed during the work.
  EXPECT_GT(painted, 1);
  work.reset();
  EXPECT_EQ(Notice(), nullptr);
  EXPECT_TRUE(frame.isEnabled());
}

TEST_F(LongWorkTest, TheCancelButtonCancelsTheWork) {
  auto work = Begin();
  ASSERT_TRUE(WaitUntil([&] { return work->GoOn(Line), Notice() != nullptr; }));
  Notice()->findChild<QPushButton*>(QStringLiteral("cmdCancel"))->click();
  EXPECT_FALSE(work->GoOn(Line));
  work.reset();
  EXPECT_FALSE(tallow.SearchCancelled);
}

TEST_F(LongWorkTest, ClosingTheFrameCancelsTheWorkAndKeepsTheFrame) {
  auto work = Begin();
  ASSERT_TRUE(WaitUntil([&] { return work->GoOn(Line), Notice() != nullptr; }));
  frame.close();
  EXPECT_TRUE(frame.isVisible());
  EXPECT_FALSE(work->GoOn(Line));
}

TEST_F(LongWorkTest, TheEndOfTheProgramEndsTheWork) {
  const auto work = Begin();
  tallow.is_shutting_down = true;
  EXPECT_FALSE(work->GoOn(Line));
}

}  // namespace
}  // namespace tallow

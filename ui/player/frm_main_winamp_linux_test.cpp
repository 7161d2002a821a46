// SPDX-License-Identifier: GPL-3.0-or-later
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "app/playing/system_player_model.h"
#include "app/tallow.h"
#include "tests/real_player_linux.h"
#include "tests/sound_linux.h"
#include "ui/player/frm_main_winamp.h"

namespace tallow {
namespace {

/// A real panel with a real player.
class PanelAndPlayer : public RealPlayer {
 protected:
  PanelAndPlayer() {
    for (std::int32_t row = 1; row <= 2; ++row) {
      const std::string name = std::to_string(row) + ".mp3";
      MakeMp3(folder / name, std::to_string(row * 30) + " sine 440", 2, "-b 64");
      tallow.library.Mp3Info(kFileLocation, row, folder.path());
      tallow.library.Mp3Info(kFileName, row, name);
    }
    tallow.SongsToPlay = {1, 2};
    panel.show();
    panel.Play();
  }

  template <typename Widget>
  Widget& Child(const char* name) {
    return *panel.findChild<Widget*>(QLatin1String(name));
  }
  QScrollBar& Track() { return Child<QScrollBar>("hscrlTrackPos"); }
  QString Status() { return Child<QLabel>("lblStatus").text(); }
  void Click() { QTest::mouseClick(&Child<QPushButton>("cmdPlayPause"), Qt::LeftButton); }

  TempFolder application;
  Tallow tallow{application.path()};
  SystemPlayerModel model{tallow, player};
  frmMainWinamp panel{player, model, messages.Shower()};
};

TEST_F(PanelAndPlayer, PlayPauseSeekAndClose) {
  EXPECT_EQ(Track().maximum(), 30);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Status() == "PLAYING" && Track().value() >= 1; }));
  Click();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Status() == "PAUSED"; }));
  EXPECT_EQ(Child<QPushButton>("cmdPlayPause").text(), "&Play");
  Track().setFocus();
  const int paused_at = Track().value();
  for (int k = 0; k < 5; ++k) QTest::keyClick(&Track(), Qt::Key_Right);
  EXPECT_EQ(Track().value(), paused_at + 5);
  QTest::qWait(500);
  EXPECT_EQ(Track().value(), paused_at + 5);
  Click();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Track().value() == paused_at + 6; }));
  // Plays the next song; the bar takes its length.
  player.SendWinampCommand(kNextTrack);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Track().maximum() == 60 && Track().value() <= 1; }));
  panel.close();
  EXPECT_TRUE(WaitUntil([&] { return !IsRunning(); }));
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(PanelAndPlayer, AfterThePlayerIsKilledThePanelStopsAndTheNextPlayStartsAPlayer) {
  ASSERT_TRUE(QTest::qWaitFor([&] { return Status() == "PLAYING"; }));
  Child<QScrollBar>("hscrlVolume").setValue(77);
  ASSERT_EQ(kill(LastPid(), SIGKILL), 0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Status() == "STOPPED"; }));
  EXPECT_EQ(Track().maximum(), 30);
  EXPECT_TRUE(messages.shown.empty());
  panel.Play();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Status() == "PLAYING"; }));
  const std::vector<std::string> log = Lines("log");
  EXPECT_EQ(std::count(log.begin(), log.end(), "1024 77 122"), 2);
}

TEST_F(PanelAndPlayer, APanelWhosePlayerWasKilledClosesWithoutAMessage) {
  ASSERT_TRUE(QTest::qWaitFor([&] { return Status() == "PLAYING"; }));
  ASSERT_EQ(kill(LastPid(), SIGKILL), 0);
  UseScript("exit 1\n");
  // Until the panel has noticed that no other player starts.
  EXPECT_TRUE(QTest::qWaitFor([&] {
    panel.Play();
    return player.Window() == 0;
  }));
  messages.Take();
  panel.close();
  EXPECT_EQ(messages.Take(), std::vector<std::string>{});
  EXPECT_FALSE(panel.isVisible());
}

TEST_F(PanelAndPlayer, ASecondTallowControlsThePlayerOfAKilledOne) {
  ASSERT_TRUE(QTest::qWaitFor([&] { return Status() == "PLAYING"; }));
  const std::unique_ptr<PlayerLink> other_link = SystemPlayerLink();
  WinAMP_Control other{*other_link, [this] { return path; }, messages.Shower()};
  other.SendWinampCommand(kPause);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Status() == "PAUSED"; }));
  other.SendWinampCommand(kStop);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Status() == "STOPPED"; }));
  EXPECT_TRUE(messages.shown.empty());
}

}  // namespace
}  // namespace tallow

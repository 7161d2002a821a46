// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/frm_main_winamp.h"

#include <cstdlib>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>
#include <QTimer>

#include "app/playing/system_player_model.h"
#include "tests/library_fixture.h"
#include "tests/recorded_link.h"
#include "tests/recorded_messages.h"

namespace tallow {
namespace {

const std::string kAskLength = "1024 1 105";
const std::string kAskPosition = "1024 0 105";
const std::string kAskStatus = "1024 0 104";

class FrmMainWinamp : public LibraryTest {
 protected:
  FrmMainWinamp() {
    AddSong(music.path(), "a.mp3");
    music.File("a.mp3");
    tallow.SongsToPlay = {1};
    link.answers = {{"1024 0 0", 0x2081}, {kAskLength, 215}, {kAskStatus, 1}};
  }

  /// Opens the panel, plays, and clears the log of sent messages.
  void Open() {
    panel.show();
    panel.Play();
    link.Take();
  }
  template <typename Widget>
  Widget& Child(const char* name) {
    return *panel.findChild<Widget*>(QLatin1String(name));
  }
  QScrollBar& Track() { return Child<QScrollBar>("hscrlTrackPos"); }
  QScrollBar& Volume() { return Child<QScrollBar>("hscrlVolume"); }
  QScrollBar& Balance() { return Child<QScrollBar>("hscrlBalance"); }
  QPushButton& Button() { return Child<QPushButton>("cmdPlayPause"); }
  QTimer& Timer() { return Child<QTimer>("tmrScrollUpdate"); }
  QString Status() { return Child<QLabel>("lblStatus").text(); }
  QString Times() { return Child<QLabel>("lblTimes").text(); }
  void Click() { QTest::mouseClick(&Button(), Qt::LeftButton); }
  /// Runs one timer tick and returns the messages that it sent.
  Texts Tick() {
    link.Take();
    Timer().start(0);
    QCoreApplication::processEvents();
    Timer().stop();
    return link.Take();
  }
  void PlayerIsAt(std::int64_t ms, std::int64_t length = 215, std::int64_t status = 1) {
    link.answers[kAskPosition] = ms;
    link.answers[kAskLength] = length;
    link.answers[kAskStatus] = status;
  }

  /// Returns the position of a bar's thumb, in coordinates of the bar.
  static QPoint Thumb(QScrollBar& bar) {
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = Qt::Horizontal;
    option.minimum = bar.minimum();
    option.maximum = bar.maximum();
    option.sliderPosition = bar.sliderPosition();
    option.sliderValue = bar.value();
    option.pageStep = bar.pageStep();
    option.singleStep = bar.singleStep();
    option.state |= QStyle::State_Horizontal;
    return bar.style()
        ->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, &bar)
        .center();
  }

  RecordedLink link;
  RecordedMessages messages;
  std::string path = "/opt/player";
  WinAMP_Control player{link, [this] { return path; }, messages.Shower()};
  SystemPlayerModel model{tallow, player};
  frmMainWinamp panel{player, model, messages.Shower()};
};

TEST_F(FrmMainWinamp, TheControlsHaveTheirInitialState) {
  EXPECT_EQ(panel.objectName(), "frmMainWinamp");
  EXPECT_EQ(Button().text(), "&Play");
  EXPECT_EQ(Track().minimum(), 0);
  EXPECT_EQ(Volume().minimum(), 0);
  EXPECT_EQ(Volume().maximum(), 255);
  EXPECT_EQ(Balance().minimum(), -127);
  EXPECT_EQ(Balance().maximum(), 127);
  EXPECT_EQ(Timer().interval(), 150);
  EXPECT_FALSE(Timer().isActive());
  EXPECT_EQ(Status(), "No File Open");
  QStringList labels;
  for (const QLabel* const label : panel.findChildren<QLabel*>())
    if (label->objectName().isEmpty()) labels.append(label->text());
  for (const char* const text : {"Status:", "Track Position", "Volume", "Balance"})
    EXPECT_TRUE(labels.contains(QLatin1String(text))) << text;
  for (QScrollBar* const bar : panel.findChildren<QScrollBar*>()) {
    EXPECT_EQ(bar->orientation(), Qt::Horizontal);
    EXPECT_FALSE(bar->accessibleName().isEmpty());
    EXPECT_EQ(bar->focusPolicy(), Qt::StrongFocus);
  }
}

TEST_F(FrmMainWinamp, OpeningFindsThePlayerSetsItUpAndPlaysOnce) {
  panel.Play();
  const std::string added =
      "copy 100 " + std::to_string(music.path().size() + 6) + " " + music.path() + "a.mp3\\0";
  EXPECT_EQ(link.Take(), (Texts{"start /opt/player", "find", "1024 0 0", "1024 128 122",
                                "1024 0 123", "start /opt/player", "find", "273 40047 0",
                                "1024 0 101", added, "273 40045 0", kAskLength}));
  EXPECT_EQ(panel.windowTitle(), "WinAMP Version# 2.081");
  EXPECT_EQ(Volume().value(), 128);
  EXPECT_EQ(Balance().value(), 0);
  EXPECT_EQ(Track().minimum(), 0);
  EXPECT_EQ(Track().maximum(), 215);
  EXPECT_EQ(Track().value(), 0);
  EXPECT_EQ(Button().text(), "&Pause");
  EXPECT_TRUE(Button().isEnabled());
  EXPECT_TRUE(Timer().isActive());
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(FrmMainWinamp, AnOpenPanelOnlyHandsOverTheNewList) {
  Open();
  Volume().setValue(40);
  link.Take();
  panel.Play();
  const Texts sent = link.Take();
  ASSERT_EQ(sent.size(), 7U);
  EXPECT_EQ(sent[0], "start /opt/player");
  EXPECT_EQ(sent[2], "273 40047 0");
  EXPECT_EQ(Volume().value(), 40);
}

TEST_F(FrmMainWinamp, AnotherPlayerGetsTheVolumeAndBalanceOfTheBars) {
  Open();
  Volume().setValue(40);
  Balance().setValue(-20);
  link.Take();
  link.found = 8;
  panel.Play();
  const Texts sent = link.Take();
  ASSERT_EQ(sent.size(), 10U);
  EXPECT_EQ(sent[2], "1024 0 0");
  EXPECT_EQ(sent[3], "1024 40 122");
  EXPECT_EQ(sent[4], "1024 235 123");
  EXPECT_EQ(sent[5], "273 40047 0");
  panel.Play();
  EXPECT_EQ(link.Take().size(), 7U);
}

TEST_F(FrmMainWinamp, APlayerThatDoesNotStartCancelsTheOpening) {
  path.clear();
  panel.Play();
  EXPECT_EQ(link.Take(), Texts{});
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(messages.shown[0].text, "Couldn't start WinAMP");
  EXPECT_EQ(messages.shown[0].icon, MessageIcon::kNone);
  EXPECT_EQ(messages.shown[0].buttons, MessageButtons::kOk);
  EXPECT_FALSE(Timer().isActive());
  EXPECT_EQ(Button().text(), "&Play");
}

TEST_F(FrmMainWinamp, AfterAPlayerWithoutAWindowTheNextPlayOpensItAgain) {
  link.found = 0;
  panel.Play();
  EXPECT_EQ(link.Take(), (Texts{"start /opt/player", "find"}));
  EXPECT_EQ(messages.Take(), Texts{"Couldn't find WinAMP's Window"});
  link.found = 7;
  panel.Play();
  EXPECT_EQ(panel.windowTitle(), "WinAMP Version# 2.081");
  EXPECT_TRUE(Timer().isActive());
  EXPECT_EQ(link.Take().size(), 12U);
}

TEST_F(FrmMainWinamp, AnUnknownLengthLeavesTheRangeOfTheBar) {
  Open();
  link.answers[kAskLength] = -1;
  Track().setValue(20);
  panel.Play();
  EXPECT_EQ(Track().minimum(), 0);
  EXPECT_EQ(Track().maximum(), 215);
  EXPECT_EQ(Track().value(), 0);
}

TEST_F(FrmMainWinamp, TheButtonPausesAndPlays) {
  Open();
  Click();
  EXPECT_EQ(link.Take(), Texts{"273 40046 0"});
  EXPECT_EQ(Button().text(), "&Play");
  Click();
  EXPECT_EQ(link.Take(), Texts{"273 40045 0"});
  EXPECT_EQ(Button().text(), "&Pause");
}

TEST_F(FrmMainWinamp, VolumeAndBalanceAreSentOnEveryChange) {
  Open();
  Volume().setValue(255);
  Balance().setValue(-127);
  EXPECT_EQ(link.Take(), (Texts{"1024 255 122", "1024 128 123"}));
  QTest::keyClick(&Volume(), Qt::Key_Left);
  EXPECT_EQ(link.Take(), Texts{"1024 250 122"});
}

TEST_F(FrmMainWinamp, DraggingTheVolumeSendsIt) {
  Open();
  const QPoint from = Thumb(Volume());
  QTest::mousePress(&Volume(), Qt::LeftButton, {}, from);
  QTest::mouseMove(&Volume(), from + QPoint(10, 0));
  QTest::mouseMove(&Volume(), from + QPoint(20, 0));
  ASSERT_GE(link.log.size(), 2U);
  for (const std::string& sent : link.log) EXPECT_TRUE(sent.ends_with(" 122")) << sent;
  QTest::mouseRelease(&Volume(), Qt::LeftButton, {}, from + QPoint(20, 0));
  EXPECT_EQ(link.log.back(), "1024 " + std::to_string(Volume().value()) + " 122");
}

TEST_F(FrmMainWinamp, TheTimerShowsThePositionOfThePlayerAndNeverSeeks) {
  Open();
  for (const int ms : {1000, 61999, 214999, 3000}) {
    PlayerIsAt(ms);
    EXPECT_EQ(Tick(), (Texts{kAskPosition, kAskLength, kAskStatus}));
    EXPECT_EQ(Track().value(), ms / 1000);
  }
  PlayerIsAt(65000);
  Tick();
  EXPECT_EQ(Times(), "1:05 / 3:35");
  EXPECT_EQ(Status(), "PLAYING");
}

TEST_F(FrmMainWinamp, PositionsOutsideTheRangeOfTheBarAreIgnored) {
  Open();
  PlayerIsAt(50000);
  Tick();
  for (const int ms : {-1, -5000, 216000}) {
    PlayerIsAt(ms);
    Tick();
    EXPECT_EQ(Track().value(), 50) << ms;
  }
}

TEST_F(FrmMainWinamp, TheStatusIsPlayingPausedOrStopped) {
  Open();
  const std::pair<int, const char*> words[] = {{1, "PLAYING"}, {3, "PAUSED"}, {0, "STOPPED"}};
  for (const auto& [status, word] : words) {
    PlayerIsAt(1000, 215, status);
    Tick();
    EXPECT_EQ(Status(), QLatin1String(word));
  }
}

TEST_F(FrmMainWinamp, TheBarFitsTheTrackThatThePlayerHasMovedOnTo) {
  Open();
  PlayerIsAt(1000, 90);
  Tick();
  EXPECT_EQ(Track().maximum(), 90);
  EXPECT_EQ(Times(), "0:01 / 1:30");
  PlayerIsAt(300000, 4000);
  Tick();
  EXPECT_EQ(Track().maximum(), 4000);
  EXPECT_EQ(Track().value(), 300);
  EXPECT_EQ(Times(), "5:00 / 1:06:40");
  for (const int unknown : {-1, -7}) {
    PlayerIsAt(-1, unknown);
    Tick();
    EXPECT_EQ(Track().maximum(), 4000);
    EXPECT_EQ(Track().minimum(), 0);
  }
}

TEST_F(FrmMainWinamp, AShorterTrackDoesNotSeek) {
  Open();
  PlayerIsAt(200000);
  Tick();
  PlayerIsAt(0, 60);
  EXPECT_EQ(Tick(), (Texts{kAskPosition, kAskLength, kAskStatus}));
  EXPECT_EQ(Track().value(), 0);
}

TEST_F(FrmMainWinamp, DraggingThePositionSeeksOnceOnRelease) {
  Open();
  PlayerIsAt(10000);
  Tick();
  const QPoint from = Thumb(Track());
  QTest::mousePress(&Track(), Qt::LeftButton, {}, from);
  QTest::mouseMove(&Track(), from + QPoint(30, 0));
  EXPECT_EQ(link.Take(), Texts{});
  // The timer neither seeks nor moves the bar during the drag.
  const int held = Track().sliderPosition();
  EXPECT_GT(held, 10);
  PlayerIsAt(11000);
  EXPECT_EQ(Tick(), (Texts{kAskPosition, kAskLength, kAskStatus}));
  EXPECT_EQ(Track().sliderPosition(), held);
  EXPECT_EQ(Times(),
            QStringLiteral("%1:%2 / 3:35").arg(held / 60).arg(held % 60, 2, 10, QLatin1Char('0')));
  QTest::mouseRelease(&Track(), Qt::LeftButton, {}, from + QPoint(30, 0));
  EXPECT_EQ(link.Take(), (Texts{kAskLength, "1024 " + std::to_string(held * 1000) + " 106"}));
  PlayerIsAt(held * 1000 + 1000);
  EXPECT_EQ(Tick(), (Texts{kAskPosition, kAskLength, kAskStatus}));
  EXPECT_EQ(Track().value(), held + 1);
}

TEST_F(FrmMainWinamp, ATrackChangeDuringADragDoesNotSeek) {
  Open();
  const QPoint from = Thumb(Track());
  QTest::mousePress(&Track(), Qt::LeftButton, {}, from);
  QTest::mouseMove(&Track(), from + QPoint(30, 0));
  const int held = Track().sliderPosition();
  for (const int length : {216, 60, 215}) {
    PlayerIsAt(0, length);
    EXPECT_EQ(Tick(), (Texts{kAskPosition, kAskLength, kAskStatus})) << length;
    EXPECT_EQ(Track().sliderPosition(), held);
  }
  QTest::mouseRelease(&Track(), Qt::LeftButton, {}, from + QPoint(30, 0));
  EXPECT_EQ(link.Take(), (Texts{kAskLength, "1024 " + std::to_string(held * 1000) + " 106"}));
}

TEST_F(FrmMainWinamp, SongsHandedOverDuringADragDoNotSeek) {
  Open();
  PlayerIsAt(100000);
  Tick();
  const QPoint from = Thumb(Track());
  QTest::mousePress(&Track(), Qt::LeftButton, {}, from);
  QTest::mouseMove(&Track(), from + QPoint(30, 0));
  panel.Play();
  for (const std::string& sent : link.Take()) EXPECT_FALSE(sent.ends_with(" 106")) << sent;
  QTest::mouseRelease(&Track(), Qt::LeftButton, {}, from + QPoint(30, 0));
  EXPECT_EQ(link.Take(), Texts{});
}

TEST_F(FrmMainWinamp, TheTimesAreUpdatedWhenOnlyTheLengthChanges) {
  Open();
  PlayerIsAt(0, 90);
  Tick();
  EXPECT_EQ(Times(), "0:00 / 1:30");
}

TEST_F(FrmMainWinamp, AfterThePlayerDiesTheBarKeepsItsRange) {
  Open();
  PlayerIsAt(0, 0, 0);
  Tick();
  EXPECT_EQ(Track().maximum(), 215);
  EXPECT_EQ(Status(), "STOPPED");
}

TEST_F(FrmMainWinamp, ATrackOfLessThanASecondGivesAnEmptyRange) {
  link.answers[kAskLength] = 0;
  panel.Play();
  EXPECT_EQ(Track().maximum(), 0);
}

TEST_F(FrmMainWinamp, TheTimerSendsNothingWithoutAPlayer) {
  Open();
  link.found = 0;
  panel.Play();
  EXPECT_EQ(messages.Take(), Texts{"Couldn't find WinAMP's Window"});
  EXPECT_EQ(Tick(), Texts{});
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(FrmMainWinamp, TheFirstSuccessfulOpeningResetsTheBars) {
  link.found = 0;
  panel.Play();
  Volume().setValue(10);
  Balance().setValue(10);
  messages.Take();
  link.found = 7;
  link.Take();
  panel.Play();
  EXPECT_EQ(Volume().value(), 128);
  EXPECT_EQ(Balance().value(), 0);
  const Texts sent = link.Take();
  EXPECT_EQ(sent[3], "1024 128 122");
  EXPECT_EQ(sent[4], "1024 0 123");
}

TEST_F(FrmMainWinamp, DraggingTheBalanceSendsIt) {
  Open();
  const QPoint from = Thumb(Balance());
  QTest::mousePress(&Balance(), Qt::LeftButton, {}, from);
  QTest::mouseMove(&Balance(), from - QPoint(15, 0));
  EXPECT_FALSE(link.log.empty());
  for (const std::string& sent : link.log) EXPECT_TRUE(sent.ends_with(" 123")) << sent;
  QTest::mouseRelease(&Balance(), Qt::LeftButton, {}, from - QPoint(15, 0));
}

TEST_F(FrmMainWinamp, AClickBesideTheThumbSeeksToThePlaceOfTheClick) {
  Open();
  const QPoint place(Track().width() * 2 / 3, Track().height() / 2);
  QTest::mousePress(&Track(), Qt::LeftButton, {}, place);
  // The timer does not move the bar while the button is down.
  PlayerIsAt(5000);
  EXPECT_EQ(Tick(), (Texts{kAskPosition, kAskLength, kAskStatus}));
  EXPECT_LE(std::abs(Thumb(Track()).x() - place.x()), 1);
  QTest::mouseRelease(&Track(), Qt::LeftButton, {}, place);
  EXPECT_LE(std::abs(Thumb(Track()).x() - place.x()), 1);
  const int seconds = Track().value();
  EXPECT_EQ(link.Take(), (Texts{kAskLength, "1024 " + std::to_string(seconds) + "000 106"}));
  EXPECT_GT(seconds, 215 / 2);
}

TEST_F(FrmMainWinamp, AClickBesideTheThumbSetsTheVolumeOfThePlace) {
  Open();
  const QPoint place(Volume().width() * 3 / 4, Volume().height() / 2);
  QTest::mouseClick(&Volume(), Qt::LeftButton, {}, place);
  EXPECT_LE(std::abs(Thumb(Volume()).x() - place.x()), 1);
  EXPECT_EQ(link.Take(), Texts{"1024 " + std::to_string(Volume().value()) + " 122"});
  // The thumb follows the pointer from there.
  QTest::mousePress(&Balance(), Qt::LeftButton, {}, place);
  const int pressed = Balance().value();
  QTest::mouseMove(&Balance(), place - QPoint(40, 0));
  EXPECT_LT(Balance().value(), pressed);
  QTest::mouseRelease(&Balance(), Qt::LeftButton, {}, place - QPoint(40, 0));
}

TEST_F(FrmMainWinamp, ADragBackToTheStartDoesNotSeek) {
  Open();
  const QPoint from = Thumb(Track());
  QTest::mousePress(&Track(), Qt::LeftButton, {}, from);
  QTest::mouseMove(&Track(), from + QPoint(30, 0));
  QTest::mouseMove(&Track(), from);
  QTest::mouseRelease(&Track(), Qt::LeftButton, {}, from);
  EXPECT_EQ(link.Take(), Texts{});
  PlayerIsAt(5000);
  EXPECT_EQ(Tick(), (Texts{kAskPosition, kAskLength, kAskStatus}));
  EXPECT_EQ(Track().value(), 5);
}

TEST_F(FrmMainWinamp, KeysOnThePositionBarSeek) {
  Open();
  QTest::keyClick(&Track(), Qt::Key_Right);
  EXPECT_EQ(link.Take(), (Texts{kAskLength, "1024 1000 106"}));
  QTest::keyClick(&Track(), Qt::Key_PageUp);
  EXPECT_EQ(link.Take(), (Texts{kAskLength, "1024 22000 106"}));
  QTest::keyClick(&Track(), Qt::Key_Home);
  EXPECT_EQ(link.Take(), (Texts{kAskLength, "1024 0 106"}));
  // At the end of the bar a key changes nothing, and the timer still moves the bar.
  QTest::keyClick(&Track(), Qt::Key_Left);
  EXPECT_EQ(link.Take(), Texts{});
  PlayerIsAt(5000);
  EXPECT_EQ(Tick(), (Texts{kAskPosition, kAskLength, kAskStatus}));
  EXPECT_EQ(Track().value(), 5);
}

TEST_F(FrmMainWinamp, TheCaptionFollowsThePlayer) {
  Open();
  PlayerIsAt(215000);
  Tick();
  EXPECT_EQ(Button().text(), "&Pause");
  PlayerIsAt(-1, -1, 0);
  Tick();
  EXPECT_EQ(Track().value(), 215);
  EXPECT_EQ(Button().text(), "&Play");
  // The user presses a media key.
  PlayerIsAt(3000, 215, 1);
  Tick();
  EXPECT_EQ(Button().text(), "&Pause");
  PlayerIsAt(3000, 215, 3);
  Tick();
  EXPECT_EQ(Button().text(), "&Play");
  // The player stays stopped after a song that cannot be played.
  PlayerIsAt(-1, -1, 0);
  Tick();
  panel.Play();
  EXPECT_EQ(Button().text(), "&Pause");
  Tick();
  EXPECT_EQ(Button().text(), "&Play");
}

TEST_F(FrmMainWinamp, TheKeysCanCentreTheBalance) {
  Open();
  QTest::keyClick(&Balance(), Qt::Key_End);
  for (int k = 0; k < 127; ++k) QTest::keyClick(&Balance(), Qt::Key_Left);
  EXPECT_EQ(Balance().value(), 0);
}

TEST_F(FrmMainWinamp, ClosingStopsClearsAndClosesThePlayer) {
  Open();
  panel.close();
  EXPECT_EQ(link.Take(), (Texts{"273 40047 0", "1024 0 101", "273 40001 0"}));
  EXPECT_FALSE(Timer().isActive());
}

TEST_F(FrmMainWinamp, WithoutAPlayerEveryOperationShowsAMessage) {
  link.found = 0;
  panel.show();
  panel.Play();
  messages.Take();
  const std::string missing = "WinAMP window not found yet...";
  Click();
  Volume().setValue(3);
  Balance().setValue(3);
  EXPECT_EQ(messages.Take(), (Texts{missing, missing, missing}));
}

TEST_F(FrmMainWinamp, WithoutAPlayerClosingSendsAndShowsNothing) {
  Open();
  link.found = 0;
  panel.Play();
  messages.Take();
  link.Take();
  panel.close();
  EXPECT_EQ(link.Take(), Texts{"find"});
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_FALSE(panel.isVisible());
  EXPECT_FALSE(Timer().isActive());
}

TEST_F(FrmMainWinamp, ClosingClosesAPlayerThatWasStartedLater) {
  Open();
  link.found = 0;
  panel.Play();
  link.Take();
  link.found = 8;
  panel.close();
  EXPECT_EQ(link.Take(), (Texts{"find", "273 40047 0", "1024 0 101", "273 40001 0"}));
}

/// A panel that was opened without a player; the player has been started since.
class AfterAFailedOpening : public FrmMainWinamp {
 protected:
  AfterAFailedOpening() {
    link.found = 0;
    panel.show();
    panel.Play();
    EXPECT_EQ(messages.Take(), Texts{"Couldn't find WinAMP's Window"});
    EXPECT_EQ(panel.windowTitle(), "WinAMP");
    link.Take();
    link.found = 7;
  }
  /// Expects that a command has found the player, sent its message and set up the player.
  void ExpectSetUpBehind(const std::string& sent) {
    EXPECT_EQ(link.Take(),
              (Texts{"find", sent, "1024 0 0", "1024 " + std::to_string(Volume().value()) + " 122",
                     "1024 " + std::to_string(Balance().value()) + " 123"}));
    EXPECT_EQ(panel.windowTitle(), "WinAMP Version# 2.081");
    EXPECT_EQ(messages.Take(), Texts{});
  }
};

TEST_F(AfterAFailedOpening, TheButtonSetsUpThePlayer) {
  Click();
  ExpectSetUpBehind("273 40045 0");
}

TEST_F(AfterAFailedOpening, TheVolumeSetsUpThePlayer) {
  Volume().setValue(40);
  ExpectSetUpBehind("1024 40 122");
  EXPECT_EQ(Volume().value(), 40);
  // The bars keep the values that the user has set.
  panel.Play();
  EXPECT_EQ(Volume().value(), 40);
}

TEST_F(AfterAFailedOpening, TheBalanceSetsUpThePlayer) {
  Balance().setValue(2);
  ExpectSetUpBehind("1024 2 123");
}

TEST_F(FrmMainWinamp, AnotherPlayerIsNamedInTheTitle) {
  link.answers["1024 0 0"] = 0;
  Open();
  EXPECT_EQ(panel.windowTitle(), "WinAMP Version# UNKNOWN");
  // The first player ended immediately; now the next player runs.
  link.answers["1024 0 0"] = 0x2081;
  link.found = 8;
  panel.Play();
  EXPECT_EQ(panel.windowTitle(), "WinAMP Version# 2.081");
}

TEST_F(FrmMainWinamp, APlayerFoundByAMenuCommandIsSetUp) {
  Open();
  Volume().setValue(40);
  link.found = 0;
  panel.Play();
  link.found = 8;
  player.SendWinampCommand(40045);
  const Texts sent = Tick();
  ASSERT_EQ(sent.size(), 6U);
  EXPECT_EQ(sent[0], "1024 0 0");
  EXPECT_EQ(sent[1], "1024 40 122");
  EXPECT_EQ(sent[2], "1024 0 123");
  EXPECT_EQ(Tick().size(), 3U);
}

TEST_F(FrmMainWinamp, TheTimerRunsByItself) {
  Open();
  PlayerIsAt(42000);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Track().value() == 42; }));
}

}  // namespace
}  // namespace tallow

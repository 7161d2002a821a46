// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/player_bar.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include "tests/model_stand_in.h"
#include "ui/player/bar_button.h"
#include "ui/player/cover_view.h"
#include "ui/player/elided_label.h"
#include "ui/player/repeat_button.h"
#include "ui/player/seek_line.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

/// A window with a field to type in, as the list in the frame is, and the bar below it.
class PlayerBarTest : public testing::Test {
 protected:
  PlayerBarTest() {
    model.texts = {{1, "Спокойная ночь - Кино"}, {2, "Lullaby - Queens"}};
    auto* const column = new QVBoxLayout(&window);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(&list);
    column->addWidget(&bar);
    window.resize(1000, 200);
    window.show();
    list.setFocus();
    QCoreApplication::processEvents();
  }
  ~PlayerBarTest() override { QApplication::setPalette(palette_); }

  template <typename Widget>
  Widget& Part(const char* name) {
    return *bar.findChild<Widget*>(QLatin1String(name));
  }
  BarButton& Button(const char* name) { return Part<BarButton>(name); }
  SeekLine& Seek() { return Part<SeekLine>("sldSeek"); }
  ClickedSlider& Volume() { return Part<ClickedSlider>("sldVolume"); }
  ElidedLabel& Song() { return Part<ElidedLabel>("lblSong"); }
  QString Gone() { return Part<QLabel>("lblGone").text(); }
  QString Left() { return Part<QLabel>("lblLeft").text(); }
  static void Click(QWidget& widget) { QTest::mouseClick(&widget, Qt::LeftButton); }
  /// The middle of a slider's handle at a value.
  static QPoint At(const ClickedSlider& slider, int value) {
    return {slider.PlaceOf(value), slider.height() / 2};
  }
  void SetWidth(int width) {
    window.resize(width, 200);
    QCoreApplication::processEvents();
  }
  /// The visible parts that the user sees or uses, without those that hold other parts.
  std::vector<QWidget*> Shown() {
    std::vector<QWidget*> shown;
    for (QWidget* const part : bar.findChildren<QWidget*>())
      if (part->isVisible() && part->window() == &window && part->objectName() != "VolumeControl")
        shown.push_back(part);
    return shown;
  }
  bool IsShown(const char* name) { return Part<QWidget>(name).isVisible(); }

  ModelStandIn model;
  Texts read;  ///< the songs whose covers were read
  std::string cover;
  QWidget window;
  QLineEdit list;
  PlayerBar bar{model, [](std::int32_t song) { return "/songs/" + std::to_string(song); },
                [this](const std::string& path, const std::function<bool()>&) {
                  read.push_back(path);
                  return cover;
                },
                nullptr};

 private:
  const QPalette palette_ = QApplication::palette();
};

TEST_F(PlayerBarTest, ShowsWhatPlays) {
  EXPECT_EQ(Song().text(), "Nothing is playing");
  EXPECT_FALSE(Seek().isEnabled());
  EXPECT_EQ(Gone(), "-:--");
  model.Play(1, 200, 65);
  EXPECT_EQ(Song().text(), "Спокойная ночь - Кино");
  EXPECT_EQ(Song().accessibleName(), "Спокойная ночь - Кино");
  EXPECT_TRUE(Seek().isEnabled());
  EXPECT_EQ(Seek().maximum(), 200);
  EXPECT_EQ(Seek().value(), 65);
  EXPECT_EQ(Gone(), "1:05");
  EXPECT_EQ(Left(), QChar(0x2212) + QStringLiteral("2:15"));
  model.Change([](Playing& now) { now.position = 66; });
  EXPECT_EQ(Gone(), "1:06");
  model.Change([](Playing& now) {
    now = {};
    now.is_running = true;
  });
  EXPECT_EQ(Song().text(), "Nothing is playing");
  EXPECT_EQ(Gone(), "-:--");
}

TEST_F(PlayerBarTest, NamesNoSongWhenTheListIsNotWhatWasHandedOver) {
  model.Play(0, 200, 65);
  EXPECT_EQ(Song().text(), "A song that was not chosen here");
  EXPECT_EQ(Gone(), "1:05");
  EXPECT_TRUE(Seek().isEnabled());
}

TEST_F(PlayerBarTest, ASongOfUnknownLengthCannotBeSought) {
  model.Play(1, -1, 65);
  EXPECT_FALSE(Seek().isEnabled());
  EXPECT_EQ(Gone(), "-:--");
  model.Play(1, 4000, 3601);
  EXPECT_EQ(Gone(), "1:00:01");
}

TEST_F(PlayerBarTest, ElidesALongTextInItsMiddle) {
  model.texts[1] = std::string(300, 'a') + " <b>middle</b> " + std::string(300, 'z');
  model.Play(1, 200);
  QCoreApplication::processEvents();
  EXPECT_TRUE(Song().ShownText().startsWith("aaa"));
  EXPECT_TRUE(Song().ShownText().endsWith("zzz"));
  EXPECT_LE(Song().fontMetrics().horizontalAdvance(Song().ShownText()), Song().width());
  EXPECT_TRUE(Song().toolTip().contains("&lt;b&gt;middle"));
  model.Play(2, 200);
  EXPECT_EQ(Song().toolTip(), "");
  EXPECT_EQ(window.width(), 1000);
}

TEST_F(PlayerBarTest, ControlsThePlayer) {
  model.Play(1, 200);
  Click(Button("cmdPrevious"));
  Click(Button("cmdPlay"));
  Click(Button("cmdNext"));
  Click(Button("cmdShuffle"));
  EXPECT_EQ(model.Take(), (Texts{"previous", "play or pause", "next", "shuffle on"}));
  EXPECT_EQ(list.hasFocus(), QApplication::focusWidget() == &list);
  EXPECT_FALSE(bar.HasFocus());
}

TEST_F(PlayerBarTest, AsksForSongsWhenNothingPlays) {
  QSignalSpy asked(&bar, &PlayerBar::PlayWhileStopped);
  Click(Button("cmdPlay"));
  model.Set({.is_running = true});
  Click(Button("cmdPlay"));
  EXPECT_EQ(asked.size(), 2);
  EXPECT_TRUE(model.Take().empty());
}

TEST_F(PlayerBarTest, FollowsTheStateOfThePlayer) {
  EXPECT_FALSE(Button("cmdPrevious").isEnabled());
  EXPECT_FALSE(Button("cmdNext").isEnabled());
  EXPECT_EQ(Button("cmdPlay").accessibleName(), "Play");
  model.Play(1, 200);
  EXPECT_TRUE(Button("cmdPrevious").isEnabled());
  EXPECT_TRUE(Button("cmdNext").isEnabled());
  EXPECT_EQ(Button("cmdPlay").accessibleName(), "Pause");
  model.Change([](Playing& now) {
    now.status = kPaused;
    now.shuffle = true;
    now.repeat = RepeatMode::kAll;
    now.can_go_next = false;
  });
  EXPECT_EQ(Button("cmdPlay").accessibleName(), "Play");
  EXPECT_EQ(Song().text(), "Спокойная ночь - Кино");
  EXPECT_TRUE(Button("cmdShuffle").isChecked());
  EXPECT_EQ(Button("cmdShuffle").accessibleName(), "Shuffle: on");
  EXPECT_TRUE(Button("cmdRepeat").isChecked());
  EXPECT_EQ(Button("cmdRepeat").accessibleName(), "Repeat: all songs");
  EXPECT_FALSE(Button("cmdNext").isEnabled());
}

TEST_F(PlayerBarTest, AClickSeeksToItsPlace) {
  model.Play(1, 600, 10);
  for (const int seconds : {500, 30, 0, 600}) {
    QTest::mouseClick(&Seek(), Qt::LeftButton, {}, At(Seek(), seconds));
    const Texts sent = model.Take();
    ASSERT_EQ(sent.size(), 1U) << seconds;
    // A pixel is more than a second.
    EXPECT_NEAR(std::atoi(sent[0].substr(5).c_str()), seconds, 2);
  }
  EXPECT_FALSE(bar.HasFocus());
}

TEST_F(PlayerBarTest, ADragSeeksOnceAtItsEnd) {
  model.Play(1, 600, 10);
  QTest::mousePress(&Seek(), Qt::LeftButton, {}, At(Seek(), 100));
  QTest::mouseMove(&Seek(), At(Seek(), 200));
  model.Change([](Playing& now) { now.position = 11; });
  EXPECT_NEAR(Seek().sliderPosition(), 200, 2);
  EXPECT_EQ(Gone(),
            QString::fromStdString(std::to_string(Seek().sliderPosition() / 60)) +
                QStringLiteral(":%1").arg(Seek().sliderPosition() % 60, 2, 10, QLatin1Char('0')));
  QTest::mouseMove(&Seek(), At(Seek(), 300));
  EXPECT_TRUE(model.commands.empty());
  QTest::mouseRelease(&Seek(), Qt::LeftButton, {}, At(Seek(), 300));
  const Texts sent = model.Take();
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_NEAR(std::atoi(sent[0].substr(5).c_str()), 300, 2);
}

TEST_F(PlayerBarTest, ADragEndsWithItsSong) {
  model.Play(1, 600, 10);
  QTest::mousePress(&Seek(), Qt::LeftButton, {}, At(Seek(), 100));
  model.Play(2, 300, 0);
  QTest::mouseMove(&Seek(), At(Seek(), 200));
  QTest::mouseRelease(&Seek(), Qt::LeftButton, {}, At(Seek(), 200));
  EXPECT_TRUE(model.commands.empty());
  EXPECT_EQ(Seek().value(), 0);
  EXPECT_EQ(Seek().maximum(), 300);
}

TEST_F(PlayerBarTest, KeysSeek) {
  model.Play(1, 600, 100);
  for (const auto key : {Qt::Key_Right, Qt::Key_Left, Qt::Key_PageUp, Qt::Key_Home})
    QTest::keyClick(&Seek(), key);
  EXPECT_EQ(model.Take(), (Texts{"seek 105", "seek 100", "seek 130", "seek 0"}));
}

TEST_F(PlayerBarTest, AWheelDoesNotSeek) {
  model.Play(1, 600, 100);
  QWheelEvent turn({20, 5}, Seek().mapToGlobal(QPoint(20, 5)), {}, {0, 120}, Qt::NoButton, {},
                   Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&Seek(), &turn);
  EXPECT_TRUE(model.commands.empty());
}

TEST_F(PlayerBarTest, SetsTheVolume) {
  EXPECT_EQ(Volume().value(), 128);
  EXPECT_EQ(Volume().toolTip(), "Volume: 50 %");
  QTest::mouseClick(&Volume(), Qt::LeftButton, {}, At(Volume(), 255));
  QTest::keyClick(&Volume(), Qt::Key_Left);
  EXPECT_EQ(model.Take(), (Texts{"volume 255", "volume 250"}));
  model.SetVolume(51);
  EXPECT_EQ(Volume().value(), 51);
  EXPECT_EQ(Volume().toolTip(), "Volume: 20 %");
  EXPECT_EQ(model.Take(), Texts{"volume 51"});
}

TEST_F(PlayerBarTest, MutesAndReturnsToTheVolumeBefore) {
  model.SetVolume(51);
  model.Take();
  Click(Button("cmdMute"));
  EXPECT_EQ(Volume().value(), 0);
  EXPECT_TRUE(Button("cmdMute").isChecked());
  EXPECT_EQ(Button("cmdMute").accessibleName(), "Unmute");
  Click(Button("cmdMute"));
  EXPECT_EQ(model.Take(), (Texts{"volume 0", "volume 51"}));
  EXPECT_FALSE(Button("cmdMute").isChecked());
}

TEST_F(PlayerBarTest, ChoosesWhatIsRepeated) {
  const auto& repeat = Part<RepeatButton>("cmdRepeat");
  for (const char* const name : {"mnuRepeatAll", "mnuRepeatOne", "mnuRepeatOff"})
    repeat.menu()->findChild<QAction*>(QLatin1String(name))->trigger();
  EXPECT_EQ(model.Take(), (Texts{"repeat 1", "repeat 2", "repeat 0"}));
  // The stand-in has not changed its state.
  EXPECT_FALSE(repeat.isChecked());
}

TEST_F(PlayerBarTest, GreysWhatThePlayerCannotRepeatAndSaysWhy) {
  model.why_not[PlayerFeature::kRepeatOne] = "Winamp cannot do this.";
  QMenu& menu = *Part<RepeatButton>("cmdRepeat").menu();
  emit menu.aboutToShow();
  const QAction& one = *menu.findChild<QAction*>(QStringLiteral("mnuRepeatOne"));
  EXPECT_FALSE(one.isEnabled());
  EXPECT_EQ(one.toolTip(), "Winamp cannot do this.");
  EXPECT_TRUE(menu.toolTipsVisible());
  EXPECT_TRUE(menu.findChild<QAction*>(QStringLiteral("mnuRepeatAll"))->isEnabled());
  model.why_not.clear();
  emit menu.aboutToShow();
  EXPECT_TRUE(one.isEnabled());
}

TEST_F(PlayerBarTest, ShowsTheCoverOfTheSong) {
  QImage image(60, 60, QImage::Format_RGB32);
  image.fill(Qt::magenta);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  cover = bytes.toStdString();
  auto& view = Part<CoverView>("CoverView");
  EXPECT_EQ(view.accessibleName(), "No cover");
  model.Play(1, 200);
  ASSERT_TRUE(QTest::qWaitFor([&] { return view.HasCover(); }, 20'000));
  EXPECT_EQ(view.accessibleName(), "Cover of the song");
  const QImage seen = view.grab().toImage();
  EXPECT_EQ(seen.pixelColor(seen.width() / 2, seen.height() / 2), QColor(Qt::magenta));
  cover.clear();
  model.Play(2, 200);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !view.HasCover(); }, 20'000));
  model.Change([](Playing& now) { now.position = 5; });
  ASSERT_TRUE(QTest::qWaitFor([&] { return read.size() >= 2; }, 20'000));
  EXPECT_EQ(read, (Texts{"/songs/1", "/songs/2"}));
}

TEST_F(PlayerBarTest, ReadsNoCoverWhileItIsHidden) {
  bar.hide();
  model.Play(1, 200);
  QTest::qWait(50);
  EXPECT_TRUE(read.empty());
  bar.show();
  EXPECT_EQ(Song().text(), "Спокойная ночь - Кино");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !read.empty(); }, 20'000));
}

TEST_F(PlayerBarTest, FitsAtEachWidth) {
  model.texts[1] = std::string(300, 'm');
  model.Play(1, 4000, 3700);
  for (int width = 320; width <= 1920; width += 20) {
    SetWidth(width);
    ASSERT_EQ(bar.width(), width);
    const std::vector<QWidget*> shown = Shown();
    for (QWidget* const part : shown) {
      const QRect place(part->mapTo(&bar, QPoint()), part->size());
      EXPECT_TRUE(bar.rect().contains(place)) << width << part->objectName().toStdString();
      EXPECT_GE(part->width(), std::min(part->minimumSizeHint().width(), part->maximumWidth()))
          << width << part->objectName().toStdString();
      for (QWidget* const other : shown) {
        if (other == part) continue;
        const QRect there(other->mapTo(&bar, QPoint()), other->size());
        EXPECT_FALSE(place.intersects(there))
            << width << part->objectName().toStdString() << other->objectName().toStdString();
      }
    }
  }
}

TEST_F(PlayerBarTest, HidesPartsInTheirOrder) {
  model.Play(1, 600, 10);
  const std::vector<const char*> order{"sldVolume", "CoverView", "lblGone", "cmdShuffle"};
  std::size_t hidden = 0;
  for (int width = 1000; width >= 320; width -= 10) {
    SetWidth(width);
    while (hidden < order.size() && !IsShown(order[hidden])) ++hidden;
    for (std::size_t k = 0; k < order.size(); ++k)
      ASSERT_EQ(IsShown(order[k]), k >= hidden) << width << order[k];
    for (const char* const name : {"cmdPrevious", "cmdPlay", "cmdNext", "sldSeek", "cmdMute"})
      ASSERT_TRUE(IsShown(name)) << width << name;
  }
  EXPECT_GT(hidden, 0U);
  SetWidth(1000);
  for (const char* const name : order) EXPECT_TRUE(IsShown(name)) << name;
}

TEST_F(PlayerBarTest, ShowsAllAt640Pixels) {
  model.Play(1, 600, 10);
  SetWidth(640);
  for (const char* const name : {"sldVolume", "CoverView", "lblGone", "lblLeft", "cmdShuffle",
                                 "cmdRepeat", "cmdMute", "cmdPlay", "sldSeek"})
    EXPECT_TRUE(IsShown(name)) << name;
  EXPECT_GT(Seek().width(), 100);
}

TEST_F(PlayerBarTest, NamesAllPartsForScreenReaders) {
  model.Play(1, 600, 10);
  for (const QWidget* const part : Shown())
    if (part->focusPolicy() != Qt::NoFocus) {
      EXPECT_FALSE(part->accessibleName().isEmpty()) << part->objectName().toStdString();
      EXPECT_EQ(part->focusPolicy(), Qt::TabFocus) << part->objectName().toStdString();
    }
}

TEST_F(PlayerBarTest, IsReachedByTabFromLeftToRight) {
  model.Play(1, 600, 10);
  bar.TakeFocus();
  std::vector<std::string> names;
  for (int k = 0; k < 7; ++k) {
    names.push_back(QApplication::focusWidget()->objectName().toStdString());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(names, (Texts{"cmdPlay", "cmdNext", "sldSeek", "cmdShuffle", "cmdRepeat", "cmdMute",
                          "sldVolume"}));
  bar.TakeFocus();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "cmdPrevious");
}

TEST_F(PlayerBarTest, IsLeftByEsc) {
  QSignalSpy left(&bar, &PlayerBar::Left);
  bar.TakeFocus();
  EXPECT_TRUE(bar.HasFocus());
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(left.size(), 1);
}

/// The greatest difference in lightness between a button's pixels and its corner.
int ContrastOf(BarButton& button) {
  const QImage seen = button.grab().toImage();
  const int ground = seen.pixelColor(1, 1).lightness();
  int most = 0;
  for (int y = 0; y < seen.height(); ++y)
    for (int x = 0; x < seen.width(); ++x)
      most = std::max(most, std::abs(seen.pixelColor(x, y).lightness() - ground));
  return most;
}

TEST_F(PlayerBarTest, IsVisibleOnLightAndDarkGround) {
  model.Play(1, 600, 10);
  for (const QColor& ground : {QColor(0xEF, 0xEF, 0xEF), QColor(0x2A, 0x2A, 0x2E)}) {
    QApplication::setPalette(QPalette(ground));
    QCoreApplication::processEvents();
    for (const char* const name :
         {"cmdPrevious", "cmdPlay", "cmdNext", "cmdShuffle", "cmdRepeat", "cmdMute"})
      EXPECT_GT(ContrastOf(Button(name)), 60) << name << ground.name().toStdString();
  }
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_preferences.h"

#include <algorithm>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QSet>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTest>

#include "app/data_paths.h"
#include "tests/frame_fixture.h"
#include "ui/dialogs/style_page.h"
#include "ui/support/help_page.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class FrmPreferences : public FrameTest {
 protected:
  FrmPreferences() {
    tallow.preferences.Load(path);
    // Without jukeboxes that follow the style.
    tallow.preferences.OnChange({});
  }

  frmPreferences& Open() {
    dialog = std::make_unique<frmPreferences>(
        PreferencesContext{.tallow = tallow,
                           .changed = [this] { ++changes; },
                           .style_chosen = [this] { ++styles_chosen; },
                           .show_places = [this] { calls.emplace_back("places"); },
                           .file_again = [this] { calls.emplace_back("file again"); }});
    dialog->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    return *dialog;
  }
  template <typename Widget>
  Widget& Find(const char* name) {
    return *dialog->findChild<Widget*>(QLatin1String(name));
  }
  QRadioButton& Classic() { return Find<QRadioButton>("optclassic"); }
  QRadioButton& Modern() { return Find<QRadioButton>("optmodern"); }
  QCheckBox& Box(const StyleSwitch& one) {
    return *dialog->findChild<QCheckBox*>(QStringLiteral("chk%1").arg(one.name));
  }
  /// The switches as the check boxes show them.
  Switches Shown() {
    Switches switches;
    for (const StyleSwitch& one : StyleSwitches()) switches.*one.member = Box(one).isChecked();
    return switches;
  }
  QString State() { return Find<QLabel>("lblState").text(); }
  /// The style of the file, as the next start reads it.
  Switches Stored() const {
    Preferences stored;
    stored.Load(path);
    return stored.switches();
  }
  void ExpectAll(const Switches& switches) {
    EXPECT_EQ(Shown(), switches);
    EXPECT_EQ(Classic().isChecked(), switches == kClassicStyle);
    EXPECT_EQ(Modern().isChecked(), switches == kModernStyle);
    EXPECT_EQ(State().startsWith("Neither style"), StyleOf(switches) == Style::kCustom);
    EXPECT_EQ(tallow.preferences.switches(), switches);
    EXPECT_EQ(Stored(), switches);
  }

  const std::string path = PreferencesPath(tallow.application_folder);
  std::unique_ptr<frmPreferences> dialog;
  std::vector<std::string> calls;
  int changes = 0;
  int styles_chosen = 0;
};

TEST_F(FrmPreferences, ShowsTheStyleAndItsSwitches) {
  Open();
  ExpectAll(kClassicStyle);
  EXPECT_FALSE(FileExists(path));
  tallow.preferences.SetStyle(Style::kModern);
  Open();
  ExpectAll(kModernStyle);
  tallow.preferences.SetSwitches({.albums = true});
  Open();
  ExpectAll({.albums = true});
  EXPECT_EQ(changes, 0);
}

TEST_F(FrmPreferences, AStyleSetsAllSwitchesAtOnce) {
  Open();
  Modern().click();
  ExpectAll(kModernStyle);
  Classic().click();
  ExpectAll(kClassicStyle);
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(styles_chosen, 2);
}

TEST_F(FrmPreferences, ASwitchOfItsOwnLeavesBothStylesUnmarked) {
  Open();
  Switches expected;
  for (const StyleSwitch& one : StyleSwitches()) {
    Box(one).click();
    expected.*one.member = true;
    ExpectAll(expected);
  }
  // All switches on are the modern style, and from a choice of the user a style sets all.
  EXPECT_EQ(expected, kModernStyle);
  EXPECT_EQ(styles_chosen, 0);
  Box(StyleSwitches()[0]).click();
  EXPECT_FALSE(Modern().isChecked());
  Modern().click();
  ExpectAll(kModernStyle);
}

TEST_F(FrmPreferences, AClickOnASentenceIsAClickOnItsButton) {
  Open();
  const auto click_sentence_of = [&](const QWidget& button) {
    for (QLabel* const label : dialog->findChildren<QLabel*>())
      if (label->text() == button.accessibleDescription()) QTest::mouseClick(label, Qt::LeftButton);
  };
  click_sentence_of(Modern());
  ExpectAll(kModernStyle);
  click_sentence_of(Box(StyleSwitches()[2]));
  EXPECT_FALSE(Box(StyleSwitches()[2]).isChecked());
  EXPECT_TRUE(Box(StyleSwitches()[2]).hasFocus());
  click_sentence_of(Classic());
  ExpectAll(kClassicStyle);
}

TEST_F(FrmPreferences, AnOverrideIsShownUntilAChoiceReplacesIt) {
  tallow.preferences.OverrideStyle(Style::kModern);
  Open();
  EXPECT_TRUE(Modern().isChecked());
  EXPECT_TRUE(State().contains("command line")) << State().toStdString();
  EXPECT_EQ(Stored(), kClassicStyle);
  Modern().click();
  EXPECT_FALSE(State().contains("command line"));
  ExpectAll(kModernStyle);
}

TEST_F(FrmPreferences, ThePagesAreStyleMusicFilingAndPlayer) {
  Open();
  auto& list = Find<QListWidget>("lstPages");
  QStringList captions;
  for (int row = 0; row < list.count(); ++row) captions.append(list.item(row)->text());
  EXPECT_EQ(captions, (QStringList{"Style", "Music", "Filing", "Player"}))
      << captions.join(' ').toStdString();
  EXPECT_EQ(list.currentRow(), 0);
  EXPECT_TRUE(Classic().isVisible());
  EXPECT_FALSE(Find<QPushButton>("cmdWhere").isVisible());
  list.setCurrentRow(1);
  EXPECT_TRUE(Find<QPushButton>("cmdWhere").isVisible());
  list.setCurrentRow(2);
  EXPECT_TRUE(Find<QPushButton>("cmdFileAgain").isVisible());
  list.setCurrentRow(3);
  EXPECT_TRUE(Find<QCheckBox>("chkMarks").isVisible());
}

TEST_F(FrmPreferences, ThePlacesOpenOverTheDialogAndFilingAgainClosesIt) {
  Open();
  Find<QPushButton>("cmdWhere").click();
  EXPECT_EQ(calls, (std::vector<std::string>{"places"}));
  EXPECT_TRUE(dialog->isVisible());
  Find<QPushButton>("cmdFileAgain").click();
  EXPECT_EQ(calls, (std::vector<std::string>{"places", "file again"}));
  EXPECT_FALSE(dialog->isVisible());
}

TEST_F(FrmPreferences, TabGoesThroughAllControlsInTheirOrder) {
  Open();
  Find<QListWidget>("lstPages").setFocus();
  QStringList order;
  QSet<QWidget*> seen;
  for (QWidget* focus = dialog->focusWidget(); focus != nullptr && !seen.contains(focus);
       focus = dialog->focusWidget()) {
    seen.insert(focus);
    order.append(focus->objectName());
    QTest::keyClick(focus, Qt::Key_Tab);
  }
  QStringList expected = {"lstPages", "optclassic"};
  for (const StyleSwitch& one : StyleSwitches()) expected.append(QStringLiteral("chk") + one.name);
  expected.append("cmdClose");
  EXPECT_EQ(order, expected) << order.join(' ').toStdString();
}

TEST_F(FrmPreferences, TabReachesTheChosenStyleAndArrowsChangeIt) {
  tallow.preferences.SetStyle(Style::kModern);
  Open();
  Find<QListWidget>("lstPages").setFocus();
  QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(dialog->focusWidget(), &Modern());
  ExpectAll(kModernStyle);
  QTest::keyClick(&Modern(), Qt::Key_Space);
  ExpectAll(kModernStyle);
  QTest::keyClick(&Modern(), Qt::Key_Tab);
  EXPECT_EQ(dialog->focusWidget(), &Box(StyleSwitches()[0]));
  QTest::keyClick(dialog->focusWidget(), Qt::Key_Backtab);
  EXPECT_EQ(dialog->focusWidget(), &Modern());
  QTest::keyClick(&Modern(), Qt::Key_Up);
  EXPECT_EQ(dialog->focusWidget(), &Classic());
  ExpectAll(kClassicStyle);
  QTest::keyClick(&Classic(), Qt::Key_Down);
  EXPECT_EQ(dialog->focusWidget(), &Modern());
  ExpectAll(kModernStyle);
}

TEST_F(FrmPreferences, OpensAsTallAsItsPagesButNotTallerThan40Lines) {
  Open();
  auto* const area =
      qobject_cast<QScrollArea*>(dialog->findChild<QStackedWidget*>()->currentWidget());
  const int available = dialog->screen()->availableSize().height() * 9 / 10;
  const int lines = 40 * dialog->fontMetrics().lineSpacing();
  EXPECT_GE(
      area->viewport()->height(),
      std::min({lines, available - 80, area->widget()->heightForWidth(area->viewport()->width())}));
  EXPECT_LE(area->viewport()->height(), lines);
}

TEST_F(FrmPreferences, TheFocusIsAlwaysInView) {
  Open().resize(300, 200);
  auto* const area =
      qobject_cast<QScrollArea*>(dialog->findChild<QStackedWidget*>()->currentWidget());
  ASSERT_NE(area, nullptr);
  for (const StyleSwitch& one : StyleSwitches()) {
    Box(one).setFocus(Qt::ShortcutFocusReason);
    EXPECT_TRUE(area->viewport()->rect().contains(
        Box(one).mapTo(area->viewport(), Box(one).rect().center())))
        << one.name;
  }
}

TEST_F(FrmPreferences, EveryMnemonicIsUniqueAmongThoseThatAreVisible) {
  Open();
  auto& list = Find<QListWidget>("lstPages");
  for (int row = 0; row < list.count(); ++row) {
    list.setCurrentRow(row);
    QSet<QString> keys;
    for (const QAbstractButton* const button : dialog->findChildren<QAbstractButton*>()) {
      if (button->text().isEmpty() || !button->isVisible()) continue;
      const QString key = button->shortcut().toString();
      EXPECT_FALSE(key.isEmpty()) << button->text().toStdString();
      EXPECT_FALSE(keys.contains(key)) << button->text().toStdString();
      keys.insert(key);
    }
    for (const QLabel* const label : dialog->findChildren<QLabel*>()) {
      if (label->buddy() == nullptr || !label->isVisible()) continue;
      const QString key = QKeySequence::mnemonic(label->text()).toString();
      EXPECT_FALSE(key.isEmpty()) << label->text().toStdString();
      EXPECT_FALSE(keys.contains(key)) << label->text().toStdString();
      keys.insert(key);
    }
    EXPECT_TRUE(keys.contains("Alt+P"));
  }
}

TEST_F(FrmPreferences, EnterAndEscCloseAndKeepWhatWasChosen) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
    Open();
    Modern().click();
    QTest::keyClick(&Modern(), key);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(Stored(), kModernStyle);
    tallow.preferences.SetStyle(Style::kClassic);
  }
}

TEST_F(FrmPreferences, NoTextIsCutOffHoweverNarrowTheDialog) {
  Open().resize(1, 1);
  for (const QAbstractButton* const button : dialog->findChildren<QAbstractButton*>()) {
    if (button->text().isEmpty() || !button->isVisible()) continue;
    EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
  }
  for (const QLabel* const label : dialog->findChildren<QLabel*>())
    EXPECT_GE(label->height(), label->heightForWidth(label->width()))
        << label->text().toStdString();
}

TEST_F(FrmPreferences, FitsTheScreen) {
  Open();
  const QSize screen = dialog->screen()->availableSize();
  EXPECT_LT(dialog->width(), screen.width());
  EXPECT_LT(dialog->height(), screen.height());
}

TEST_F(FrmPreferences, FollowsADarkPalette) {
  const QPalette before = QApplication::palette();
  QApplication::setPalette(QPalette(QColor(40, 40, 40)));
  const QImage picture = Open().grab().toImage();
  QApplication::setPalette(before);
  qsizetype dark = 0;
  qsizetype light = 0;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) {
      const int lightness = picture.pixelColor(x, y).lightness();
      dark += lightness < 80 ? 1 : 0;
      light += lightness > 200 ? 1 : 0;
    }
  const qsizetype all = qsizetype{picture.width()} * picture.height();
  EXPECT_GT(dark, all * 7 / 10);
  // The texts.
  EXPECT_GT(light, all / 200);
}

TEST_F(FrmPreferences, TheMenuOpensItAndProblemsAreInTheStatusBar) {
  frame.show();
  // The file cannot be replaced while a folder is in the place of the temporary file.
  CreateFolders(path + ".new");
  bool was_open = false;
  QTimer::singleShot(50, [&] {
    auto* const shown = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(HelpPageOf(shown), "styles");
    shown->findChild<QRadioButton*>(QStringLiteral("optmodern"))->click();
    EXPECT_TRUE(
        frame.statusBar()->currentMessage().startsWith("The preferences could not be saved. "));
    was_open = true;
    shown->reject();
  });
  Item("mnuPreferences").trigger();
  EXPECT_TRUE(was_open);
  EXPECT_EQ(tallow.preferences.style(), Style::kModern);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_find.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QLineEdit>
#include <QProxyStyle>
#include <QPushButton>
#include <QScreen>
#include <QStyleFactory>

#include "tests/jukebox_window_fixture.h"

namespace tallow {
namespace {

class FrmFind : public JukeboxWindowTest {
 protected:
  FrmFind() {
    for (const char* const name : {"Apple.mp3", "banana.mp3", "Pineapple.mp3"})
      AddSong(music.path(), name);
    active = &window;
    dialog.Begin();
    dialog.show();
  }
  void Type(const QString& text) { dialog.findChild<QLineEdit*>("Text1")->setText(text); }
  void Press() { dialog.findChild<QPushButton*>("Command1")->click(); }
  /// Returns "folder song" for the selected row; empty unless exactly one row is selected.
  std::string Found() {
    return Selected().size() != 1
               ? ""
               : Box().selectednode()->Text() + " " +
                     List().model()->index(Selected()[0], 0).data().toString().toStdString();
  }

  frmMain* active = nullptr;
  frmFind dialog{[this] { return active; }, library, messages.Shower()};
};

TEST_F(FrmFind, GoesFromSongToSongThroughTheFolders) {
  AddFolder("one", {2, 1});
  AddFolder("two", {3});
  Show();
  Type("APPLE");
  EXPECT_TRUE(dialog.FirstRun());
  Press();
  EXPECT_EQ(Found(), "one 2.  Apple.mp3");
  EXPECT_FALSE(dialog.FirstRun());
  EXPECT_EQ(dialog.LastLookedFor(), "apple");
  Press();
  EXPECT_EQ(Found(), "two 1.  Pineapple.mp3");
  EXPECT_TRUE(dialog.LookingForTheLastNode());
  EXPECT_EQ(Tree().currentIndex().data().toString(), "two");
}

TEST_F(FrmFind, MissingSongsAreSkippedAndDoNotShiftOtherRows) {
  AddSong("0", "0", "0");
  AddFolder("one", {2});
  // Song 4 is missing; its row is removed only when its folder is shown.
  AddFolder("two", {4, 1, 4, 2, 3, 3});
  Show();
  Type("apple");
  Press();
  EXPECT_EQ(Found(), "two 1.  Apple.mp3");
  Press();
  EXPECT_EQ(Found(), "two 3.  Pineapple.mp3");
  Press();
  EXPECT_EQ(Found(), "two 4.  Pineapple.mp3");
  Press();
  EXPECT_EQ(messages.Take(), Texts{"Can't find 'apple'"});
  Type("0");
  Press();
  EXPECT_EQ(messages.Take(), Texts{"Can't find '0'"});
}

TEST_F(FrmFind, AnUnsuccessfulSearchIsReported) {
  AddFolder("one", {1});
  Show();
  Type("No SUCH");
  Press();
  EXPECT_EQ(messages.Take(), Texts{"Can't find 'No SUCH'"});
  EXPECT_TRUE(dialog.FirstRun());
}

TEST_F(FrmFind, TypingBeginsANewSearch) {
  AddFolder("one", {1, 3});
  Show();
  Type("apple");
  Press();
  Type("app");
  EXPECT_TRUE(dialog.FirstRun());
  Press();
  EXPECT_EQ(Found(), "one 1.  Apple.mp3");
}

TEST_F(FrmFind, EnterAndF3FindAndEscCloses) {
  AddFolder("one", {1, 3, 1});
  Show();
  Type("apple");
  QTest::keyClick(dialog.findChild<QLineEdit*>("Text1"), Qt::Key_Return);
  EXPECT_EQ(Found(), "one 1.  Apple.mp3");
  QTest::keyClick(&dialog, Qt::Key_F3);
  EXPECT_EQ(Found(), "one 2.  Pineapple.mp3");
  QTest::keyClick(&dialog, Qt::Key_Enter);
  EXPECT_EQ(Found(), "one 3.  Apple.mp3");
  QTest::keyClick(&dialog, Qt::Key_Escape);
  EXPECT_FALSE(dialog.isVisible());
  // The dialog still holds the text, selected.
  dialog.Begin();
  EXPECT_EQ(dialog.findChild<QLineEdit*>("Text1")->selectedText(), "apple");
  EXPECT_TRUE(dialog.FirstRun());
}

TEST_F(FrmFind, EnterAndF3FindWhicheverControlHasTheFocus) {
  AddFolder("one", {1, 3});
  Show();
  Type("apple");
  auto* const close = dialog.findChild<QPushButton*>("Command3");
  close->setFocus();
  QTest::keyClick(close, Qt::Key_Return);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(Found(), "one 1.  Apple.mp3");
  QTest::keyClick(close, Qt::Key_F3);
  EXPECT_EQ(Found(), "one 2.  Pineapple.mp3");
}

TEST_F(FrmFind, ItOpensInTheMiddleOfTheScreen) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  EXPECT_LE((dialog.geometry().center() - screen.center()).manhattanLength(), 8);
}

TEST_F(FrmFind, ItMovesAwayFromTheFoundRow) {
  AddFolder("one", {1, 3});
  Show();
  Type("apple");
  Press();
  EXPECT_TRUE(dialog.HasFound());
  const QRect row = active->PVExplorer1().PlaceOfRow(0);
  EXPECT_FALSE(row.isEmpty());
  // Covers the next match, which is one row below.
  dialog.move(active->PVExplorer1().PlaceOfRow(1).topLeft());
  Press();
  EXPECT_FALSE(dialog.frameGeometry().intersects(active->PVExplorer1().PlaceOfRow(1)));
  dialog.Begin();
  EXPECT_FALSE(dialog.HasFound());
}

TEST_F(FrmFind, WithoutAJukeboxOrAFolderItDoesNothing) {
  Type("apple");
  Press();
  active = nullptr;
  Press();
  EXPECT_EQ(messages.Take(), Texts{});
  // The text is remembered nevertheless.
  EXPECT_EQ(dialog.LastLookedFor(), "apple");
  EXPECT_FALSE(dialog.HasFound());
}

/// A style that reports no default button.
class NoDefaultButton : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* more) const override {
    return hint == SH_DialogButtons_DefaultButton
               ? -1
               : QProxyStyle::styleHint(hint, option, widget, more);
  }
};

TEST_F(FrmFind, EnterFindsUnderEveryStyleWhicheverControlHasTheFocus) {
  AddFolder("one", {1, 3});
  Show();
  const QString before = QApplication::style()->name();
  QStringList styles = QStyleFactory::keys();
  styles.append("without a default button");
  for (const QString& style : styles) {
    QApplication::setStyle(QStyleFactory::keys().contains(style)
                               ? QStyleFactory::create(style)
                               : new NoDefaultButton(QStyleFactory::create("Fusion")));
    for (const char* const name : {"Text1", "Command1", "Command3"})
      for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        Type("pine");
        Type("apple");
        auto* const focus = dialog.findChild<QWidget*>(QLatin1String(name));
        focus->setFocus();
        QTest::keyClick(focus, key);
        EXPECT_EQ(Found(), "one 1.  Apple.mp3") << style.toStdString() << " " << name;
        QTest::keyClick(focus, key);
        EXPECT_EQ(Found(), "one 2.  Pineapple.mp3") << style.toStdString() << " " << name;
        EXPECT_TRUE(dialog.isVisible());
        window.PVExplorer1().Select(Nodes().ChildAt(0));
      }
  }
  QApplication::setStyle(before);
}

TEST_F(FrmFind, OnlyTheFindButtonIsADefaultButton) {
  const auto button = [this](const char* name) {
    return dialog.findChild<QPushButton*>(QLatin1String(name));
  };
  EXPECT_TRUE(button("Command1")->isDefault());
  EXPECT_TRUE(button("Command1")->autoDefault());
  EXPECT_FALSE(button("Command3")->isDefault());
  EXPECT_FALSE(button("Command3")->autoDefault());
}

}  // namespace
}  // namespace tallow

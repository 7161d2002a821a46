// SPDX-License-Identifier: GPL-3.0-or-later
// Keyboard, renaming, undo, background picture and size of a jukebox window, tested with the real
// widgets.
#include <gtest/gtest.h>

#include <QContextMenuEvent>
#include <QImage>
#include <QImageWriter>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>

#include "tests/jukebox_window_fixture.h"
#include "ui/jukebox/rank_picture.h"
#include "ui/jukebox/resize_rule.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class Keys : public JukeboxWindowTest {
 protected:
  void Type(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&widget, key, modifiers);
  }
  int CurrentRow() { return List().currentIndex().row(); }
};

TEST_F(Keys, TheKeysOfTheListCutCopyPasteAndDelete) {
  AddSongs(4);
  Folder& one = AddFolder("one", {1, 2, 3, 4});
  Folder& two = AddFolder("two");
  Show();
  SelectRow(0);
  Type(List(), Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(one), (Songs{2, 3, 4}));
  Click("two");
  Type(List(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(two), Songs{1});
  Click("one");
  SelectRow(2);
  Type(List(), Qt::Key_C, Qt::ControlModifier);
  Type(List(), Qt::Key_Delete);
  EXPECT_EQ(SongsOf(one), (Songs{2, 3}));
  Click("two");
  Type(List(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(two), (Songs{1, 4}));
}

TEST_F(Keys, TheKeysOfTheTreeCutCopyPasteAndDelete) {
  AddFolder("one");
  Folder& two = AddFolder("two");
  AddFolder("three");
  Show();
  Type(Tree(), Qt::Key_C, Qt::ControlModifier);
  Click("two");
  Type(Tree(), Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(FoldersIn(&two), Texts{"one"});
  Click("one");
  Type(Tree(), Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(FoldersIn(), (Texts{"two", "three"}));
  Click("three");
  messages.answer = MessageAnswer::kYes;
  Type(Tree(), Qt::Key_Delete);
  EXPECT_EQ(FoldersIn(), Texts{"two"});
}

TEST_F(Keys, CtrlZUndoesAndCtrlShiftZRedoesInBothPanes) {
  AddSongs(3);
  Folder& one = AddFolder("one", {1, 2, 3});
  Show();
  SelectRow(1);
  Type(List(), Qt::Key_Delete);
  Type(List(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  1.mp3", "2.  2.mp3", "3.  3.mp3"}));
  EXPECT_FALSE(Box().IsFormDirty());
  Type(Tree(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(SongsOf(one), (Songs{1, 3}));
  EXPECT_TRUE(Box().IsFormDirty());
  Type(Tree(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(one), (Songs{1, 2, 3}));
  // Ctrl+Y is a key of the player.
  Type(List(), Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(one), (Songs{1, 2, 3}));
}

TEST_F(Keys, UndoShowsTheFolderThatItChanges) {
  AddSongs(3);
  Folder& one = AddFolder("one", {1, 2, 3});
  AddFolder("two");
  Show();
  SelectRow(0);
  Type(List(), Qt::Key_Delete);
  Click("two");
  Type(Tree(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Box().selectednode(), &one);
  EXPECT_EQ(Tree().currentIndex().data().toString(), "one");
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  1.mp3", "2.  2.mp3", "3.  3.mp3"}));
}

TEST_F(Keys, AFolderRestoredByUndoIsExpandedAsBefore) {
  Folder& one = AddFolder("one");
  AddFolder("inner", {}, &one);
  AddFolder("two");
  one.Open(true);
  Show();
  messages.answer = MessageAnswer::kYes;
  Type(Tree(), Qt::Key_Delete);
  Type(Tree(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(Tree().isExpanded(IndexOf(Tree(), "one")));
}

TEST_F(Keys, UndoingASortClearsTheSortMark) {
  AddSongs(3);
  AddFolder("one", {3, 1, 2});
  Show();
  ClickHeader();
  EXPECT_EQ(Header(), "Name    --   ");
  Type(List(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  3.mp3", "2.  1.mp3", "3.  2.mp3"}));
  EXPECT_EQ(Header(), "Name    --        (click to sort)");
  EXPECT_FALSE(Box().IsFormDirty());
}

TEST_F(Keys, F2RenamesAFolder) {
  AddFolder("one");
  Show();
  const auto rename = [&](const QString& text, Qt::Key end) {
    Type(Tree(), Qt::Key_F2);
    auto* const editor = Tree().findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->setText(text);
    Type(*editor, end);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Tree().findChild<QLineEdit*>() == nullptr; }));
  };
  rename("Jazz", Qt::Key_Return);
  EXPECT_EQ(FoldersIn(), Texts{"Jazz"});
  rename("Rock", Qt::Key_Escape);
  EXPECT_EQ(FoldersIn(), Texts{"Jazz"});
  rename("", Qt::Key_Return);
  EXPECT_EQ(FoldersIn(), Texts{"Jazz"});
  Type(Tree(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(FoldersIn(), Texts{"one"});
}

TEST_F(Keys, KeysDuringARenameEditTheText) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  Type(Tree(), Qt::Key_F2);
  auto* const editor = Tree().findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  editor->selectAll();
  Type(*editor, Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(editor->text(), "");
  Type(*editor, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(editor->text(), "one");
  editor->setCursorPosition(3);
  Type(*editor, Qt::Key_Backspace);
  Type(*editor, Qt::Key_Home);
  Type(*editor, Qt::Key_Delete);
  EXPECT_EQ(editor->text(), "n");
  EXPECT_EQ(FoldersIn(), Texts{"one"});
}

TEST_F(Keys, ASpecialFolderIsNotRenamed) {
  AddFolder("Artist");
  Show();
  Type(Tree(), Qt::Key_F2);
  EXPECT_EQ(Tree().findChild<QLineEdit*>(), nullptr);
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Keys, ASlowSecondClickRenames) {
  AddFolder("one");
  Show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  Tree().setFocus();
  const QPoint place = Tree().visualRect(IndexOf(Tree(), "one")).center();
  QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, place);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Tree().findChild<QLineEdit*>() != nullptr; }));
}

TEST_F(Keys, ATextWithInvalidUtf8IsKeptUnlessItIsEdited) {
  Folder& one = AddFolder("caf\xE9");
  Show();
  Type(Tree(), Qt::Key_F2);
  Type(*Tree().findChild<QLineEdit*>(), Qt::Key_Return);
  EXPECT_EQ(one.Text(), "caf\xE9");
  EXPECT_FALSE(Box().IsFormDirty());
}

TEST_F(Keys, TheDeleteKeyOfTheKeypadDeletesToo) {
  AddSongs(2);
  Folder& one = AddFolder("one", {1, 2});
  Show();
  SelectRow(0);
  Type(List(), Qt::Key_Delete, Qt::KeypadModifier);
  EXPECT_EQ(SongsOf(one), Songs{2});
}

TEST_F(Keys, UndoWithNothingToUndoLeavesTheListAlone) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  Show();
  ClickHeader();
  SelectRow(1);
  Type(List(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Box().SortState(), 2);
  EXPECT_EQ(Selected(), std::vector<int>{1});
}

TEST_F(Keys, TheFirstKeyInAListWithoutASelectionSelectsARow) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  Show();
  for (const auto& [key, row] :
       {std::pair(Qt::Key_Home, 0), std::pair(Qt::Key_Down, 0), std::pair(Qt::Key_End, 2)}) {
    List().clearSelection();
    List().setCurrentIndex(QModelIndex());
    Type(List(), key);
    EXPECT_EQ(Selected(), std::vector<int>{row});
  }
}

TEST_F(Keys, AClickInTheEmptyAreaKeepsTheSelection) {
  Folder& one = AddFolder("one");
  Show();
  QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {},
                    QPoint(20, Tree().viewport()->height() - 5));
  EXPECT_EQ(Box().selectednode(), &one);
  EXPECT_TRUE(Tree().selectionModel()->isSelected(IndexOf(Tree(), "one")));
}

TEST_F(Keys, AClickThatMovesTheFocusToTheTreeDoesNotRename) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  List().setFocus();
  Click("one");
  EXPECT_EQ(Tree().editTriggers(), QAbstractItemView::EditKeyPressed);
  // The tree already has the focus, so the next click is a second click.
  Tree().setFocus();
  Click("one");
  EXPECT_TRUE(Tree().editTriggers().testFlag(QAbstractItemView::SelectedClicked));
}

TEST_F(Keys, TheSelectionOfThePaneWithoutTheFocusIsGrey) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  const QPalette colors = List().palette();
  EXPECT_EQ(colors.color(QPalette::Inactive, QPalette::HighlightedText),
            colors.color(QPalette::Active, QPalette::HighlightedText));
  EXPECT_NE(colors.color(QPalette::Inactive, QPalette::Highlight),
            window.palette().color(QPalette::Active, QPalette::Highlight));
  const QColor full = window.palette().color(QPalette::Highlight);
  const auto color = [](const QWidget& view) { return view.palette().color(QPalette::Highlight); };
  List().setFocus();
  EXPECT_TRUE(QTest::qWaitFor([&] { return color(Tree()) != full && color(List()) == full; }));
  Tree().setFocus();
  EXPECT_TRUE(QTest::qWaitFor([&] { return color(Tree()) == full && color(List()) != full; }));
}

TEST_F(Keys, HomeAndEndGoToTheEndsOfTheList) {
  AddSongs(50);
  Songs all(50);
  for (int k = 0; k < 50; ++k) all[static_cast<std::size_t>(k)] = k + 1;
  AddFolder("one", all);
  Show();
  SelectRow(3);
  Type(List(), Qt::Key_End);
  EXPECT_EQ(Selected(), std::vector<int>{49});
  Type(List(), Qt::Key_Home);
  EXPECT_EQ(Selected(), std::vector<int>{0});
  Type(List(), Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(Selected().size(), 50U);
}

TEST_F(Keys, CtrlASelectsAllSongs) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  Show();
  Type(List(), Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(Selected(), (std::vector<int>{0, 1, 2}));
}

TEST_F(Keys, TypingFindsTheNextSongThatBeginsWithTheLetters) {
  for (const char* const name : {"apple.mp3", "Banana.mp3", "beta.mp3", "7 seas.mp3", "Bee.mp3"})
    AddSong(music.path(), name);
  AddFolder("one", {1, 2, 3, 4, 5});
  Show();
  const auto type = [&](const char* letters) {
    // After a pause, typing starts a new search text.
    QApplication::setKeyboardInputInterval(0);
    QTest::qWait(2);
    QTest::keyClick(&List(), letters[0]);
    QApplication::setKeyboardInputInterval(10000);
    for (const char* letter = letters + 1; *letter != 0; ++letter)
      QTest::keyClick(&List(), *letter);
    return CurrentRow();
  };
  EXPECT_EQ(type("be"), 2);
  EXPECT_EQ(type("b"), 4);
  EXPECT_EQ(type("b"), 1);
  EXPECT_EQ(type("bee"), 4);
  EXPECT_EQ(type("7"), 3);
  // No name begins with this digit, but a label does.
  EXPECT_EQ(type("5"), 4);
  EXPECT_EQ(type("zzz"), 4);
  QApplication::setKeyboardInputInterval(400);
}

TEST_F(Keys, TypingInTheTreeFindsAFolder) {
  AddFolder("one");
  AddFolder("two");
  Folder& three = AddFolder("three");
  Show();
  QTest::keyClick(&Tree(), 't');
  QTest::keyClick(&Tree(), 'h');
  EXPECT_EQ(Box().selectednode(), &three);
}

TEST_F(Keys, BackspaceGoesToTheParentFolder) {
  Folder& one = AddFolder("one");
  Folder& inner = AddFolder("inner", {}, &one);
  Show();
  for (QWidget* const pane : {static_cast<QWidget*>(&Tree()), static_cast<QWidget*>(&List())}) {
    window.PVExplorer1().Select(inner);
    Type(*pane, Qt::Key_Backspace);
    EXPECT_EQ(Box().selectednode(), &one);
    Type(*pane, Qt::Key_Backspace);
    EXPECT_EQ(Box().selectednode(), &one);
  }
}

TEST_F(Keys, TabMovesBetweenThePanesAndTheWindowRemembersTheLast) {
  AddFolder("one");
  EXPECT_EQ(window.CurrentPaneWFocus(), 0);
  Show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  Tree().setFocus();
  EXPECT_EQ(window.CurrentPaneWFocus(), 1);
  Type(Tree(), Qt::Key_Tab);
  EXPECT_TRUE(List().hasFocus());
  EXPECT_EQ(window.CurrentPaneWFocus(), 2);
  Type(List(), Qt::Key_Tab, Qt::ShiftModifier);
  EXPECT_EQ(window.CurrentPaneWFocus(), 1);
}

TEST_F(Keys, ShiftF10AndTheMenuKeyOpenThePopUpAtTheSelection) {
  AddSongs(30);
  Songs all(30);
  for (int k = 0; k < 30; ++k) all[static_cast<std::size_t>(k)] = k + 1;
  AddFolder("one", all);
  Show();
  SelectRow(2);
  List().scrollToBottom();
  auto& menu = *window.findChild<QMenu*>(QStringLiteral("ListMenu"));
  Type(List(), Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_TRUE(menu.isVisible());
  const QRect row = List().visualRect(List().model()->index(2, 0));
  EXPECT_TRUE(List().viewport()->rect().contains(row.center()));
  EXPECT_EQ(menu.pos().y(), List().viewport()->mapToGlobal(row.center()).y());
  menu.close();
  QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
  QApplication::sendEvent(&List(), &event);
  EXPECT_TRUE(menu.isVisible());
  EXPECT_EQ(menu.pos().y(), List().viewport()->mapToGlobal(row.center()).y());
  menu.close();
  auto& tree_menu = *window.findChild<QMenu*>(QStringLiteral("TreeMenu"));
  Type(Tree(), Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_TRUE(tree_menu.isVisible());
  tree_menu.close();
}

TEST_F(Keys, AnEditedListKeepsItsScrollPosition) {
  AddSongs(200);
  Songs all(200);
  for (int k = 0; k < 200; ++k) all[static_cast<std::size_t>(k)] = k + 1;
  AddFolder("one", all);
  Show();
  QApplication::processEvents();
  window.PVExplorer1().EnsureVisible(150);
  SelectRow(150);
  const int place = List().verticalScrollBar()->value();
  EXPECT_GT(place, 0);
  Type(List(), Qt::Key_Delete);
  EXPECT_EQ(List().verticalScrollBar()->value(), place);
  EXPECT_EQ(Selected(), std::vector<int>{150});
  EXPECT_EQ(List().model()->index(150, 0).data().toString(), "151.  152.mp3");
}

TEST_F(Keys, ABackgroundPictureIsCentredOrTiled) {
  QImage red(40, 30, QImage::Format_RGB32);
  red.fill(Qt::red);
  const QString path = QString::fromStdString(music / "red.png");
  ASSERT_TRUE(red.save(path));
  AddFolder("one");
  Show();
  const auto color_at = [&](const QPoint& place) {
    return List().viewport()->grab().toImage().pixelColor(place);
  };
  const QColor plain = color_at({5, 5});
  const QPoint middle = List().viewport()->rect().center();
  window.PVExplorer1().SetBackgroundImage("file:\\\\" + path, false);
  EXPECT_EQ(color_at({5, 5}), plain);
  const QColor veiled = color_at(middle);
  EXPECT_NE(veiled, plain);
  // Text must be readable on the picture.
  EXPECT_LT(std::abs(veiled.lightness() - plain.lightness()), 70);
  window.PVExplorer1().SetBackgroundImage("file:\\\\" + path, true);
  EXPECT_EQ(color_at({5, 5}), veiled);
  EXPECT_EQ(color_at(middle), veiled);
  window.PVExplorer1().SetBackgroundImage(QString(), true);
  EXPECT_EQ(color_at(middle), plain);
  window.PVExplorer1().SetBackgroundImage("file:\\\\" + path + "x", true);
  EXPECT_EQ(color_at(middle), plain);
}

TEST_F(Keys, AHugeOrDamagedPictureCausesNoFailure) {
  QImage blue(64, 48, QImage::Format_RGB32);
  blue.fill(Qt::blue);
  const QString path = QString::fromStdString(music / "blue.jpg");
  ASSERT_TRUE(blue.save(path));
  std::string jpeg = *ReadWholeFile(path.toStdString());
  const auto show = [&](const std::string& bytes) {
    const std::string other = music.File("other.jpg", bytes);
    window.PVExplorer1().SetBackgroundImage("file:\\\\" + QString::fromStdString(other), false);
    List().viewport()->grab();
    return List().BackgroundSize();
  };
  EXPECT_EQ(show(jpeg), QSize(64, 48));
  EXPECT_EQ(show("no picture at all"), QSize(0, 0));
  EXPECT_EQ(show(""), QSize(0, 0));
  for (std::size_t length = 1; length < jpeg.size(); length += 37) show(jpeg.substr(0, length));
  // The frame header, FF C0, has the height and the width at byte offset 5, 2 bytes each: 20,000.
  const std::size_t frame = jpeg.find("\xFF\xC0");
  ASSERT_NE(frame, std::string::npos);
  jpeg.replace(frame + 5, 4, "\x4E\x20\x4E\x20");
  const QSize huge = show(jpeg);
  EXPECT_LE(huge.width(), 2560);
  EXPECT_LE(huge.height(), 2560);
}

TEST_F(Keys, AHugeProgressivePictureIsNotRead) {
  const auto show = [&](int side) {
    QImage gray(side, side, QImage::Format_Grayscale8);
    gray.fill(Qt::gray);
    const QString path = QString::fromStdString(music / "progressive.jpg");
    // The memory limit for reading would also limit writing.
    qunsetenv("JPEGMEM");
    QImageWriter writer(path);
    writer.setProgressiveScanWrite(true);
    EXPECT_TRUE(writer.write(gray));
    EXPECT_NE(ReadWholeFile(path.toStdString())->find("\xFF\xC2"), std::string::npos);
    window.PVExplorer1().SetBackgroundImage("file:\\\\" + path, false);
    return List().BackgroundSize();
  };
  EXPECT_EQ(show(3000), QSize(2560, 2560));
  // libjpeg would have to keep two bytes per pixel until the end.
  EXPECT_EQ(show(12000), QSize(0, 0));
}

TEST_F(Keys, ANewWindowShowsTheStoredPicture) {
  QImage red(40, 30, QImage::Format_RGB32);
  red.fill(Qt::red);
  ASSERT_TRUE(red.save(QString::fromStdString(music / "red.jpg")));
  tallow.settings.PictureLocation(music / "red.jpg");
  const auto has_picture = [&] {
    frmMain other(tallow);
    return ListOf(other).HasBackgroundImage();
  };
  EXPECT_FALSE(has_picture());
  tallow.settings.IsThereAPicture(true);
  EXPECT_TRUE(has_picture());
  tallow.settings.PictureLocation(music / "gone.jpg");
  EXPECT_FALSE(has_picture());
}

TEST_F(Keys, EachRowShowsTheRankIconOfItsEntry) {
  AddSongs(1);
  Folder& one = AddFolder("one", {1});
  Show();
  one.Items()[0].Icon(6);
  const QModelIndex index = List().model()->index(0, 0);
  EXPECT_EQ(index.data(Qt::AccessibleTextRole).toString(), "1.  1.mp3, rank 6 of 7");
  EXPECT_EQ(index.data(Qt::ToolTipRole).toString(), "1.  1.mp3\nRank 6 of 7");
  EXPECT_EQ(index.data(Qt::DecorationRole).value<QIcon>().pixmap(16).toImage(),
            RankPicture(6).pixmap(16).toImage());
  // Numbers without an icon show none and are not read by screen readers.
  one.Items()[0].Icon(200);
  EXPECT_TRUE(index.data(Qt::DecorationRole).value<QIcon>().isNull());
  EXPECT_EQ(index.data(Qt::AccessibleTextRole).toString(), "1.  1.mp3");
}

TEST_F(Keys, RankPicturesDifferInShapeAtEverySize) {
  for (const int size : {16, 24, 32, 64}) {
    QList<QImage> forms;
    for (int rank = kMinRankPicture; rank <= kBestRankPicture; ++rank) {
      const QImage picture = RankPicture(rank).pixmap(size).toImage();
      EXPECT_EQ(picture.size(), QSize(size, size));
      // The shape without the colours.
      const QImage form = picture.createAlphaMask();
      for (const QImage& other : forms) EXPECT_NE(form, other);
      forms.append(form);
    }
  }
  EXPECT_TRUE(RankPicture(1).isNull());
  EXPECT_TRUE(RankPicture(8).isNull());
  EXPECT_EQ(RankPictureText(8), "");
}

TEST_F(Keys, TheControlFollowsTheSizeOfTheWindow) {
  // 40 pixels are 600 twips.
  EXPECT_EQ(ControlExtent(40, 77, kMoreWidth), 77);
  EXPECT_EQ(ControlExtent(41, 77, kMoreWidth), 44);
  EXPECT_EQ(ControlExtent(100, 77, kMoreWidth), 103);
  EXPECT_EQ(ControlExtent(40, 77, kMoreHeight), 77);
  EXPECT_EQ(ControlExtent(41, 77, kMoreHeight), 16);
  EXPECT_EQ(ControlExtent(100, 77, kMoreHeight), 75);
  Show();
  const PVExplorer& control = window.PVExplorer1();
  window.resize(500, 400);
  EXPECT_EQ(control.pos(), QPoint(0, 0));
  EXPECT_EQ(control.size(), QSize(503, 375));
  window.resize(41, 400);
  EXPECT_EQ(control.size(), QSize(44, 375));
  window.resize(40, 300);
  EXPECT_EQ(control.size(), QSize(44, 275));
  window.resize(30, 40);
  EXPECT_EQ(control.size(), QSize(44, 275));
}

TEST_F(Keys, ThePartOfTheControlOutsideTheWindowStaysEmpty) {
  AddFolder("one");
  Show();
  window.resize(500, 400);
  const QPoint corner = List().mapTo(&window, List().rect().bottomRight());
  EXPECT_TRUE(window.rect().contains(corner));
}

TEST_F(Keys, WithoutMoreCommandsTheirKeysDoNothing) {
  AddSongs(2);
  const Folder& one = AddFolder("one", {1, 2});
  Show();
  SelectRow(0);
  for (const Qt::Key key : {Qt::Key_7, Qt::Key_3, Qt::Key_0})
    Type(List(), key, Qt::ControlModifier);
  Type(List(), Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(library.Mp3Info(kSongRank, 1), "2");
  EXPECT_EQ(SongsOf(one), (Songs{1, 2}));
  EXPECT_FALSE(Box().History().CanUndo());
  int shown = 0;
  QObject::connect(&window, &frmMain::ShowProperties, [&shown] { ++shown; });
  Type(List(), Qt::Key_Return, Qt::AltModifier);
  Type(Tree(), Qt::Key_Return, Qt::AltModifier);
  EXPECT_EQ(shown, 0);
  UseMoreCommands();
  Type(List(), Qt::Key_Return, Qt::AltModifier);
  Type(Tree(), Qt::Key_Return, Qt::AltModifier);
  EXPECT_EQ(shown, 2);
}

TEST_F(Keys, CtrlAndADigitRankTheSelectedSongs) {
  UseMoreCommands();
  AddSongs(2);
  AddFolder("one", {1, 2});
  Show();
  SelectRow(0);
  const std::pair<Qt::Key, const char*> keys[] = {{Qt::Key_7, "7"}, {Qt::Key_6, "6"},
                                                  {Qt::Key_5, "5"}, {Qt::Key_4, "4"},
                                                  {Qt::Key_3, "3"}, {Qt::Key_0, "2"}};
  for (const auto& [key, rank] : keys) {
    Type(List(), key, Qt::ControlModifier);
    EXPECT_EQ(library.Mp3Info(kSongRank, 1), rank);
    EXPECT_EQ(std::to_string(Box().selectednode()->Items()[0].Icon()), rank);
  }
  Type(List(), Qt::Key_7, Qt::ControlModifier | Qt::KeypadModifier);
  EXPECT_EQ(library.Mp3Info(kSongRank, 1), "7");
  // Without Ctrl and for other digits, and in the tree, nothing is ranked.
  Type(List(), Qt::Key_5);
  for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_8, Qt::Key_9})
    Type(List(), key, Qt::ControlModifier);
  Type(Tree(), Qt::Key_5, Qt::ControlModifier);
  SelectRow(0);
  EXPECT_EQ(library.Mp3Info(kSongRank, 1), "7");
  EXPECT_EQ(library.Mp3Info(kSongRank, 2), "2");
  for (int step = 0; step < 7; ++step) Type(List(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(library.Mp3Info(kSongRank, 1), "2");
}

TEST_F(Keys, DigitsThatNeedShiftRankToo) {
  UseMoreCommands();
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  SelectRow(0);
  Type(List(), Qt::Key_6, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(library.Mp3Info(kSongRank, 1), "6");
  // On other keyboards this is Ctrl+Shift+7.
  Type(List(), Qt::Key_Ampersand, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(library.Mp3Info(kSongRank, 1), "6");
}

TEST_F(Keys, TheRankMenuShowsItsKeys) {
  QStringList keys;
  for (const QAction* const item :
       window.findChild<QMenu*>(QStringLiteral("RankMenu"))->actions()) {
    keys.append(item->shortcut().toString());
    EXPECT_EQ(item->shortcutContext(), Qt::WidgetShortcut);
  }
  EXPECT_EQ(keys, (QStringList{"Ctrl+7", "Ctrl+6", "Ctrl+5", "Ctrl+4", "Ctrl+3", "", "Ctrl+0"}));
}

TEST_F(Keys, AltUpAndAltDownMoveTheSelection) {
  UseMoreCommands();
  AddSongs(5);
  Folder& one = AddFolder("one", {1, 2, 3, 4, 5});
  Show();
  SelectRow(1);
  SelectRow(3, Qt::ControlModifier);
  Type(List(), Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(SongsOf(one), (Songs{2, 1, 4, 3, 5}));
  EXPECT_EQ(Selected(), (std::vector<int>{0, 2}));
  EXPECT_EQ(CurrentRow(), 2);
  // The first of them is at the top.
  Type(List(), Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(SongsOf(one), (Songs{2, 1, 4, 3, 5}));
  Type(List(), Qt::Key_Down, Qt::AltModifier);
  Type(List(), Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(SongsOf(one), (Songs{1, 3, 2, 5, 4}));
  EXPECT_EQ(Selected(), (std::vector<int>{2, 4}));
  Type(List(), Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(SongsOf(one), (Songs{1, 3, 2, 5, 4}));
  EXPECT_EQ(Box().History().NameToUndo(), "Move 2 Songs");
  for (int step = 0; step < 3; ++step) Type(List(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(one), (Songs{1, 2, 3, 4, 5}));
  EXPECT_EQ(Selected(), (std::vector<int>{1, 3}));
  EXPECT_FALSE(Box().History().CanUndo());
}

TEST_F(Keys, AMovedSongStaysInViewAndClearsTheSortMark) {
  UseMoreCommands();
  constexpr int kSongs = 100;
  AddSongs(kSongs);
  Folder& one = AddFolder("one");
  for (int song = kSongs; song > 0; --song) one.Items().emplace_back(song, 2);
  Show();
  ClickHeader();
  EXPECT_EQ(Header(), "Name    --   ");
  SelectRow(0);
  for (int step = 0; step < 60; ++step) Type(List(), Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(Selected(), std::vector<int>{60});
  EXPECT_TRUE(
      List().viewport()->rect().contains(List().visualRect(List().model()->index(60, 0)).center()));
  EXPECT_EQ(Header(), QString::fromLatin1(kNameHeader));
}

TEST_F(Keys, SongsThatAreNotShownKeepTheirPlacesWhenOthersMove) {
  UseMoreCommands();
  AddSongs(4);
  Folder& one = AddFolder("one", {1, 2, 3, 4});
  // A song whose file is missing, and that the folder remembers, has a negative number.
  one.Items()[1].SubItem(clsMain::kFirstPlaceholder);
  Show();
  ASSERT_EQ(RowsOf(List()).size(), 3);
  SelectRow(0);
  Type(List(), Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(SongsOf(one), (Songs{3, clsMain::kFirstPlaceholder, 1, 4}));
  EXPECT_EQ(Selected(), std::vector<int>{2});
  Type(List(), Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(SongsOf(one), (Songs{1, clsMain::kFirstPlaceholder, 3, 4}));
}

}  // namespace
}  // namespace tallow

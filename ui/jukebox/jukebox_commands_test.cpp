// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of both pop-up menus, run through the real widgets.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QAction>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>

#include "app/columns/list_column.h"
#include "jukebox/sorting.h"
#include "tests/jukebox_window_fixture.h"
#include "ui/jukebox/rank_picture.h"
#include "ui/support/display_text.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class Commands : public JukeboxWindowTest {
 protected:
  QMenu& Menu(const char* name) { return *window.findChild<QMenu*>(QLatin1String(name)); }
  /// The commands of the items that a menu and its menus show; a menu itself may have none.
  static QList<int> ShownIn(const QMenu& menu) {
    QList<int> commands;
    for (const QAction* const action : menu.actions()) {
      if (!action->isVisible() || action->isSeparator()) continue;
      if (const int command = action->data().toInt(); command != 0) commands.append(command);
      // The items of the columns are not commands.
      if (action->menu() != nullptr && action->data().toInt() == 0)
        commands += ShownIn(*action->menu());
    }
    return commands;
  }
  /// Returns a menu's items as "caption command"; the items of a submenu follow its item.
  static QStringList ItemsOf(const QMenu& menu) {
    QStringList items;
    for (const QAction* const action : menu.actions()) {
      if (action->isSeparator()) {
        items.append(QStringLiteral("-"));
      } else if (action->menu() != nullptr) {
        items.append(action->text() + QStringLiteral(" >"));
        for (const QString& item : ItemsOf(*action->menu()))
          items.append(QStringLiteral("> ") + item);
      } else {
        items.append(action->text() + QStringLiteral(" ") + action->data().toString());
      }
    }
    return items;
  }
  static QAction& Item(QMenu& menu, int command) {
    for (QAction* const action : menu.actions()) {
      if (action->menu() != nullptr)
        for (QAction* const inner : action->menu()->actions())
          if (inner->data().toInt() == command) return *inner;
      if (action->data().toInt() == command) return *action;
    }
    throw std::out_of_range("no such item");
  }
  std::string Rank(int record) { return std::string(library.Mp3Info(5, record)); }
  int Picture(int row) {
    return Box().selectednode()->Items()[static_cast<std::size_t>(row)].Icon();
  }
};

TEST_F(Commands, TheListsMenuHasItsItemsInTheirOrder) {
  QStringList columns{"Colu&mns >"};
  for (int column = 0; column < kListColumns; ++column)
    columns.append(QStringLiteral("> %1 %2").arg(DisplayText(TitleOf(ListColumn(column))),
                                                 DisplayText(IdOf(ListColumn(column)))));
  columns +=
      {"> -", "> &Sort By >", "> Move &Left >", "> Move Ri&ght >", "> -", "> &Reset Columns "};
  EXPECT_EQ(ItemsOf(Menu("ListMenu")), (QStringList{"Play All Songs in Folder 1",
                                                    "Play Selected Songs 2",
                                                    "-",
                                                    "Cu&t 4",
                                                    "&Copy 5",
                                                    "&Paste 6",
                                                    "&Delete 7",
                                                    "&Rank >",
                                                    "> Rank it - Best 8",
                                                    ">  9",
                                                    ">  10",
                                                    ">  11",
                                                    ">  12",
                                                    "> .  .  .   to worst 13",
                                                    "> No Rank 18",
                                                    "Change Background Picture . . . 14",
                                                    "-",
                                                    "Play &From Here 15",
                                                    "Play &Next 16",
                                                    "&Add To Queue 17",
                                                    "&Show In Folder 19"} +
                                        columns + QStringList{"Pr&operties... 20"}));
}

TEST_F(Commands, TheTreesMenuHasItsItemsInTheirOrder) {
  EXPECT_EQ(
      ItemsOf(Menu("TreeMenu")),
      (QStringList{"New Folder >", "> Add Folder to Selected Folder 4", "> Add Folder to Root 5",
                   "Cu&t 6", "&Copy 7", "&Paste 8", "&Delete 9", "Sort Nodes 10", "Move To Root 11",
                   "Rena&me 13", "-", "Play &All Songs in Folder 14", "Play &Next 15",
                   "Add To &Queue 16", "Pr&operties... 17"}));
}

TEST_F(Commands, ThePopUpMenusShowMoreCommandsOnlyWithTheirSwitch) {
  const QList<int> list{1, 2, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17};
  const QList<int> tree{4, 5, 6, 7, 8, 9, 10, 11};
  AddFolder("one");
  Show();
  const auto open = [&] {
    for (QWidget* const view : {List().viewport(), Tree().viewport()}) {
      QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(9, 9),
                              view->mapToGlobal(QPoint(9, 9)));
      QApplication::sendEvent(view, &event);
    }
    Menu("TreeMenu").close();
    Menu("ListMenu").close();
  };
  open();
  EXPECT_EQ(ShownIn(Menu("ListMenu")), list);
  EXPECT_EQ(ShownIn(Menu("TreeMenu")), tree);
  UseMoreCommands();
  open();
  QList<int> more = list;
  more.insert(12, 18);
  EXPECT_EQ(ShownIn(Menu("ListMenu")), more + QList<int>({21, 20}));
  EXPECT_EQ(ShownIn(Menu("TreeMenu")), tree + QList<int>({13, 14, 15, 16, 17}));
}

TEST_F(Commands, EachRankItemShowsThePictureOfItsRank) {
  for (int command = 8; command <= 13; ++command) {
    const QAction& item = Item(Menu("ListMenu"), command);
    const int rank = 15 - command;
    EXPECT_EQ(item.icon().pixmap(16).toImage(), RankPicture(rank).pixmap(16).toImage());
    // The tooltip tells the rank that is stored.
    EXPECT_EQ(item.toolTip(), QStringLiteral("rank %1 of 7").arg(std::max(rank, 3)));
    EXPECT_TRUE(item.isIconVisibleInMenu());
  }
  EXPECT_EQ(Item(Menu("ListMenu"), 18).toolTip(), "not ranked");
}

TEST_F(Commands, AScreenReaderReadsTheRankOfAnItemWithoutAText) {
  QMenu& ranks = Menu("RankMenu");
  QAccessibleInterface* const menu = QAccessible::queryAccessibleInterface(&ranks);
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->childCount(), 7);
  QStringList names;
  for (int k = 0; k < 7; ++k) names.append(menu->child(k)->text(QAccessible::Name));
  EXPECT_EQ(names,
            (QStringList{"Rank it - Best, rank 7 of 7", "rank 6 of 7", "rank 5 of 7", "rank 4 of 7",
                         "rank 3 of 7", ".  .  .   to worst, rank 3 of 7", "No Rank, not ranked"}));
  EXPECT_EQ(menu->child(1)->role(), QAccessible::MenuItem);
  EXPECT_TRUE(menu->child(1)->isValid());
}

TEST_F(Commands, TheSixRankItemsStoreTheirRanks) {
  AddSongs(2);
  AddFolder("one", {1, 2});
  Show();
  SelectRow(0);
  const std::pair<const char*, int> expected[] = {{"7", 7}, {"6", 6}, {"5", 5},
                                                  {"4", 4}, {"3", 3}, {"3", 2}};
  for (int command = 8; command <= 13; ++command) {
    Item(Menu("ListMenu"), command).trigger();
    EXPECT_EQ(Rank(1), expected[command - 8].first);
    EXPECT_EQ(Picture(0), expected[command - 8].second);
    EXPECT_EQ(Rank(2), "2");
  }
  EXPECT_FALSE(Box().IsFormDirty());
}

TEST_F(Commands, RankedToWorstShowsAPictureTwoUntilTheFolderIsShownAgain) {
  AddSongs(1);
  AddFolder("one", {1});
  AddFolder("two");
  Show();
  SelectRow(0);
  window.ActOnPopUpClick(13, 2, Box().selectednode());
  const auto shown = [&] {
    return List().model()->index(0, 0).data(Qt::AccessibleTextRole).toString();
  };
  EXPECT_EQ(Rank(1), "3");
  EXPECT_EQ(shown(), "1.  1.mp3, not ranked");
  Click("two");
  Click("one");
  EXPECT_EQ(shown(), "1.  1.mp3, rank 3 of 7");
}

TEST_F(Commands, RankingWritesAllSelectedSongsAndSavesTheLibrary) {
  AddSongs(4);
  AddFolder("one", {4, 3, 2, 1});
  Show();
  SelectRow(0);
  SelectRow(2, Qt::ControlModifier);
  window.ActOnPopUpClick(8, 2, Box().selectednode());
  EXPECT_EQ(Cells(5), (Texts{"2", "7", "2", "7"}));
  Tallow again(application.path());
  again.settings.GetandLoadIniInfo(again.settings_path);
  ASSERT_TRUE(again.library.LoadMain());
  EXPECT_EQ(again.library.Mp3Info(5, 4), "7");
  // The selection is unchanged.
  EXPECT_EQ(Selected(), (std::vector<int>{0, 2}));
}

TEST_F(Commands, AFailureToSaveRanksIsReported) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  SelectRow(0);
  // A folder at the path of the file makes writing fail.
  CreateFolder(LibraryPath());
  CreateFolder(LibraryPath() + kSep + "x");
  window.ActOnPopUpClick(8, 2, Box().selectednode());
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_TRUE(messages.shown[0].text.starts_with("The ranks could not be saved. " + LibraryPath()))
      << messages.shown[0].text;
  EXPECT_TRUE(messages.shown[0].text.ends_with(
      "\n\nThe ranks are kept until you close Tallow, and are saved together with the next "
      "successful change."));
  EXPECT_EQ(Rank(1), "7");
}

TEST_F(Commands, DeletingSongsPutsThemOnTheClipboardLikeCutting) {
  AddSongs(4);
  Folder& one = AddFolder("one", {1, 2, 3, 4});
  Folder& two = AddFolder("two");
  Show();
  for (const int command : {4, 7}) {
    SelectRow(1);
    window.ActOnPopUpClick(command, 2, &one);
    EXPECT_EQ(Selected(), std::vector<int>{1});
    window.ActOnPopUpClick(6, 2, &two);
  }
  EXPECT_EQ(SongsOf(one), (Songs{1, 4}));
  EXPECT_EQ(SongsOf(two), (Songs{2, 3}));
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  1.mp3", "2.  4.mp3"}));
  EXPECT_EQ(Selected(), std::vector<int>{1});
  EXPECT_TRUE(Box().IsFormDirty());
}

TEST_F(Commands, CopiedSongsArePastedAtTheEnd) {
  AddSongs(3);
  Folder& one = AddFolder("one", {1, 2, 3});
  Folder& two = AddFolder("two", {3});
  Show();
  SelectRow(0);
  SelectRow(2, Qt::ShiftModifier);
  window.ActOnPopUpClick(5, 2, &one);
  EXPECT_FALSE(Box().IsFormDirty());
  Click("two");
  window.ActOnPopUpClick(6, 2, &two);
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  3.mp3", "2.  1.mp3", "3.  2.mp3"}));
  EXPECT_EQ(Selected(), (std::vector<int>{1, 2}));
}

TEST_F(Commands, SongsCannotBeCutFromAllSongs) {
  AddSongs(2);
  Folder& all = AddFolder("All Songs", {1, 2});
  Folder& two = AddFolder("two", {1});
  Show();
  SelectRow(0);
  for (const int command : {4, 7}) {
    window.ActOnPopUpClick(command, 2, &all);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].buttons, MessageButtons::kOk);
    EXPECT_EQ(messages.Take(),
              Texts{"Can not cut a song from 'All Songs.'  You can copy a song if you wish."});
  }
  EXPECT_EQ(SongsOf(all), (Songs{1, 2}));
  // A folder with this name below another folder is an ordinary folder.
  Folder& inner = AddFolder("All Songs", {1}, &two);
  window.PVExplorer1().Select(inner);
  SelectRow(0);
  window.ActOnPopUpClick(4, 2, &inner);
  EXPECT_EQ(SongsOf(inner), Songs{});
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(Commands, CuttingWithoutASelectionDoesNothing) {
  AddSongs(1);
  Folder& all = AddFolder("All Songs", {1});
  Show();
  window.ActOnPopUpClick(4, 2, &all);
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(Commands, OnlyTheFolderOnShowHasSelectedSongs) {
  AddSongs(2);
  AddFolder("one", {1, 2});
  Folder& two = AddFolder("two", {1, 2});
  Show();
  SelectRow(0);
  for (const int command : {4, 7, 8, 13}) window.ActOnPopUpClick(command, 2, &two);
  EXPECT_EQ(SongsOf(two), (Songs{1, 2}));
  EXPECT_EQ(Cells(5), (Texts{"2", "2"}));
}

TEST_F(Commands, ANewFolderIsAddedToTheSelectedFolderOrTheRootAndIsRenamed) {
  Folder& one = AddFolder("one");
  Show();
  window.ActOnPopUpClick(4, 1, &one);
  EXPECT_EQ(FoldersIn(&one), Texts{"New Folder"});
  EXPECT_EQ(Box().selectednode(), &one.ChildAt(0));
  auto* const editor = Tree().findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(editor->text(), "New Folder");
  editor->setText("Jazz");
  QTest::keyClick(editor, Qt::Key_Return);
  EXPECT_TRUE(QTest::qWaitFor([&] { return FoldersIn(&one) == Texts{"Jazz"}; }));
  window.ActOnPopUpClick(5, 1, &one);
  EXPECT_EQ(FoldersIn(), (Texts{"one", "New Folder"}));
  // Without a folder, both commands add to the root.
  window.ActOnPopUpClick(4, 1, nullptr);
  window.ActOnPopUpClick(5, 1, nullptr);
  EXPECT_EQ(FoldersIn(), (Texts{"one", "New Folder", "New Folder"}));
}

TEST_F(Commands, ANewFolderBelowTheMaximumDepthIsReported) {
  Folder* folder = nullptr;
  for (int level = 0; level <= kMaxLevel; ++level) folder = &AddFolder("x", {}, folder);
  Show();
  window.ActOnPopUpClick(4, 1, folder);
  EXPECT_EQ(problems,
            QStringList{"Folders can be nested at most 1000 levels deep. Choose a higher folder."});
}

TEST_F(Commands, FoldersAreCutCopiedAndPasted) {
  AddSongs(1);
  Folder& one = AddFolder("one", {1});
  Folder& two = AddFolder("two");
  Show();
  window.ActOnPopUpClick(7, 1, &one);
  window.ActOnPopUpClick(8, 1, &two);
  EXPECT_EQ(FoldersIn(&two), Texts{"one"});
  window.ActOnPopUpClick(6, 1, &one);
  EXPECT_EQ(FoldersIn(), Texts{"two"});
  EXPECT_EQ(Box().selectednode(), &two);
  window.ActOnPopUpClick(8, 1, nullptr);
  EXPECT_EQ(FoldersIn(), (Texts{"two", "one"}));
  EXPECT_EQ(SongsOf(Nodes().ChildAt(1)), Songs{1});
}

TEST_F(Commands, SongsCanBePastedFromTheTreeAndFoldersFromTheList) {
  AddSongs(2);
  Folder& one = AddFolder("one", {1, 2});
  Folder& two = AddFolder("two");
  Show();
  SelectRow(1);
  window.ActOnPopUpClick(5, 2, &one);
  window.ActOnPopUpClick(8, 1, &two);
  EXPECT_EQ(SongsOf(two), Songs{2});
  window.ActOnPopUpClick(7, 1, &one);
  window.ActOnPopUpClick(6, 2, &two);
  EXPECT_EQ(FoldersIn(&two), Texts{"one"});
}

TEST_F(Commands, ASpecialFolderIsNotCut) {
  Folder& artist = AddFolder("Artist");
  Folder& decades = AddFolder("Decades");
  Folder& eighties = AddFolder("80's", {}, &decades);
  Show();
  for (Folder* const folder : {&artist, &eighties}) {
    window.ActOnPopUpClick(6, 1, folder);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].buttons, MessageButtons::kOk);
    EXPECT_EQ(messages.Take(),
              Texts{"This is a special node that can not be cut.  It can be copied if you wish."});
  }
  EXPECT_EQ(Nodes().Count(), 3);
  // A copy of the folder below another folder is an ordinary folder.
  Folder& mine = AddFolder("mine");
  window.ActOnPopUpClick(7, 1, &artist);
  window.ActOnPopUpClick(8, 1, &mine);
  window.ActOnPopUpClick(6, 1, &mine.ChildAt(0));
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(FoldersIn(&mine), Texts{});
}

TEST_F(Commands, AFolderIsDeletedOnlyAfterConfirmation) {
  AddSongs(1);
  Folder& one = AddFolder("one", {1});
  AddFolder("inner", {1}, &one);
  AddFolder("two");
  Show();
  for (const MessageAnswer answer : {MessageAnswer::kNo, MessageAnswer::kCancel}) {
    messages.answer = answer;
    window.ActOnPopUpClick(9, 1, &one);
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].buttons, MessageButtons::kYesNoCancel);
    EXPECT_EQ(messages.Take(),
              Texts{"Are you sure you want to delete this folder and all it's contents?"});
    EXPECT_EQ(Nodes().Count(), 3);
  }
  messages.answer = MessageAnswer::kYes;
  window.ActOnPopUpClick(9, 1, &one);
  EXPECT_EQ(FoldersIn(), Texts{"two"});
  EXPECT_EQ(Box().selectednode()->Text(), "two");
  // The songs stay in the library, and the clipboard is unchanged.
  EXPECT_EQ(library.UBoundOfMp3Array(), 1);
  EXPECT_EQ(tallow.clipboard.CopiedFolder(), nullptr);
}

TEST_F(Commands, DeletingASpecialFolderDoesNothingWithoutAMessage) {
  Folder& artist = AddFolder("Artist");
  Folder& mine = AddFolder("mine");
  Folder& inner = AddFolder("Artist", {}, &mine);
  Show();
  messages.answer = MessageAnswer::kYes;
  window.ActOnPopUpClick(9, 1, &artist);
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(Nodes().Count(), 3);
  window.ActOnPopUpClick(9, 1, &inner);
  EXPECT_EQ(Nodes().Count(), 2);
}

TEST_F(Commands, TheLastFolderCanBeCut) {
  AddSongs(1);
  Folder& one = AddFolder("one", {1});
  Show();
  window.ActOnPopUpClick(6, 1, &one);
  EXPECT_EQ(Box().selectednode(), nullptr);
  EXPECT_EQ(List().model()->rowCount(), 0);
  window.PVExplorer1().Undo();
  EXPECT_EQ(Box().selectednode(), &one);
  EXPECT_EQ(RowsOf(List()), QStringList{"1.  1.mp3"});
}

TEST_F(Commands, SortNodesSortsBelowTheSelectedFolder) {
  Folder& one = AddFolder("one");
  for (const char* const text : {"Disc 10", "disc 2"}) AddFolder(text, {}, &one);
  AddFolder("a");
  Show();
  window.ActOnPopUpClick(10, 1, &one);
  EXPECT_EQ(FoldersIn(&one), (Texts{"disc 2", "Disc 10"}));
  EXPECT_EQ(FoldersIn(), (Texts{"one", "a"}));
  window.ActOnPopUpClick(10, 1, nullptr);
  EXPECT_EQ(FoldersIn(), (Texts{"a", "one"}));
  EXPECT_EQ(Tree().currentIndex().data().toString(), "one");
}

TEST_F(Commands, TheCommandRequestsTheBackgroundPictureDialog) {
  Folder& one = AddFolder("one");
  Show();
  int asked = 0;
  QObject::connect(&window, &frmMain::ChangeBackgroundPicture, [&] { ++asked; });
  window.ActOnPopUpClick(14, 2, &one);
  EXPECT_EQ(asked, 1);
}

TEST_F(Commands, UnknownCommandNumbersDoNothing) {
  AddSongs(1);
  Folder& one = AddFolder("one", {1});
  Show();
  SelectRow(0);
  for (int pane = -1; pane <= 4; ++pane)
    for (const int item : {-1, 0, 3, 11, 15, 99})
      if (pane != 2 || item != 11) window.ActOnPopUpClick(item, pane, &one);
  for (const int item : {1, 2, 3}) window.ActOnPopUpClick(item, 1, &one);
  for (const int pane : {0, 3}) window.ActOnPopUpClick(4, pane, &one);
  EXPECT_EQ(Nodes().Count(), 1);
  EXPECT_EQ(SongsOf(one), Songs{1});
  EXPECT_EQ(Rank(1), "2");
  EXPECT_TRUE(played.empty());
  EXPECT_TRUE(messages.shown.empty());
  EXPECT_FALSE(Box().IsFormDirty());
}

TEST_F(Commands, EveryListCommandCollectsTheSelectedSongs) {
  AddSongs(3);
  Folder& one = AddFolder("one", {3, 2, 1});
  Show();
  SelectRow(0);
  SelectRow(2, Qt::ControlModifier);
  for (const int item : {1, 2, 5, 8, 14, 6}) {
    tallow.SongsToPlay = {99};
    window.ActOnPopUpClick(item, 2, &one);
    EXPECT_EQ(tallow.SongsToPlay, (Songs{3, 1})) << item;
  }
}

TEST_F(Commands, TheTreesMenuActsOnTheFolderUnderThePointer) {
  AddFolder("one");
  Folder& two = AddFolder("two");
  Show();
  const auto open_at = [&](const QPoint& place) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, Tree().viewport()->mapToGlobal(place));
    QApplication::sendEvent(Tree().viewport(), &event);
    ASSERT_TRUE(Menu("TreeMenu").isVisible());
  };
  open_at(Tree().visualRect(IndexOf(Tree(), "two")).center());
  Item(Menu("TreeMenu"), 4).trigger();
  Menu("TreeMenu").close();
  EXPECT_EQ(FoldersIn(&two), Texts{"New Folder"});
  // In the empty area of the tree, the menu acts on the root.
  open_at(QPoint(20, Tree().viewport()->height() - 5));
  Item(Menu("TreeMenu"), 4).trigger();
  EXPECT_EQ(Nodes().Count(), 3);
  Item(Menu("TreeMenu"), 5).trigger();
  Menu("TreeMenu").close();
  EXPECT_EQ(FoldersIn(), (Texts{"one", "two", "New Folder"}));
}

TEST_F(Commands, WithoutAFolderThereIsNoListMenu) {
  Show();
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(9, 9),
                          List().viewport()->mapToGlobal(QPoint(9, 9)));
  QApplication::sendEvent(List().viewport(), &event);
  EXPECT_FALSE(Menu("ListMenu").isVisible());
}

TEST_F(Commands, TheSelectionFollowsItsSongWhenAColumnIsSorted) {
  AddSongs(3);
  AddFolder("one", {3, 1, 2});
  Show();
  SelectRow(0);
  ClickHeader();
  EXPECT_EQ(Selected(), std::vector<int>{2});
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  1.mp3", "2.  2.mp3", "3.  3.mp3"}));
  EXPECT_TRUE(Box().IsFormDirty());
}

TEST_F(Commands, AnEmptyJukeboxSurvivesEveryKeyAndCommand) {
  Show();
  messages.answer = MessageAnswer::kYes;
  for (QWidget* const pane : {static_cast<QWidget*>(&Tree()), static_cast<QWidget*>(&List())}) {
    pane->setFocus();
    for (const Qt::Key key : {Qt::Key_X, Qt::Key_C, Qt::Key_V, Qt::Key_A, Qt::Key_Z})
      QTest::keyClick(pane, key, Qt::ControlModifier);
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_F2, Qt::Key_Return, Qt::Key_Backspace,
                              Qt::Key_Home, Qt::Key_End, Qt::Key_Down, Qt::Key_B})
      QTest::keyClick(pane, key);
    QTest::keyClick(pane, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(pane, Qt::Key_F10, Qt::ShiftModifier);
    window.findChild<QMenu*>(QStringLiteral("TreeMenu"))->close();
  }
  ClickHeader();
  for (const int pane : {kTreePane, kListPane})
    for (int item = 0; item <= 15; ++item)
      if (pane != kTreePane || TreeCommand(item) != TreeCommand::kAddFolderToRoot)
        window.ActOnPopUpClick(item, pane, nullptr);
  EXPECT_EQ(Nodes().Count(), 0);
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(problems, QStringList{"The folders are sorted already."});
  EXPECT_FALSE(Box().IsFormDirty());
}

TEST_F(Commands, SortNodesInTheEmptyAreaSortsTheWholeTree) {
  AddFolder("New");
  Folder& decades = AddFolder("Decades");
  AddFolder("30's", {}, &decades);
  AddFolder("00's", {}, &decades);
  AddFolder("Disc 10");
  AddFolder("disc 2");
  AddFolder("All Songs");
  Show();
  window.Run(TreeCommand::kSortNodes, nullptr);
  EXPECT_EQ(FoldersIn(), (Texts{"All Songs", "Decades", "disc 2", "Disc 10", "New"}));
  EXPECT_EQ(FoldersIn(&decades), (Texts{"00's", "30's"}));
}

TEST_F(Commands, SortNodesTellsThatTheFoldersAreSorted) {
  Folder& one = AddFolder("b");
  AddFolder("a");
  Show();
  window.Run(TreeCommand::kSortNodes, &one);
  EXPECT_EQ(problems, QStringList{"The folders are sorted already."});
  window.Run(TreeCommand::kSortNodes, nullptr);
  EXPECT_EQ(problems.size(), 1);
  EXPECT_EQ(FoldersIn(), (Texts{"a", "b"}));
  window.Run(TreeCommand::kSortNodes, nullptr);
  EXPECT_EQ(problems.size(), 2);
}

TEST_F(Commands, PasteTellsThatTheFolderHasTheSongs) {
  AddSongs(2);
  Folder& one = AddFolder("one", {1, 2});
  Folder& two = AddFolder("two", {1});
  Show();
  List().selectAll();
  window.Run(ListCommand::kCopySongs, &one);
  window.Run(TreeCommand::kPasteFolder, &one);
  EXPECT_EQ(problems, QStringList{"The folder already has these songs."});
  window.Run(TreeCommand::kPasteFolder, &two);
  EXPECT_EQ(problems.size(), 1);
  EXPECT_EQ(SongsOf(two), (Songs{1, 2}));
  window.Run(ListCommand::kPasteSongs, &one);
  EXPECT_EQ(problems.size(), 2);
}

TEST_F(Commands, DeleteAndCutNameTheirSteps) {
  AddSongs(3);
  Folder& one = AddFolder("one", {1, 2, 3});
  Show();
  SelectRow(0);
  SelectRow(1, Qt::ShiftModifier);
  window.Run(ListCommand::kDeleteSongs, &one);
  EXPECT_EQ(Box().History().NameToUndo(), "Delete 2 Songs");
  window.Run(ListCommand::kCutSongs, &one);
  EXPECT_EQ(Box().History().NameToUndo(), "Cut Song");
  // Both put the songs on the clipboard.
  EXPECT_EQ(tallow.clipboard.Songs().size(), 1U);
}

TEST_F(Commands, MoveToRootMovesAFolderToTheEndOfTheTopLevel) {
  AddSongs(1);
  Folder& one = AddFolder("one");
  Folder& inner = AddFolder("inner", {1}, &one);
  AddFolder("below", {}, &inner);
  AddFolder("two");
  Show();
  window.PVExplorer1().Select(inner);
  QMenu& menu = Menu("TreeMenu");
  emit window.PVExplorer1().TreePopUp(&inner, QPoint(10, 10));
  menu.close();
  EXPECT_TRUE(Item(menu, 11).isEnabled());
  Item(menu, 11).trigger();
  EXPECT_EQ(FoldersIn(), (Texts{"one", "two", "inner"}));
  EXPECT_EQ(FoldersIn(&inner), Texts{"below"});
  EXPECT_EQ(Box().selectednode(), &inner);
  EXPECT_EQ(RowsOf(List()), QStringList{"1.  1.mp3"});
  // The folder is already at the top level.
  for (const Folder* const folder : {&inner, static_cast<Folder*>(nullptr)}) {
    emit window.PVExplorer1().TreePopUp(const_cast<Folder*>(folder), QPoint(10, 10));
    menu.close();
    EXPECT_FALSE(Item(menu, 11).isEnabled());
  }
  window.Run(TreeCommand::kMoveToRoot, &one);
  EXPECT_EQ(FoldersIn(), (Texts{"one", "two", "inner"}));
  window.PVExplorer1().Undo();
  EXPECT_EQ(FoldersIn(), (Texts{"one", "two"}));
  EXPECT_EQ(FoldersIn(&one), Texts{"inner"});
}

TEST_F(Commands, ADecadeIsNotMovedToTheRoot) {
  Folder& decades = AddFolder("Decades");
  Folder& eighties = AddFolder("80's", {}, &decades);
  Show();
  window.Run(TreeCommand::kMoveToRoot, &eighties);
  EXPECT_EQ(messages.Take(),
            Texts{"This is a special node that can not be cut.  It can be copied if you wish."});
  EXPECT_EQ(FoldersIn(&decades), Texts{"80's"});
}

TEST_F(Commands, AFolderRenamedToTheNameOfASpecialFolderCanBeDeleted) {
  Folder& mine = AddFolder("mine");
  Folder& artist = AddFolder("Artist");
  Show();
  window.PVExplorer1().Select(mine);
  window.PVExplorer1().EditText(mine);
  auto* const editor = Tree().findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  editor->setText("Artist");
  QTest::keyClick(editor, Qt::Key_Return);
  // Qt deletes the editor when events are processed.
  QApplication::processEvents();
  EXPECT_EQ(FoldersIn(), (Texts{"Artist", "Artist"}));
  EXPECT_EQ(mine.Index(), 1);
  EXPECT_EQ(Box().selectednode(), &mine);
  EXPECT_EQ(Tree().currentIndex(), Tree().model()->index(1, 0));
  EXPECT_TRUE(Tree().currentIndex().flags().testFlag(Qt::ItemIsEditable));
  EXPECT_FALSE(Tree().model()->index(0, 0).flags().testFlag(Qt::ItemIsEditable));
  messages.answer = MessageAnswer::kYes;
  window.Run(TreeCommand::kDeleteFolder, &artist);
  EXPECT_EQ(messages.Take(), Texts{});
  window.Run(TreeCommand::kDeleteFolder, &mine);
  EXPECT_EQ(messages.Take(),
            Texts{"Are you sure you want to delete this folder and all it's contents?"});
  EXPECT_EQ(FoldersIn(), Texts{"Artist"});
}

TEST_F(Commands, SongsAreFiledIntoTheFirstOfTwoFoldersWithTheSameName) {
  AddSongs(1);
  Folder& mine = AddFolder("mine");
  Folder& all = AddFolder("All Songs");
  Show();
  window.PVExplorer1().Select(mine);
  window.PVExplorer1().EditText(mine);
  auto* const editor = Tree().findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  editor->setText("All Songs");
  QTest::keyClick(editor, Qt::Key_Return);
  // Qt deletes the editor when events are processed.
  QApplication::processEvents();
  ASSERT_EQ(mine.Text(), "All Songs");
  tallow::Jukebox* const own[] = {&Box()};
  FillAutomaticFolders(kFillNewToo, true, {}, library, own);
  EXPECT_EQ(SongsOf(all), Songs{1});
  EXPECT_EQ(SongsOf(mine), Songs{});
}

TEST_F(Commands, RanksAreUndoneAndTheLibraryIsSaved) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  Show();
  List().selectAll();
  Item(Menu("ListMenu"), 9).trigger();
  SelectRow(1);
  Item(Menu("ListMenu"), 18).trigger();
  EXPECT_EQ(Rank(2), "2");
  EXPECT_EQ(Picture(1), 2);
  const auto saved = ReadWholeFile(LibraryPath());
  window.PVExplorer1().Undo();
  EXPECT_EQ(Rank(2), "6");
  EXPECT_EQ(Picture(1), 6);
  EXPECT_EQ(Selected(), std::vector<int>{1});
  EXPECT_NE(ReadWholeFile(LibraryPath()), saved);
  window.PVExplorer1().Undo();
  for (int song = 1; song <= 3; ++song) EXPECT_EQ(Rank(song), "2");
  window.PVExplorer1().Redo();
  EXPECT_EQ(Rank(3), "6");
  EXPECT_EQ(Picture(2), 6);
  EXPECT_FALSE(Box().IsFormDirty());
}

TEST_F(Commands, UndoOfARankingShowsTheFolderOfTheSongs) {
  AddSongs(1);
  Folder& one = AddFolder("one", {1});
  AddFolder("two");
  Show();
  SelectRow(0);
  Item(Menu("ListMenu"), 8).trigger();
  Click("two");
  window.PVExplorer1().Undo();
  EXPECT_EQ(Box().selectednode(), &one);
  EXPECT_EQ(Rank(1), "2");
  EXPECT_EQ(Picture(0), 2);
}

TEST_F(Commands, UndoneRanksThatCannotBeSavedAreReported) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  SelectRow(0);
  Item(Menu("ListMenu"), 8).trigger();
  std::filesystem::remove(LibraryPath());
  std::filesystem::create_directories(std::filesystem::path(LibraryPath()));
  window.PVExplorer1().Undo();
  EXPECT_EQ(Rank(1), "2");
  const Texts said = messages.Take();
  ASSERT_EQ(said.size(), 1U);
  EXPECT_TRUE(said[0].starts_with("The ranks could not be saved. ")) << said[0];
}

TEST_F(Commands, TheItemsOfTheTreeRenameAndPlayTheFolder) {
  AddSongs(2);
  AddFolder("one", {2, 1});
  Folder& two = AddFolder("two");
  std::vector<Songs> next;
  std::vector<Songs> queued;
  QObject::connect(&window, &frmMain::PlayNext, [&](const Songs& songs) { next.push_back(songs); });
  QObject::connect(&window, &frmMain::AddToQueue,
                   [&](const Songs& songs) { queued.push_back(songs); });
  Show();
  QMenu& menu = Menu("TreeMenu");
  emit window.PVExplorer1().TreePopUp(&Nodes().ChildAt(0), QPoint(10, 10));
  menu.close();
  for (const int command : {14, 15, 16}) Item(menu, command).trigger();
  EXPECT_EQ(played, (std::vector<Songs>{{2, 1}}));
  EXPECT_EQ(next, (std::vector<Songs>{{2, 1}}));
  EXPECT_EQ(queued, (std::vector<Songs>{{2, 1}}));
  EXPECT_EQ(problems, QStringList());
  for (const TreeCommand command :
       {TreeCommand::kPlayFolder, TreeCommand::kPlayFolderNext, TreeCommand::kAddFolderToQueue})
    window.Run(command, &two);
  EXPECT_EQ(problems, QStringList(3, "This folder holds no songs to play."));
  EXPECT_EQ(next.size(), 1U);
  EXPECT_EQ(queued.size(), 1U);
  Item(menu, 13).trigger();
  auto* const editor = Tree().findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(editor->text(), "one");
}

TEST_F(Commands, ItemsThatWouldDoNothingSilentlyAreGrey) {
  UseMoreCommands();
  AddSongs(1);
  AddFolder("All Songs", {1});
  AddFolder("one");
  Show();
  const auto grey = [](const QMenu& menu) {
    QList<int> items;
    for (const QAction* const action : menu.actions())
      if (!action->isEnabled()) items.append(action->data().toInt());
    return items;
  };
  emit window.PVExplorer1().ListPopUp(QPoint(10, 10));
  Menu("ListMenu").close();
  // Show In Folder is for hits of a search.
  EXPECT_EQ(grey(Menu("ListMenu")), (QList<int>{6, 19}));
  // A special folder is neither deleted nor renamed. To cut it says why that is not possible.
  emit window.PVExplorer1().TreePopUp(&Nodes().ChildAt(0), QPoint(10, 10));
  Menu("TreeMenu").close();
  EXPECT_EQ(grey(Menu("TreeMenu")), (QList<int>{8, 9, 11, 13}));
  tallow.clipboard.PutSongs({{1, 2}});
  emit window.PVExplorer1().ListPopUp(QPoint(10, 10));
  Menu("ListMenu").close();
  EXPECT_EQ(grey(Menu("ListMenu")), QList<int>{19});
  emit window.PVExplorer1().TreePopUp(&Nodes().ChildAt(1), QPoint(10, 10));
  Menu("TreeMenu").close();
  EXPECT_EQ(grey(Menu("TreeMenu")), QList<int>{11});
  // Songs that are pasted into no folder say that they need one.
  emit window.PVExplorer1().TreePopUp(nullptr, QPoint(10, 10));
  Menu("TreeMenu").close();
  EXPECT_FALSE(grey(Menu("TreeMenu")).contains(8));
}

}  // namespace
}  // namespace tallow

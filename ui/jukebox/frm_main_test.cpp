// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/frm_main.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QContextMenuEvent>
#include <QMenu>
#include <QSettings>

#include "jukebox/initial_jukebox.h"
#include "tests/jukebox_window_fixture.h"
#include "tests/tagged_file.h"
#include "ui/support/shown_title.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class FrmMain : public JukeboxWindowTest {
 protected:
  /// Opens the list's pop-up menu and triggers an item.
  void Choose(const QString& caption) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(20, 20),
                            List().viewport()->mapToGlobal(QPoint(20, 20)));
    QApplication::sendEvent(List().viewport(), &event);
    auto* const menu = window.findChild<QMenu*>(QStringLiteral("ListMenu"));
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->isVisible());
    for (QAction* const action : menu->actions())
      if (action->text() == caption) action->trigger();
    menu->close();
  }
};

TEST_F(FrmMain, EveryPartHasItsObjectAndAccessibleName) {
  EXPECT_EQ(window.objectName(), "frmMain");
  EXPECT_EQ(window.PVExplorer1().objectName(), "PVExplorer1");
  EXPECT_EQ(Tree().accessibleName(), "Folders");
  EXPECT_EQ(List().accessibleName(), "Songs");
}

TEST_F(FrmMain, TheModelsFollowTheRulesOfQtModels) {
  AddSong("/m/", "a.mp3");
  const QAbstractItemModelTester folders(Tree().model(),
                                         QAbstractItemModelTester::FailureReportingMode::Fatal);
  const QAbstractItemModelTester songs(List().model(),
                                       QAbstractItemModelTester::FailureReportingMode::Fatal);
  Folder& above = AddFolder("A", {1, 1});
  window.Jukebox().Nodes().AddChild(&above, "A1");
  window.show();
  window.ShowJukebox();
  ClickHeader();
  Folder& b = AddFolder("B", {});
  EXPECT_EQ(Tree().model()->rowCount(), 2);
  FolderTree& tree = window.Jukebox().Nodes();
  tree.Put(tree.Copy(above), &b, 0);
  tree.Rename(b, "C");
  EXPECT_TRUE(IndexOf(Tree(), "C/A/A1").isValid());
  // Persistent indexes still refer to the same folders after a reorder.
  const QPersistentModelIndex held = IndexOf(Tree(), "C/A");
  const QPersistentModelIndex held_above = IndexOf(Tree(), "A");
  tree.Reorder(nullptr, {1, 0});
  EXPECT_EQ(held.data().toString(), "A");
  EXPECT_EQ(held_above.row(), 1);
  EXPECT_EQ(held.parent().row(), 0);
  tree.Take(b);
  EXPECT_FALSE(held.isValid());
  EXPECT_EQ(Tree().model()->rowCount(), 1);
}

TEST_F(FrmMain, TheListModelStaysConsistentWhenAShorterFolderIsShown) {
  AddSongs(3);
  const QAbstractItemModelTester songs(List().model(),
                                       QAbstractItemModelTester::FailureReportingMode::Fatal);
  // A receiver of the signal may read all rows immediately.
  QObject::connect(List().model(), &QAbstractItemModel::headerDataChanged, [this] {
    for (int row = 0; row < List().model()->rowCount(); ++row)
      EXPECT_TRUE(List().model()->index(row, 0).data().isValid());
  });
  Folder& one = AddFolder("one", {1, 2, 3});
  Folder& two = AddFolder("two");
  Show();
  Click("two");
  Click("one");
  SelectRow(0);
  window.ActOnPopUpClick(4, 2, &one);
  window.PVExplorer1().Undo();
  window.PVExplorer1().Redo();
  Click("two");
  window.ActOnPopUpClick(6, 1, &two);
  EXPECT_EQ(List().model()->rowCount(), 2);
}

TEST_F(FrmMain, TheCaptionIsTheWindowsTitle) {
  window.Jukebox().Caption("MIX");
  EXPECT_EQ(ShownTitle(window), "MIX");
  window.Jukebox().Caption("a [*] b");
  EXPECT_EQ(ShownTitle(window), "a [*] b");
}

TEST_F(FrmMain, TheTitleHasAStarWhileTheJukeboxDiffersFromItsFile) {
  const auto title_becomes = [this](const QString& title) {
    return QTest::qWaitFor([&] { return ShownTitle(window) == title; });
  };
  Folder& one = AddFolder("one");
  window.Jukebox().Caption("MIX");
  window.Jukebox().IsFormDirty(true);
  EXPECT_TRUE(title_becomes("MIX*"));
  EXPECT_EQ(window.Jukebox().Caption(), "MIX");
  const std::string file = application / "mix.juk";
  ASSERT_TRUE(window.Jukebox().Save(file, library));
  window.Jukebox().IsFormDirty(false);
  EXPECT_TRUE(title_becomes("MIX"));
  // Filing marks every jukebox that it visits as changed; the contents are still the same.
  window.Jukebox().IsFormDirty(true);
  EXPECT_TRUE(window.Jukebox().IsFormDirty());
  EXPECT_FALSE(window.Jukebox().IsUnsaved());
  window.Run(TreeCommand::kAddFolderToSelected, &one);
  EXPECT_TRUE(title_becomes("MIX*"));
  window.PVExplorer1().Undo();
  EXPECT_TRUE(title_becomes("MIX"));
  window.PVExplorer1().Redo();
  EXPECT_TRUE(title_becomes("MIX*"));
  ASSERT_TRUE(window.Jukebox().Save(file, library));
  window.Jukebox().IsFormDirty(false);
  EXPECT_TRUE(title_becomes("MIX"));
}

TEST_F(FrmMain, TheStarComparesWithTheFileWithoutReadingIt) {
  AddFolder("one");
  window.Jukebox().Caption("MIX");
  const std::string file = application / "mix.juk";
  ASSERT_TRUE(window.Jukebox().Save(file, library));
  window.Jukebox().IsFormDirty(true);
  const auto title_becomes = [this](const QString& title) {
    return QTest::qWaitFor([&] { return ShownTitle(window) == title; });
  };
  EXPECT_FALSE(window.WillAsk());
  EXPECT_TRUE(title_becomes("MIX"));
  // The disk is not asked before the window is closed.
  RemoveFile(file);
  EXPECT_TRUE(window.WillAsk());
  AddFolder("two");
  window.Jukebox().IsFormDirty(true);
  EXPECT_TRUE(title_becomes("MIX*"));
}

TEST_F(FrmMain, ClickingAFolderShowsItsSongs) {
  for (const char* name : {"a.mp3", "b.mp3"}) AddSong("/m/", name);
  Folder& one = AddFolder("one", {2, 1});
  AddFolder("two", {1});
  window.show();
  window.ShowJukebox();
  EXPECT_EQ(window.Jukebox().selectednode(), &one);
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  b.mp3", "2.  a.mp3"}));
  EXPECT_EQ(RowsOf(List(), 1), (QStringList{"2", "1"}));
  const auto changes = tallow.folder_changes;
  Click("two");
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  a.mp3"}));
  EXPECT_EQ(tallow.folder_changes, changes + 1);
  EXPECT_EQ(EntryText(one.Items()[0], library), "2");
}

TEST_F(FrmMain, AFolderReachedWithTheKeyboardIsShownToo) {
  AddSong("/m/", "a.mp3");
  AddFolder("one", {});
  AddFolder("two", {1});
  window.show();
  window.ShowJukebox();
  QTest::keyClick(&Tree(), Qt::Key_Down);
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  a.mp3"}));
}

TEST_F(FrmMain, ClickingTheFolderOnShowRefillsTheList) {
  AddSong("/m/", "b.mp3");
  AddSong("/m/", "a.mp3");
  AddFolder("one", {1, 2});
  window.show();
  window.ShowJukebox();
  ClickHeader();
  EXPECT_EQ(window.Jukebox().SortState(), 2);
  Click("one");
  EXPECT_EQ(window.Jukebox().SortState(), 0);
  EXPECT_EQ(Header(), "Name    --        (click to sort)");
}

TEST_F(FrmMain, HeaderClicksCycleThroughTheFourOrders) {
  AddSong("/m/", "b.mp3", "1", "3");
  AddSong("/m/", "a.mp3", "1", "7");
  AddFolder("one", {1, 2});
  window.show();
  window.ShowJukebox();
  EXPECT_EQ(Header(), "Name    --        (click to sort)");
  const QStringList up{"1.  a.mp3", "2.  b.mp3"};
  const QStringList down{"1.  b.mp3", "2.  a.mp3"};
  const std::vector<std::pair<QString, QStringList>> expected{{"Name    --   ", up},
                                                              {"Name    --   ", down},
                                                              {"By Rank -- best to worst", up},
                                                              {"By Rank -- worst to best", down},
                                                              {"Name    --   ", up}};
  for (const auto& [header, rows] : expected) {
    ClickHeader();
    EXPECT_EQ(Header(), header);
    EXPECT_EQ(RowsOf(List()), rows);
  }
}

TEST_F(FrmMain, ARankThatIsNotANumberIsReported) {
  AddSong("/m/", "b.mp3", "1", "x");
  AddSong("/m/", "a.mp3", "1", "7");
  AddFolder("one", {1, 2});
  window.show();
  window.ShowJukebox();
  for (int click = 0; click < 3; ++click) ClickHeader();
  EXPECT_EQ(problems,
            (QStringList{"The list could not be sorted: a rank is not a number ('x' is not "
                         "a number)."}));
}

TEST_F(FrmMain, InvalidUtf8IsReplacedForDisplayOnly) {
  AddSong("/m/", "caf\xE9\n.mp3");
  AddFolder("one\xFF", {1});
  window.show();
  window.ShowJukebox();
  EXPECT_EQ(RowsOf(List()), (QStringList{QString::fromUtf8("1.  caf\xEF\xBF\xBD .mp3")}));
  EXPECT_EQ(library.Mp3Info(2, 1), "caf\xE9\n.mp3");
}

TEST_F(FrmMain, TheSampleJukeboxIsShownWithItsTreeOpen) {
  music.File("a.mp3", Audio(300) + Tag({.artist = "ABBA", .year = "1976", .genra = 13}));
  AddSong(music.path(), "a.mp3");
  frmMain sample(tallow);
  Jukebox* const samples[] = {&sample.Jukebox()};
  BuildInitialJukebox(library, sample.Jukebox(), samples, [&] { sample.ShowJukebox(); });
  auto& tree = *sample.findChild<QTreeView*>(QStringLiteral("TreeView"));
  EXPECT_TRUE(tree.isExpanded(IndexOf(tree, "Artist")));
  EXPECT_TRUE(tree.isExpanded(IndexOf(tree, "Seasonal")));
  EXPECT_TRUE(IndexOf(tree, "Artist/ABBA").isValid());
  EXPECT_EQ(tree.currentIndex().data().toString(), "All Songs");
  EXPECT_EQ(RowsOf(*sample.findChild<QTableView*>(QStringLiteral("ListView"))),
            (QStringList{"1.  a.mp3"}));
}

TEST_F(FrmMain, FoldersAreExpandedAsTheyWereSaved) {
  Folder& one = AddFolder("one", {});
  Folder& two = AddFolder("two", {});
  for (Folder* const folder : {&one, &two}) window.Jukebox().Nodes().AddChild(folder, "inner");
  two.Open(true);
  window.show();
  window.ShowJukebox();
  EXPECT_FALSE(Tree().isExpanded(IndexOf(Tree(), "one")));
  EXPECT_TRUE(Tree().isExpanded(IndexOf(Tree(), "two")));
  Tree().expand(IndexOf(Tree(), "one"));
  Tree().collapse(IndexOf(Tree(), "two"));
  const std::string path = music / "mix.juk";
  ASSERT_TRUE(window.Jukebox().Save(path, library));
  frmMain again(tallow);
  ASSERT_TRUE(again.Jukebox().Load(path, library));
  again.ShowJukebox();
  auto& tree = *again.findChild<QTreeView*>(QStringLiteral("TreeView"));
  EXPECT_TRUE(tree.isExpanded(IndexOf(tree, "one")));
  EXPECT_FALSE(tree.isExpanded(IndexOf(tree, "two")));
  EXPECT_EQ(tree.currentIndex().data().toString(), "one");
}

TEST_F(FrmMain, AFolderOfManySongsNeedsNoWidgetPerRow) {
  constexpr int kSongs = 200000;
  for (int k = 1; k <= kSongs; ++k) AddSong("/m/", std::to_string(k) + ".mp3");
  std::vector<int> records(kSongs);
  for (int k = 0; k < kSongs; ++k) records[static_cast<std::size_t>(k)] = k + 1;
  AddFolder("many", records);
  window.show();
  window.ShowJukebox();
  List().scrollToBottom();
  EXPECT_EQ(List().model()->rowCount(), kSongs);
  EXPECT_EQ(List().indexAt(QPoint(10, List().viewport()->height() - 5)).row(), kSongs - 1);
  EXPECT_LT(window.findChildren<QObject*>().size(), 200);
}

TEST_F(FrmMain, ALeftClickShowsTheFolderAfterAClickOfAnotherButton) {
  AddSong("/m/", "a.mp3");
  AddFolder("one", {1});
  AddFolder("two", {1});
  window.show();
  window.ShowJukebox();
  const QModelIndex two = IndexOf(Tree(), "two");
  QTest::mouseClick(Tree().viewport(), Qt::RightButton, {}, Tree().visualRect(two).center());
  ClickHeader();
  EXPECT_EQ(window.Jukebox().SortState(), 2);
  Click("two");
  EXPECT_EQ(window.Jukebox().SortState(), 0);
}

TEST_F(FrmMain, ADoubleClickPlaysTheSongUnderThePointer) {
  for (const char* name : {"a.mp3", "b.mp3", "c.mp3"}) AddSong("/m/", name);
  AddFolder("one", {3, 1, 2});
  window.show();
  window.ShowJukebox();
  SelectRow(1);
  QTest::mouseDClick(List().viewport(), Qt::LeftButton, {},
                     List().visualRect(List().model()->index(1, 0)).center());
  EXPECT_EQ(played, std::vector<Songs>{{1}});
}

TEST_F(FrmMain, EnterPlaysTheCurrentSong) {
  for (const char* name : {"a.mp3", "b.mp3"}) AddSong("/m/", name);
  AddFolder("one", {2, 1});
  window.show();
  window.ShowJukebox();
  QTest::keyClick(&List(), Qt::Key_Return);
  EXPECT_EQ(played, std::vector<Songs>{});
  SelectRow(1);
  QTest::keyClick(&List(), Qt::Key_Return);
  QTest::keyClick(&List(), Qt::Key_Enter);
  EXPECT_EQ(played, (std::vector<Songs>{{1}, {1}}));
}

TEST_F(FrmMain, TheListsMenuPlaysTheFolderOrTheSelection) {
  for (const char* name : {"a.mp3", "b.mp3", "c.mp3"}) AddSong("/m/", name);
  AddFolder("one", {3, 1, 2, 1});
  window.show();
  window.ShowJukebox();
  SelectRow(2);
  SelectRow(0, Qt::ControlModifier);
  Choose("Play Selected Songs");
  EXPECT_EQ(played, std::vector<Songs>{(Songs{3, 2})});
  Choose("Play All Songs in Folder");
  EXPECT_EQ(played.back(), (Songs{3, 1, 2, 1}));
}

TEST_F(FrmMain, CommandNumbersDependOnThePane) {
  for (const char* name : {"a.mp3", "b.mp3"}) AddSong("/m/", name);
  AddFolder("one", {1, 2});
  Folder& two = AddFolder("two", {2});
  window.show();
  window.ShowJukebox();
  SelectRow(1);
  Folder& one = *window.Jukebox().selectednode();
  window.ActOnPopUpClick(1, 2, &one);
  window.ActOnPopUpClick(2, 2, &one);
  EXPECT_EQ(played, (std::vector<Songs>{{1, 2}, {2}}));
  EXPECT_EQ(tallow.SongsToPlay, Songs{2});
  // Only the folder on show has a selection.
  window.ActOnPopUpClick(1, 2, &two);
  window.ActOnPopUpClick(2, 2, &two);
  EXPECT_EQ(played[2], Songs{2});
  EXPECT_EQ(played[3], Songs{});
}

TEST_F(FrmMain, TheTreeIsFirstAsWideAsItsNames) {
  tallow.preferences.SetSwitches({.columns_of_details = true});
  AddFolder("a");
  frmMain other(tallow);
  other.Jukebox().Nodes().AddChild(nullptr, "A folder with a long name");
  for (frmMain* const one : {&window, &other}) {
    one->resize(1200, 500);
    one->show();
    one->ShowJukebox();
  }
  EXPECT_GT(other.PVExplorer1().sizes().at(0), window.PVExplorer1().sizes().at(0));
  const QAbstractItemView& tree = TreeOf(other);
  EXPECT_GE(tree.viewport()->width(), tree.sizeHintForColumn(0));
}

TEST_F(FrmMain, ALongNameDoesNotMakeTheTreeWide) {
  tallow.preferences.SetSwitches({.columns_of_details = true});
  AddFolder("A folder with a very long name that would take half of the window for itself alone");
  window.resize(1200, 500);
  window.show();
  window.ShowJukebox();
  EXPECT_LE(window.PVExplorer1().sizes().at(0), 240);
}

TEST_F(FrmMain, WithoutTheSwitchTheNamesDoNotChangeTheWidthOfTheTree) {
  AddFolder("a");
  window.resize(1200, 500);
  window.show();
  const QList<int> sizes = window.PVExplorer1().sizes();
  window.ShowJukebox();
  EXPECT_EQ(window.PVExplorer1().sizes(), sizes);
}

TEST_F(FrmMain, ThePositionOfTheSplitterIsRemembered) {
  window.resize(900, 500);
  window.show();
  PVExplorer& explorer = window.PVExplorer1();
  explorer.setSizes({350, 500});
  const int left = explorer.sizes().at(0);
  // QSplitter emits this when the user drags the handle.
  emit explorer.splitterMoved(left, 1);
  frmMain other(tallow);
  other.resize(900, 500);
  other.show();
  EXPECT_NEAR(other.PVExplorer1().sizes().at(0), left, 5);
  QSettings().remove(QStringLiteral("Jukebox"));
}

TEST_F(FrmMain, AnyHeaderSortsTheList) {
  AddSong("/m/", "b.mp3");
  AddSong("/m/", "a.mp3");
  AddFolder("one", {1, 2});
  window.show();
  window.ShowJukebox();
  QHeaderView& header = *List().horizontalHeader();
  QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                    QPoint(header.sectionViewportPosition(1) + 5, 8));
  EXPECT_EQ(RowsOf(List()), (QStringList{"1.  a.mp3", "2.  b.mp3"}));
}

}  // namespace
}  // namespace tallow

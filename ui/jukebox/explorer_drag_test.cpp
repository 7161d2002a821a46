// SPDX-License-Identifier: GPL-3.0-or-later
// Dragging and dropping, with the same events as in a real drag.
#include "ui/jukebox/explorer_drag.h"

#include <gtest/gtest.h>
#include <memory>

#include <QDropEvent>
#include <QScrollBar>
#include <QUrl>

#include "tests/drag_and_drop.h"
#include "tests/jukebox_window_fixture.h"
#include "tests/tagged_file.h"
#include "ui/jukebox/folder_tree_model.h"

namespace tallow {
namespace {

class Dragging : public JukeboxWindowTest {
 protected:
  bool DropOn(const QString& folder, const QMimeData* data, Qt::KeyboardModifiers keys = {}) {
    const QModelIndex index = IndexOf(Tree(), folder);
    Tree().scrollTo(index);
    return DropAt(Tree(), Tree().visualRect(index).center(), *data, keys);
  }
  bool DropBesideTheFolders(const QMimeData* data) {
    return DropAt(Tree(), QPoint(5, Tree().viewport()->height() - 3), *data);
  }
  std::unique_ptr<ExplorerDrag> SongsAt(std::initializer_list<int> rows) {
    bool first = true;
    for (const int row : rows) {
      SelectRow(row, first ? Qt::KeyboardModifiers() : Qt::ControlModifier);
      first = false;
    }
    return window.PVExplorer1().SongsToDrag();
  }
  std::unique_ptr<ExplorerDrag> FolderAt(const Folder& folder) {
    window.PVExplorer1().Select(folder);
    return window.PVExplorer1().FolderToDrag();
  }
  static QMimeData* Files(QMimeData& data, const Texts& paths) {
    QList<QUrl> urls;
    for (const std::string& path : paths)
      urls.append(QUrl::fromLocalFile(QString::fromStdString(path)));
    data.setUrls(urls);
    return &data;
  }
};

TEST_F(Dragging, SongsMoveToTheFolderTheyAreDroppedOn) {
  AddSongs(3);
  Folder& one = AddFolder("one", {1, 2, 3});
  Folder& two = AddFolder("two", {3});
  Show();
  EXPECT_TRUE(DropOn("two", SongsAt({0, 2}).get()));
  EXPECT_EQ(SongsOf(one), Songs{2});
  EXPECT_EQ(SongsOf(two), (Songs{3, 1}));
  EXPECT_EQ(RowsOf(List()), QStringList{"1.  2.mp3"});
  window.PVExplorer1().Undo();
  EXPECT_EQ(SongsOf(one), (Songs{1, 2, 3}));
  EXPECT_EQ(SongsOf(two), Songs{3});
}

TEST_F(Dragging, WithCtrlSongsAreCopied) {
  AddSongs(2);
  Folder& one = AddFolder("one", {1, 2});
  Folder& two = AddFolder("two");
  Show();
  EXPECT_TRUE(DropOn("two", SongsAt({1}).get(), Qt::ControlModifier));
  EXPECT_EQ(SongsOf(one), (Songs{1, 2}));
  EXPECT_EQ(SongsOf(two), Songs{2});
}

TEST_F(Dragging, SongsOfAnAutomaticFolderAreAlwaysCopied) {
  AddSongs(2);
  const Texts paths = {"All Songs",        "New",     "Artist",       "Artist/ABBA",
                       "Artist/ABBA/live", "Genre",   "Genre/Rock",   "Year",
                       "Year/1985",        "Decades", "Decades/80's", "Decades/x"};
  for (const std::string& path : paths) {
    Folder* above = nullptr;
    std::string_view rest = path;
    while (!rest.empty()) {
      const std::string text(rest.substr(0, rest.find('/')));
      rest.remove_prefix(std::min(rest.size(), text.size() + 1));
      Folder* found = Nodes().Find(text, above);
      if (found == nullptr) found = &AddFolder(text.c_str(), {1, 2}, above);
      above = found;
    }
  }
  Folder& mine = AddFolder("mine");
  Folder& second = AddFolder("Artist", {1, 2});
  Show();
  window.PVExplorer1().ExpandAll();
  frmMain other(tallow, messages.Shower());
  other.Jukebox().AddColumnHeader(kNameHeader);
  Folder& there = other.Jukebox().Nodes().AddChild(nullptr, "there");
  other.resize(600, 400);
  other.show();
  other.ShowJukebox();
  for (const std::string& path : paths) {
    const QModelIndex index = IndexOf(Tree(), QString::fromStdString(path));
    const Folder& from = *FolderTreeModel::FolderOf(index);
    window.PVExplorer1().Select(from);
    mine.Items().clear();
    EXPECT_TRUE(DropOn("mine", SongsAt({0}).get())) << path;
    EXPECT_EQ(SongsOf(from), (Songs{1, 2})) << path;
    EXPECT_EQ(SongsOf(mine), Songs{1}) << path;
    there.Items().clear();
    EXPECT_TRUE(DropAt(ListOf(other), QPoint(10, 60), *SongsAt({1}))) << path;
    EXPECT_EQ(SongsOf(from), (Songs{1, 2})) << path;
    EXPECT_EQ(SongsOf(there), Songs{2}) << path;
  }
  EXPECT_EQ(messages.Take(), Texts{});
  // A folder of the user may have the same text as an automatic folder.
  window.PVExplorer1().Select(second);
  mine.Items().clear();
  EXPECT_TRUE(DropOn("mine", SongsAt({0}).get()));
  EXPECT_EQ(SongsOf(second), Songs{2});
}

TEST_F(Dragging, TheCursorShowsThatSongsOfAnArtistAreCopied) {
  AddSongs(1);
  Folder& artist = AddFolder("Artist");
  Folder& abba = AddFolder("ABBA", {1}, &artist);
  AddFolder("mine");
  Show();
  window.PVExplorer1().Select(abba);
  const auto drag = SongsAt({0});
  const QPoint place = Tree().visualRect(IndexOf(Tree(), "mine")).center();
  QDragEnterEvent enter(place, Qt::CopyAction | Qt::LinkAction, drag.get(), Qt::LeftButton, {});
  QApplication::sendEvent(Tree().viewport(), &enter);
  QDragMoveEvent move(place, Qt::CopyAction | Qt::LinkAction, drag.get(), Qt::LeftButton, {});
  QApplication::sendEvent(Tree().viewport(), &move);
  EXPECT_TRUE(move.isAccepted());
  EXPECT_EQ(move.dropAction(), Qt::CopyAction);
}

TEST_F(Dragging, ACutRemovesSongsFromAnArtistsFolder) {
  AddSongs(2);
  Folder& abba = AddFolder("ABBA", {1, 2}, &AddFolder("Artist"));
  Show();
  window.PVExplorer1().Select(abba);
  SelectRow(0);
  QTest::keyClick(&List(), Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(SongsOf(abba), Songs{2});
  EXPECT_EQ(messages.Take(), Texts{});
}

TEST_F(Dragging, DropsOnTheSourceFolderOrTheEmptyAreaAreRejected) {
  AddSongs(2);
  Folder& one = AddFolder("one", {1, 2});
  Show();
  EXPECT_FALSE(DropOn("one", SongsAt({0}).get()));
  EXPECT_FALSE(DropBesideTheFolders(SongsAt({0}).get()));
  EXPECT_FALSE(DropAt(List(), QPoint(10, 10), *SongsAt({0}), Qt::ControlModifier));
  EXPECT_EQ(SongsOf(one), (Songs{1, 2}));
  EXPECT_FALSE(Box().IsFormDirty());
}

TEST_F(Dragging, AFolderMovesOrIsCopied) {
  Folder& one = AddFolder("one");
  Folder& two = AddFolder("two");
  Show();
  EXPECT_TRUE(DropOn("two", FolderAt(one).get(), Qt::ControlModifier));
  EXPECT_EQ(FoldersIn(), (Texts{"one", "two"}));
  EXPECT_TRUE(DropOn("two", FolderAt(one).get()));
  EXPECT_EQ(FoldersIn(), Texts{"two"});
  EXPECT_EQ(FoldersIn(&two), (Texts{"one", "one"}));
  EXPECT_TRUE(DropBesideTheFolders(FolderAt(one).get()));
  EXPECT_EQ(FoldersIn(), (Texts{"two", "one"}));
}

TEST_F(Dragging, TheFolderOnShowStaysOnShowWhenItMoves) {
  AddSongs(1);
  Folder& one = AddFolder("one", {1});
  AddFolder("two");
  AddFolder("three");
  Show();
  EXPECT_TRUE(DropOn("three", FolderAt(one).get()));
  EXPECT_EQ(Box().selectednode(), &one);
  EXPECT_EQ(Tree().currentIndex(), IndexOf(Tree(), "three/one"));
  EXPECT_EQ(RowsOf(List()), QStringList{"1.  1.mp3"});
}

TEST_F(Dragging, CopyingLeavesTheSelectionAsItIs) {
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  AddFolder("two");
  Show();
  EXPECT_TRUE(DropOn("two", SongsAt({0, 2}).get(), Qt::ControlModifier));
  EXPECT_EQ(Selected(), (std::vector<int>{0, 2}));
}

TEST_F(Dragging, NamesOfAnyBytesCanBeDraggedOutAndIn) {
  if (kSeparator == '\\') GTEST_SKIP() << "names of this system are text";
  const std::string path = music.File("caf\xE9 %.mp3");
  AddSong(music.path(), "caf\xE9 %.mp3");
  Folder& one = AddFolder("one", {1});
  AddFolder("two");
  Show();
  const auto drag = SongsAt({0});
  const QByteArray uri = drag->data("text/uri-list");
  EXPECT_TRUE(uri.contains("/caf%E9%20%25.mp3\r\n")) << uri.toStdString();
  QMimeData from_outside;
  from_outside.setData("text/uri-list", uri);
  EXPECT_EQ(DraggedFiles(from_outside), Texts{path});
  EXPECT_TRUE(DropOn("two", &from_outside));
  EXPECT_EQ(SongsOf(*Nodes().Find("two")), Songs{1});
  EXPECT_EQ(SongsOf(one), Songs{1});
  EXPECT_EQ(library.UBoundOfMp3Array(), 1);
}

TEST_F(Dragging, EveryProblemOfADropIsReported) {
  AddFolder("one");
  Show();
  QMimeData data;
  DropOn("one", Files(data, {music.File("a.txt"), music.File("b.txt")}));
  EXPECT_EQ(problems.size(), 2);
}

TEST_F(Dragging, AFolderIsNotDroppedIntoItselfOrBelow) {
  Folder& one = AddFolder("one");
  AddFolder("inner", {}, &one);
  one.Open(true);
  Show();
  for (const Qt::KeyboardModifiers keys : {Qt::NoModifier, Qt::ControlModifier})
    for (const char* const to : {"one", "one/inner"})
      EXPECT_FALSE(DropOn(to, FolderAt(one).get(), keys));
  EXPECT_EQ(Nodes().Count(), 2);
}

TEST_F(Dragging, ASpecialFolderIsNotMovedButCopied) {
  Folder& artist = AddFolder("Artist");
  Folder& two = AddFolder("two");
  Show();
  DropOn("two", FolderAt(artist).get());
  EXPECT_EQ(messages.Take(),
            Texts{"This is a special node that can not be cut.  It can be copied if you wish."});
  EXPECT_EQ(FoldersIn(), (Texts{"Artist", "two"}));
  DropOn("two", FolderAt(artist).get(), Qt::ControlModifier);
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_EQ(FoldersIn(&two), Texts{"Artist"});
}

TEST_F(Dragging, SongsAndFoldersCanBeDroppedOnAnotherJukeboxWindow) {
  AddSongs(2);
  Folder& one = AddFolder("one", {1, 2});
  Show();
  frmMain other(tallow, messages.Shower());
  other.Jukebox().AddColumnHeader(kNameHeader);
  Folder& there = other.Jukebox().Nodes().AddChild(nullptr, "there");
  other.resize(600, 400);
  other.show();
  other.ShowJukebox();
  FolderTreeView& tree = TreeOf(other);
  const QPoint place = tree.visualRect(IndexOf(tree, "there")).center();
  EXPECT_TRUE(DropAt(tree, place, *SongsAt({1})));
  EXPECT_EQ(SongsOf(one), Songs{1});
  EXPECT_EQ(SongsOf(there), Songs{2});
  EXPECT_EQ(RowsOf(ListOf(other)), QStringList{"1.  2.mp3"});
  // A drop on the list goes to the folder on show.
  EXPECT_TRUE(DropAt(ListOf(other), QPoint(10, 60), *SongsAt({0})));
  EXPECT_EQ(SongsOf(there), (Songs{2, 1}));
  EXPECT_TRUE(DropAt(tree, place, *FolderAt(one)));
  EXPECT_EQ(Nodes().Count(), 0);
  EXPECT_EQ(there.ChildAt(0).Text(), "one");
  EXPECT_EQ(List().model()->rowCount(), 0);
}

TEST_F(Dragging, ADragFromAClosedWindowIsRejected) {
  AddSongs(1);
  AddFolder("two");
  Show();
  auto other = std::make_unique<frmMain>(tallow, messages.Shower());
  other->Jukebox().AddColumnHeader(kNameHeader);
  other->Jukebox().Nodes().AddChild(nullptr, "x").Items().emplace_back(1, 2);
  other->ShowJukebox();
  ListOf(*other).SelectRows(0, 0);
  const auto drag = other->PVExplorer1().SongsToDrag();
  other.reset();
  EXPECT_FALSE(DropOn("two", drag.get()));
}

TEST_F(Dragging, OtherProgramsGetTheFilesOfTheSongs) {
  AddSong(music.path(), "a b#%.mp3");
  AddSong(music.path(), "c.mp3");
  AddFolder("one", {2, 1});
  Show();
  const auto drag = SongsAt({0, 1});
  EXPECT_TRUE(drag->hasFormat("text/uri-list"));
  EXPECT_EQ(drag->urls(),
            (QList<QUrl>{QUrl::fromLocalFile(QString::fromStdString(music / "c.mp3")),
                         QUrl::fromLocalFile(QString::fromStdString(music / "a b#%.mp3"))}));
  EXPECT_EQ(FolderAt(Nodes().ChildAt(0))->urls(), QList<QUrl>());
}

TEST_F(Dragging, WithoutASelectionNothingCanBeDragged) {
  EXPECT_EQ(window.PVExplorer1().SongsToDrag(), nullptr);
  EXPECT_EQ(window.PVExplorer1().FolderToDrag(), nullptr);
}

TEST_F(Dragging, DroppedFilesAreAddedToTheLibraryAndTheFolder) {
  AddSong(music.path(), "known.mp3", "1", "5");
  music.File("known.mp3");
  const std::string fresh = music.File("new/fresh.mp3", Audio(300) + Tag({.artist = "ABBA"}));
  Folder& all = AddFolder("All Songs", {1});
  AddFolder("Artist");
  Folder& mine = AddFolder("mine");
  Show();
  QMimeData data;
  EXPECT_TRUE(DropOn("mine", Files(data, {fresh, music / "known.mp3", music.File("x.txt")})));
  EXPECT_EQ(library.UBoundOfMp3Array(), 2);
  EXPECT_EQ(Cells(1)[1], music / "new/");
  EXPECT_EQ(Cells(5), (Texts{"5", "2"}));
  EXPECT_EQ(SongsOf(mine), (Songs{2, 1}));
  // New songs are filed into automatic folders, as after a search.
  EXPECT_EQ(SongsOf(all), (Songs{1, 2}));
  EXPECT_EQ(FoldersIn(Nodes().Find("Artist")), Texts{"ABBA"});
  EXPECT_EQ(problems, (QStringList{"1 new song", QString::fromStdString(music / "x.txt") +
                                                     " is not an MP3 file and was skipped."}));
  // Undo reverts the drop but not the filing.
  window.PVExplorer1().Undo();
  EXPECT_EQ(SongsOf(mine), Songs{});
  EXPECT_EQ(SongsOf(all), (Songs{1, 2}));
}

TEST_F(Dragging, FilesOnTheEmptyAreaAndOtherDataAreRejected) {
  AddFolder("one");
  Show();
  QMimeData files;
  EXPECT_FALSE(DropBesideTheFolders(Files(files, {music.File("a.mp3")})));
  QMimeData text;
  text.setText("hello");
  EXPECT_FALSE(DropOn("one", &text));
  QMimeData web;
  web.setUrls({QUrl("https://example.org/a.mp3")});
  EXPECT_FALSE(DropOn("one", &web));
  // A URI may name this computer, in any spelling.
  QMimeData here;
  const QByteArray own = QSysInfo::machineHostName().toUtf8();
  here.setData("text/uri-list", "file://" + own.toUpper() + "/m/a.mp3\r\nfile://" + own +
                                    ".example/m/a.mp3\r\nfile://localhost/m/a.mp3\r\n");
  EXPECT_EQ(DraggedFiles(here).size(), 3U);
  if (kSeparator == '/') {
    EXPECT_EQ(DraggedFiles(here), Texts(3, "/m/a.mp3"));
  }
  QMimeData elsewhere;
  elsewhere.setData("text/uri-list", "file://another-machine/m/a.mp3\r\nfile:///m/a%00b.mp3\r\n");
  // Only Windows can open files of another computer by its name.
  EXPECT_EQ(DraggedFiles(elsewhere).empty(), kSeparator == '/');
  EXPECT_EQ(library.UBoundOfMp3Array(), 0);
}

TEST_F(Dragging, HoveringOverAFolderExpandsItAfterADelay) {
  Folder& one = AddFolder("one");
  AddFolder("inner", {}, &one);
  AddFolder("two");
  Show();
  EXPECT_FALSE(Tree().isExpanded(IndexOf(Tree(), "one")));
  const auto drag = FolderAt(*Nodes().Find("two"));
  QDragEnterEvent enter(Tree().visualRect(IndexOf(Tree(), "one")).center(), Qt::MoveAction,
                        drag.get(), Qt::LeftButton, {});
  QApplication::sendEvent(Tree().viewport(), &enter);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Tree().isExpanded(IndexOf(Tree(), "one")); }));
  QDragLeaveEvent leave;
  QApplication::sendEvent(Tree().viewport(), &leave);
}

TEST_F(Dragging, SongsDroppedOnTheirListMoveToTheLine) {
  UseMoreCommands();
  AddSongs(5);
  Folder& one = AddFolder("one", {1, 2, 3, 4, 5});
  Show();
  const auto row = [this](int row) { return List().visualRect(List().model()->index(row, 0)); };
  // The upper half of a row is the place before it, the lower half that after it.
  EXPECT_TRUE(DropAt(List(), row(3).topLeft() + QPoint(9, 2), *SongsAt({0, 1})));
  EXPECT_EQ(SongsOf(one), (Songs{3, 1, 2, 4, 5}));
  EXPECT_EQ(Selected(), (std::vector<int>{1, 2}));
  EXPECT_EQ(RowsOf(List()),
            (QStringList{"1.  3.mp3", "2.  1.mp3", "3.  2.mp3", "4.  4.mp3", "5.  5.mp3"}));
  EXPECT_TRUE(DropAt(List(), row(0).bottomLeft() + QPoint(9, -2), *SongsAt({4})));
  EXPECT_EQ(SongsOf(one), (Songs{3, 5, 1, 2, 4}));
  EXPECT_TRUE(DropAt(List(), row(4).bottomLeft() + QPoint(9, 40), *SongsAt({0})));
  EXPECT_EQ(SongsOf(one), (Songs{5, 1, 2, 4, 3}));
  EXPECT_EQ(Box().History().NameToUndo(), "Move Song");
  window.PVExplorer1().Undo();
  window.PVExplorer1().Undo();
  EXPECT_EQ(Box().History().NameToUndo(), "Move 2 Songs");
  window.PVExplorer1().Undo();
  EXPECT_EQ(SongsOf(one), (Songs{1, 2, 3, 4, 5}));
  EXPECT_FALSE(Box().IsFormDirty());
}

TEST_F(Dragging, WithoutMoreCommandsSongsStayWhereTheyAreInTheirList) {
  AddSongs(3);
  const Folder& one = AddFolder("one", {1, 2, 3});
  Show();
  const QRect last = List().visualRect(List().model()->index(2, 0));
  EXPECT_FALSE(DropAt(List(), last.bottomLeft() + QPoint(9, -2), *SongsAt({0})));
  EXPECT_EQ(SongsOf(one), (Songs{1, 2, 3}));
  EXPECT_FALSE(Box().History().CanUndo());
}

TEST_F(Dragging, ALineShowsWhereSongsGoUntilTheDragEnds) {
  UseMoreCommands();
  AddSongs(3);
  AddFolder("one", {1, 2, 3});
  AddFolder("two", {1});
  Show();
  const auto drag = SongsAt({0});
  const auto& line = *List().findChild<QWidget*>(QStringLiteral("DropLine"));
  const auto move_to = [&](const QPoint& place, Qt::KeyboardModifiers keys = {}) {
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::LinkAction, drag.get(), Qt::LeftButton, keys);
    QApplication::sendEvent(List().viewport(), &enter);
    QDragMoveEvent move(place, Qt::CopyAction | Qt::LinkAction, drag.get(), Qt::LeftButton, keys);
    QApplication::sendEvent(List().viewport(), &move);
    return move.isAccepted();
  };
  const QRect last = List().visualRect(List().model()->index(2, 0));
  EXPECT_TRUE(move_to(last.topLeft() + QPoint(5, 2)));
  EXPECT_TRUE(line.isVisible());
  EXPECT_NEAR(line.geometry().center().y(), last.top(), 1);
  EXPECT_EQ(line.width(), List().viewport()->width());
  EXPECT_TRUE(move_to(last.bottomLeft() + QPoint(5, -1)));
  EXPECT_NEAR(line.geometry().center().y(), last.bottom(), 1);
  // A copy into the same folder is not possible.
  EXPECT_FALSE(move_to(last.topLeft(), Qt::ControlModifier));
  EXPECT_FALSE(line.isVisible());
  EXPECT_TRUE(move_to(last.topLeft()));
  QDragLeaveEvent leave;
  QApplication::sendEvent(List().viewport(), &leave);
  EXPECT_FALSE(line.isVisible());
  // Songs of another folder are added at the end.
  window.PVExplorer1().Select(Nodes().ChildAt(1));
  EXPECT_TRUE(move_to(QPoint(5, 5)));
  EXPECT_FALSE(line.isVisible());
}

TEST_F(Dragging, NearTheEdgeOfTheListADragScrollsIt) {
  UseMoreCommands();
  constexpr int kSongs = 200;
  AddSongs(kSongs);
  Folder& one = AddFolder("one");
  for (int song = 1; song <= kSongs; ++song) one.Items().emplace_back(song, 2);
  Show();
  const auto drag = SongsAt({0});
  const QPoint edge(5, List().viewport()->height() - 2);
  QDragEnterEvent enter(edge, Qt::LinkAction, drag.get(), Qt::LeftButton, {});
  QApplication::sendEvent(List().viewport(), &enter);
  const QScrollBar& bar = *List().verticalScrollBar();
  EXPECT_TRUE(QTest::qWaitFor([&bar] { return bar.value() > 2; }));
  QDragLeaveEvent leave;
  QApplication::sendEvent(List().viewport(), &leave);
}

TEST_F(Dragging, SongsOfAnAutomaticFolderCanBeReordered) {
  UseMoreCommands();
  AddSongs(2);
  Folder& all = AddFolder("All Songs", {1, 2});
  Show();
  EXPECT_TRUE(DropAt(List(), QPoint(9, 1), *SongsAt({1})));
  EXPECT_EQ(SongsOf(all), (Songs{2, 1}));
  EXPECT_EQ(messages.Take(), Texts{});
}

}  // namespace
}  // namespace tallow

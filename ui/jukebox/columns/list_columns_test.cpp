// SPDX-License-Identifier: GPL-3.0-or-later
// The columns of the list: which are shown, their order and widths, their menu, and sorting by
// them.
#include <functional>
#include <future>
#include <stdexcept>

#include <QContextMenuEvent>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>
#include <QTextDocumentFragment>

#include "app/data_paths.h"
#include "details/details_store.h"
#include "details/song_details.h"
#include "tests/jukebox_window_fixture.h"
#include "tests/model_stand_in.h"
#include "ui/jukebox/columns/song_list_delegate.h"
#include "ui/jukebox/song_list_model.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class ListColumns : public JukeboxWindowTest {
 protected:
  ListColumns() {
    // Widths of other runs of the tests must not remain.
    window.resize(1200, 500);
  }

  void AddSongWith(const SongDetails& details, const std::string& rank = "2") {
    const std::string name = std::to_string(library.UBoundOfMp3Array() + 1) + ".mp3";
    AddSong(music.path(), name, "1", rank);
    DetailsStore store;
    store.Open(SystemFolder(application.path()) + std::string(kDetailsFileName));
    store.Put(library.Song(library.UBoundOfMp3Array()).Path(), details);
  }
  void AddSongWith(const std::string& title, const std::string& artist, int year = 0) {
    AddSongWith({.tags = {.found = true,
                          .title = title,
                          .artist = artist,
                          .album = "Album",
                          .date = year == 0 ? "" : std::to_string(year)},
                 .length_ms = 185'000});
  }
  /// Shows the columns of details, and a folder of all songs.
  void ShowDetails() {
    tallow.details.LoadAll();
    UseDetails(true);
    Songs all;
    for (std::int32_t record = 1; record <= library.UBoundOfMp3Array(); ++record)
      all.push_back(record);
    AddFolder("one", all);
    Show();
  }
  void UseDetails(bool on) {
    tallow.preferences.SetSwitches({.columns_of_details = on, .more_commands = on});
    window.FollowPreferences();
  }
  SongListModel& Model() { return *window.findChild<SongListModel*>(); }
  QHeaderView& Headers() { return *List().horizontalHeader(); }
  QStringList HeaderTexts(frmMain& of) {
    QStringList texts;
    const QAbstractItemModel& model = *ListOf(of).model();
    for (int column = 0; column < model.columnCount(); ++column)
      texts.append(model.headerData(column, Qt::Horizontal).toString());
    return texts;
  }
  QStringList HeaderTexts() { return HeaderTexts(window); }
  int IndexOf(ListColumn column) { return Model().IndexOf(column); }
  int WidthOf(ListColumn column) { return Headers().sectionSize(IndexOf(column)); }
  QStringList Texts(ListColumn column) { return RowsOf(List(), IndexOf(column)); }
  void Sort(ListColumn column) {
    const int x = Headers().sectionViewportPosition(IndexOf(column)) +
                  Headers().sectionSize(IndexOf(column)) / 2;
    QTest::mouseClick(Headers().viewport(), Qt::LeftButton, {}, QPoint(x, 8));
  }
  QMenu& Menu() {
    auto* const list_menu = window.findChild<QMenu*>(QStringLiteral("ListMenu"));
    for (const QAction* const item : list_menu->actions())
      if (item->menu() != nullptr && item->menu()->objectName() == QStringLiteral("HeaderMenu"))
        return *item->menu();
    throw std::runtime_error("no menu of the columns");
  }
  QAction& ItemOf(ListColumn column) {
    emit Menu().aboutToShow();
    for (QAction* const item : Menu().actions())
      if (item->isCheckable() && item->data().toString().toStdString() == IdOf(column))
        return *item;
    throw std::runtime_error("no such item");
  }
  QMenu& SubMenu(const char* name) { return *Menu().findChild<QMenu*>(QLatin1String(name)); }
  QStringList TextsOf(const char* name) {
    emit Menu().aboutToShow();
    QStringList texts;
    for (const QAction* const item : SubMenu(name).actions()) texts.append(item->text());
    return texts;
  }
  /// Opens a menu of columns with the keyboard, and chooses an item there.
  void TypeInMenu(const char* name, const char* item) {
    const qsizetype place = TextsOf(name).indexOf(QLatin1String(item));
    ASSERT_GE(place, 0);
    window.Run(ListCommand::kColumns, Box().selectednode());
    while (Menu().activeAction() != SubMenu(name).menuAction())
      QTest::keyClick(&Menu(), Qt::Key_Down);
    QTest::keyClick(&Menu(), Qt::Key_Right);
    for (qsizetype k = 0; k < place; ++k) QTest::keyClick(&SubMenu(name), Qt::Key_Down);
    QTest::keyClick(&SubMenu(name), Qt::Key_Return);
    EXPECT_FALSE(Menu().isVisible());
  }
  QString Reset() { return QStringLiteral("ResetColumns"); }
};

TEST_F(ListColumns, ClassicHasNameAndKey) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  EXPECT_EQ(HeaderTexts(), (QStringList{"Name    --        (click to sort)", "Key"}));
  EXPECT_EQ(RowsOf(List(), 0), QStringList{"1.  1.mp3"});
  EXPECT_EQ(RowsOf(List(), 1), QStringList{"1"});
}

TEST_F(ListColumns, ModernHasDetails) {
  AddSongWith("One", "Somebody", 1999);
  ShowDetails();
  EXPECT_EQ(HeaderTexts(),
            (QStringList{"", "Position", "Title", "Artist", "Album", "Year", "Length", "Rank"}));
  EXPECT_EQ(Texts(ListColumn::kPosition), QStringList{"1"});
  EXPECT_EQ(Texts(ListColumn::kTitle), QStringList{"One"});
  EXPECT_EQ(Texts(ListColumn::kArtist), QStringList{"Somebody"});
  EXPECT_EQ(Texts(ListColumn::kAlbum), QStringList{"Album"});
  EXPECT_EQ(Texts(ListColumn::kYear), QStringList{"1999"});
  EXPECT_EQ(Texts(ListColumn::kLength), QStringList{"3:05"});
}

TEST_F(ListColumns, ASongWithoutDetailsShowsItsFileName) {
  AddSongs(1);
  ShowDetails();
  EXPECT_EQ(Texts(ListColumn::kTitle), QStringList{"1"});
  EXPECT_EQ(Texts(ListColumn::kArtist), QStringList{""});
}

TEST_F(ListColumns, NumbersAreAlignedAtTheRight) {
  AddSongs(1);
  ShowDetails();
  const auto is_right = [this](ListColumn column) {
    const int alignment = Model().index(0, IndexOf(column)).data(Qt::TextAlignmentRole).toInt();
    return (alignment & Qt::AlignRight) != 0;
  };
  EXPECT_TRUE(is_right(ListColumn::kPosition));
  EXPECT_TRUE(is_right(ListColumn::kLength));
  EXPECT_FALSE(is_right(ListColumn::kTitle));
}

TEST_F(ListColumns, TheTitleFillsTheWindow) {
  AddSongs(1);
  ShowDetails();
  EXPECT_EQ(Headers().length(), List().viewport()->width());
  const int artist = WidthOf(ListColumn::kArtist);
  window.resize(1500, 500);
  EXPECT_EQ(Headers().length(), List().viewport()->width());
  EXPECT_EQ(WidthOf(ListColumn::kArtist), artist);
}

TEST_F(ListColumns, TheNameFillsTheWindowInTheClassicStyle) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  EXPECT_EQ(Headers().length(), List().viewport()->width());
  const int name = WidthOf(ListColumn::kName);
  const int key = WidthOf(ListColumn::kKey);
  window.resize(1500, 500);
  EXPECT_EQ(Headers().length(), List().viewport()->width());
  EXPECT_GT(WidthOf(ListColumn::kName), name);
  EXPECT_EQ(WidthOf(ListColumn::kKey), key);
}

TEST_F(ListColumns, ANarrowWindowScrollsSideways) {
  AddSongs(1);
  ShowDetails();
  window.resize(500, 400);
  EXPECT_GT(List().horizontalScrollBar()->maximum(), 0);
  EXPECT_GE(WidthOf(ListColumn::kTitle), 28 * List().fontMetrics().averageCharWidth());
}

TEST_F(ListColumns, ANameBesideATitleHasItsUsualWidth) {
  AddSongs(1);
  ShowDetails();
  ItemOf(ListColumn::kName).trigger();
  const QFontMetrics metrics = List().fontMetrics();
  const int name = WidthOf(ListColumn::kName);
  EXPECT_GE(name, metrics.horizontalAdvance("100.  ") + 28 * metrics.averageCharWidth());
  window.resize(1800, 500);
  EXPECT_EQ(WidthOf(ListColumn::kName), name);
  EXPECT_EQ(Headers().length(), List().viewport()->width());
  // Without a column of ranks, the name has their picture.
  ItemOf(ListColumn::kRank).trigger();
  EXPECT_GE(WidthOf(ListColumn::kName), name + List().iconSize().width());
}

TEST_F(ListColumns, TheUserMakesTheTitleWiderThanItsPlace) {
  AddSongs(1);
  ShowDetails();
  const int title = IndexOf(ListColumn::kTitle);
  const int width = WidthOf(ListColumn::kTitle);
  QWidget* const viewport = Headers().viewport();
  const QPoint edge(Headers().sectionViewportPosition(title) + width - 1, 8);
  const QPoint to = edge + QPoint(150, 0);
  QTest::mousePress(viewport, Qt::LeftButton, {}, edge);
  QMouseEvent move(QEvent::MouseMove, to, viewport->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                   Qt::NoModifier);
  QApplication::sendEvent(viewport, &move);
  QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);
  QCoreApplication::processEvents();
  EXPECT_NEAR(WidthOf(ListColumn::kTitle), width + 150, 2);
  EXPECT_GT(List().horizontalScrollBar()->maximum(), 0);
  window.resize(900, 500);
  EXPECT_NEAR(WidthOf(ListColumn::kTitle), width + 150, 2);
  window.resize(1800, 500);
  EXPECT_EQ(Headers().length(), List().viewport()->width());
  // Other windows and the next start have the width too.
  frmMain other(tallow);
  other.resize(900, 500);
  other.show();
  EXPECT_NEAR(ListOf(other).columnWidth(title), width + 150, 2);
}

TEST_F(ListColumns, TheFirstColumnIsAsWideForTenSongsAsForNine) {
  AddSongs(10);
  Show();
  UseDetails(true);
  Folder& nine = AddFolder("nine", {1, 2, 3, 4, 5, 6, 7, 8, 9});
  Folder& ten = AddFolder("ten", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  window.PVExplorer1().Select(nine);
  const int width = Headers().sectionSize(IndexOf(ListColumn::kPosition));
  window.PVExplorer1().Select(ten);
  EXPECT_EQ(Headers().sectionSize(IndexOf(ListColumn::kPosition)), width);
}

TEST_F(ListColumns, NamesBeginBelowEachOther) {
  AddSongs(10);
  Songs all;
  for (std::int32_t record = 1; record <= 10; ++record) all.push_back(record);
  AddFolder("one", all);
  Show();
  const auto painted = [this](int row) {
    return Model().index(row, IndexOf(ListColumn::kName)).data(SongListModel::kPaintedRole);
  };
  EXPECT_EQ(painted(0).toString(), QChar(0x2007) + QStringLiteral("1.  1.mp3"));
  EXPECT_EQ(painted(9).toString(), "10.  10.mp3");
  EXPECT_EQ(RowsOf(List(), IndexOf(ListColumn::kName)).first(), "1.  1.mp3");
}

TEST_F(ListColumns, WithoutTheSwitchNameAndKeyHaveNoMore) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  EXPECT_FALSE(Headers().sectionsMovable());
  EXPECT_TRUE(Model().index(0, 1).data(Qt::ToolTipRole).isNull());
  EXPECT_EQ(Model().index(0, 1).data(Qt::AccessibleTextRole), "1");
  for (const int section : {0, 1})
    EXPECT_TRUE(Model().headerData(section, Qt::Horizontal, Qt::ToolTipRole).isNull());
  EXPECT_EQ(Headers().sectionSize(1), 10 * List().fontMetrics().averageCharWidth());
  UseDetails(true);
  EXPECT_TRUE(Headers().sectionsMovable());
  EXPECT_EQ(Model().headerData(0, Qt::Horizontal, Qt::ToolTipRole), "Playing");
}

TEST_F(ListColumns, TheFirstColumnsFitBesideATreeAndAQueue) {
  AddSongs(1);
  ShowDetails();
  // A window of 1200 without a tree of 240 and a queue of 280, and their borders.
  window.resize(910, 500);
  const int control = window.PVExplorer1().width() - window.PVExplorer1().handleWidth();
  window.PVExplorer1().setSizes({240, control - 240});
  EXPECT_EQ(List().horizontalScrollBar()->maximum(), 0);
}

TEST_F(ListColumns, ADraggedEdgeMovesTheOthersOnlyWhenItIsReleased) {
  AddSongs(1);
  ShowDetails();
  const int artist = IndexOf(ListColumn::kArtist);
  const auto x = [&] { return Headers().sectionViewportPosition(artist); };
  const int before = x();
  const int width = Headers().sectionSize(artist);
  QWidget* const viewport = Headers().viewport();
  const QPoint edge(before + width - 1, 8);
  QTest::mousePress(viewport, Qt::LeftButton, {}, edge);
  const auto move = [&](const QPoint& to) {
    QMouseEvent event(QEvent::MouseMove, to, viewport->mapToGlobal(to), Qt::NoButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
  };
  move(edge + QPoint(20, 0));
  move(edge + QPoint(30, 0));
  EXPECT_EQ(x(), before);
  EXPECT_NEAR(Headers().sectionSize(artist), width + 30, 2);
  QTest::mouseRelease(viewport, Qt::LeftButton, {}, edge + QPoint(30, 0));
  QCoreApplication::processEvents();
  EXPECT_NEAR(Headers().sectionSize(artist), width + 30, 2);
  EXPECT_NEAR(x(), before - 30, 2);
  EXPECT_EQ(Headers().length(), List().viewport()->width());
}

TEST_F(ListColumns, ColumnsFitTheWindowAfterTheMenuOfTheHeaderWasOpen) {
  AddSongs(1);
  ShowDetails();
  QWidget* const viewport = Headers().viewport();
  // A menu that opens gets the releases.
  QTest::mousePress(viewport, Qt::RightButton, {}, QPoint(60, 8));
  window.resize(1300, 500);
  EXPECT_EQ(Headers().length(), List().viewport()->width());
  QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(60, 8));
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(60, 8),
                          viewport->mapToGlobal(QPoint(60, 8)));
  QApplication::sendEvent(viewport, &event);
  Menu().close();
  window.resize(1400, 500);
  EXPECT_EQ(Headers().length(), List().viewport()->width());
}

TEST_F(ListColumns, ASortAndItsUndoKeepTheListScrolledSideways) {
  AddSongWith("b", "x");
  AddSongWith("a", "x");
  ShowDetails();
  window.resize(500, 400);
  SelectRow(0);
  QScrollBar& bar = *List().horizontalScrollBar();
  bar.setValue(bar.maximum());
  const int scrolled = bar.value();
  ASSERT_GT(scrolled, 0);
  Sort(ListColumn::kYear);
  EXPECT_EQ(bar.value(), scrolled);
  TypeInMenu("SortMenu", "Title");
  EXPECT_EQ(bar.value(), scrolled);
  window.PVExplorer1().Undo();
  EXPECT_EQ(bar.value(), scrolled);
  QTest::keyClick(&List(), Qt::Key_Down);
  EXPECT_EQ(bar.value(), scrolled);
  // The keys that move from column to column scroll.
  for (int key = 0; key < 8; ++key) QTest::keyClick(&List(), Qt::Key_Left);
  for (int key = 0; key < 8; ++key) QTest::keyClick(&List(), Qt::Key_Right);
  EXPECT_EQ(bar.value(), bar.maximum());
  for (int key = 0; key < 8; ++key) QTest::keyClick(&List(), Qt::Key_Left);
  EXPECT_EQ(bar.value(), 0);
}

TEST_F(ListColumns, ABoldSongFitsItsColumns) {
  AddSongWith("a", "x", 2004);
  ShowDetails();
  QFont bold = List().font();
  bold.setBold(true);
  const QFontMetrics metrics(bold);
  for (const ListColumn column : {ListColumn::kYear, ListColumn::kLength}) {
    const QString text = ApartFromNext(Texts(column).first());
    EXPECT_GT(Headers().sectionSize(IndexOf(column)), metrics.horizontalAdvance(text));
  }
}

TEST_F(ListColumns, TheCurrentRowIsFramedWithoutASelection) {
  AddSongs(3);
  ShowDetails();
  window.activateWindow();
  List().setFocus();
  List().selectionModel()->setCurrentIndex(Model().index(1, 0), QItemSelectionModel::NoUpdate);
  List().clearSelection();
  ASSERT_TRUE(QTest::qWaitFor([this] { return List().hasFocus(); }));
  const auto colour = [this] {
    const QRect cell = List().visualRect(Model().index(1, IndexOf(ListColumn::kAlbum)));
    const QImage image = List().viewport()->grab().toImage();
    return image.pixelColor(cell.center().x(), cell.top());
  };
  const QColor frame = List().palette().color(QPalette::Highlight);
  EXPECT_EQ(colour(), frame);
  List().selectionModel()->setCurrentIndex(Model().index(2, 0), QItemSelectionModel::NoUpdate);
  EXPECT_NE(colour(), frame);
}

TEST_F(ListColumns, TheFrameOfTheCurrentRowStaysAtTheEdgesOfTheWindow) {
  AddSongs(3);
  ShowDetails();
  window.resize(500, 400);
  window.activateWindow();
  List().setFocus();
  List().selectionModel()->setCurrentIndex(Model().index(1, 0), QItemSelectionModel::NoUpdate);
  List().clearSelection();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  const auto on_screen = [this] {
    QTest::qWait(1);
    return window.screen()->grabWindow(window.winId()).toImage();
  };
  const QImage before = on_screen();
  List().horizontalScrollBar()->setValue(30);
  const QImage scrolled = on_screen();
  ASSERT_NE(scrolled, before);
  List().viewport()->update();
  EXPECT_EQ(on_screen(), scrolled);
}

TEST_F(ListColumns, TheMenuShowsAndHidesColumns) {
  AddSongs(1);
  ShowDetails();
  EXPECT_TRUE(ItemOf(ListColumn::kAlbum).isChecked());
  ItemOf(ListColumn::kAlbum).trigger();
  EXPECT_EQ(IndexOf(ListColumn::kAlbum), -1);
  EXPECT_FALSE(ItemOf(ListColumn::kAlbum).isChecked());
  ItemOf(ListColumn::kFormat).trigger();
  EXPECT_EQ(HeaderTexts().last(), "Format");
  const auto& reset = *Menu().findChild<QAction*>(Reset());
  emit Menu().aboutToShow();
  EXPECT_TRUE(reset.isEnabled());
  Menu().findChild<QAction*>(Reset())->trigger();
  EXPECT_EQ(HeaderTexts(),
            (QStringList{"", "Position", "Title", "Artist", "Album", "Year", "Length", "Rank"}));
  emit Menu().aboutToShow();
  EXPECT_FALSE(reset.isEnabled());
}

TEST_F(ListColumns, TheLastColumnCannotBeHidden) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  ItemOf(ListColumn::kKey).trigger();
  EXPECT_FALSE(ItemOf(ListColumn::kName).isEnabled());
  EXPECT_TRUE(ItemOf(ListColumn::kKey).isEnabled());
}

TEST_F(ListColumns, TheMenuNamesEveryColumn) {
  QStringList texts;
  for (const QAction* const item : Menu().actions())
    if (item->isCheckable()) texts.append(item->text());
  EXPECT_EQ(texts, (QStringList{"Name", "Key", "Playing", "Position", "Title", "Artist", "Album",
                                "Disc/Track", "Year", "Genre", "Length", "Rank", "Plays",
                                "Last Played", "Added", "Format", "Bit Rate", "Folder"}));
}

TEST_F(ListColumns, TheHeaderAndTheListOpenTheMenu) {
  AddSongs(1);
  AddFolder("one", {1});
  Show();
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(20, 5),
                          Headers().viewport()->mapToGlobal(QPoint(20, 5)));
  QApplication::sendEvent(Headers().viewport(), &event);
  EXPECT_TRUE(Menu().isVisible());
  Menu().close();
  window.Run(ListCommand::kColumns, window.Jukebox().selectednode());
  EXPECT_TRUE(Menu().isVisible());
  Menu().close();
}

TEST_F(ListColumns, ColumnsAreKeptForEachStyleAndForOtherWindows) {
  AddSongs(1);
  ShowDetails();
  ItemOf(ListColumn::kYear).trigger();
  const QStringList modern = HeaderTexts();
  UseDetails(false);
  EXPECT_EQ(HeaderTexts().size(), 2);
  ItemOf(ListColumn::kPlays).trigger();
  UseDetails(true);
  EXPECT_EQ(HeaderTexts(), modern);
  frmMain other(tallow);
  EXPECT_EQ(HeaderTexts(other), modern);
}

TEST_F(ListColumns, TheJukeboxKeepsItsTwoHeaders) {
  AddSongs(1);
  ShowDetails();
  EXPECT_EQ(Box().ColumnHeaders(),
            (std::vector<std::string>{std::string(kNameHeader), std::string(kKeyHeader)}));
}

TEST_F(ListColumns, ADraggedHeaderMovesItsColumn) {
  AddSongs(1);
  ShowDetails();
  // The view moves the section when the button is released.
  Headers().moveSection(IndexOf(ListColumn::kAlbum), IndexOf(ListColumn::kTitle));
  QTest::mouseRelease(Headers().viewport(), Qt::LeftButton, {}, QPoint(2, 2));
  QCoreApplication::processEvents();
  EXPECT_EQ(HeaderTexts(),
            (QStringList{"", "Position", "Album", "Title", "Artist", "Year", "Length", "Rank"}));
  for (int column = 0; column < Headers().count(); ++column)
    EXPECT_EQ(Headers().visualIndex(column), column);
  EXPECT_EQ(ColumnsOf(tallow.preferences, true)[2].column, ListColumn::kAlbum);
}

TEST_F(ListColumns, TheMouseDragsAHeaderWithoutSorting) {
  AddSongWith("b", "x");
  AddSongWith("a", "x");
  ShowDetails();
  const auto middle = [this](ListColumn column) {
    return QPoint(Headers().sectionViewportPosition(IndexOf(column)) +
                      Headers().sectionSize(IndexOf(column)) / 2,
                  8);
  };
  QWidget* const viewport = Headers().viewport();
  const QPoint to = middle(ListColumn::kTitle) - QPoint(30, 0);
  QTest::mousePress(viewport, Qt::LeftButton, {}, middle(ListColumn::kAlbum));
  QTest::mouseMove(viewport, middle(ListColumn::kArtist));
  QTest::mouseMove(viewport, to);
  QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);
  QCoreApplication::processEvents();
  EXPECT_EQ(HeaderTexts().mid(2, 3), (QStringList{"Album", "Title", "Artist"}));
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"b", "a"}));
  EXPECT_FALSE(Box().History().CanUndo());
}

TEST_F(ListColumns, TheArrowComesBackAfterASearch) {
  AddSongWith("b", "x");
  AddSongWith("a", "x");
  ShowDetails();
  Sort(ListColumn::kTitle);
  window.PVExplorer1().ShowHits({1});
  EXPECT_FALSE(Headers().isSortIndicatorShown());
  window.PVExplorer1().HideHits();
  EXPECT_TRUE(Headers().isSortIndicatorShown());
  EXPECT_EQ(Headers().sortIndicatorSection(), IndexOf(ListColumn::kTitle));
  Sort(ListColumn::kTitle);
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"b", "a"}));
  // Another folder has no arrow.
  window.PVExplorer1().ShowHits({1});
  window.PVExplorer1().Select(*Box().Nodes().Find("one"));
  Sort(ListColumn::kArtist);
  window.PVExplorer1().ShowHits({1});
  window.PVExplorer1().Select(AddFolder("two"));
  EXPECT_FALSE(Headers().isSortIndicatorShown());
}

TEST_F(ListColumns, ASongThatIsAddedDuringASearchTakesTheArrow) {
  AddSongWith("b", "x");
  AddSongWith("a", "x");
  ShowDetails();
  Sort(ListColumn::kTitle);
  window.PVExplorer1().ShowHits({1});
  AddSongWith("c", "x");
  window.PVExplorer1().AddSongs(*Box().selectednode(), {{3, 2}});
  window.PVExplorer1().HideHits();
  EXPECT_FALSE(Headers().isSortIndicatorShown());
}

TEST_F(ListColumns, TheArrowStaysWhenSongsLeaveTheList) {
  for (const char* const title : {"b", "a", "d", "c"}) AddSongWith(title, "x");
  ShowDetails();
  Sort(ListColumn::kTitle);
  SelectRow(1);
  QTest::keyClick(&List(), Qt::Key_Delete);
  EXPECT_TRUE(Headers().isSortIndicatorShown());
  window.PVExplorer1().Undo();
  EXPECT_TRUE(Headers().isSortIndicatorShown());
  window.PVExplorer1().Redo();
  // A song whose file is gone.
  library.Mp3Info(kFileIsThere, 3, "0");
  Box().ListRefilled(library);
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"a", "c"}));
  EXPECT_TRUE(Headers().isSortIndicatorShown());
  EXPECT_EQ(Headers().sortIndicatorSection(), IndexOf(ListColumn::kTitle));
  Sort(ListColumn::kTitle);
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"c", "a"}));
  EXPECT_EQ(Headers().sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(ListColumns, TheArrowStaysWhenASongGetsAnotherRecordNumber) {
  for (const char* const title : {"b", "a"}) AddSongWith(title, "x");
  ShowDetails();
  Sort(ListColumn::kTitle);
  AddSongWith("a", "x");
  Box().Renumber({{2, 3}});
  Box().ListRefilled(library);
  EXPECT_EQ(SongsOf(*Box().selectednode()), (Songs{3, 1}));
  EXPECT_TRUE(Headers().isSortIndicatorShown());
}

TEST_F(ListColumns, AnotherOrderAndNewSongsTakeTheArrow) {
  for (const char* const title : {"b", "a", "c"}) AddSongWith(title, "x");
  ShowDetails();
  Sort(ListColumn::kTitle);
  SelectRow(2);
  QTest::keyClick(&List(), Qt::Key_Up, Qt::AltModifier);
  EXPECT_FALSE(Headers().isSortIndicatorShown());
  Sort(ListColumn::kTitle);
  EXPECT_TRUE(Headers().isSortIndicatorShown());
  window.PVExplorer1().Undo();
  EXPECT_FALSE(Headers().isSortIndicatorShown());
  Sort(ListColumn::kTitle);
  AddSongWith("d", "x");
  window.PVExplorer1().AddSongs(*Box().selectednode(), {{4, 2}});
  EXPECT_FALSE(Headers().isSortIndicatorShown());
}

TEST_F(ListColumns, AWidthIsKept) {
  AddSongs(1);
  ShowDetails();
  Headers().resizeSection(IndexOf(ListColumn::kArtist), 222);
  QTest::mouseRelease(Headers().viewport(), Qt::LeftButton, {}, QPoint(2, 2));
  QCoreApplication::processEvents();
  frmMain other(tallow);
  other.resize(1200, 500);
  other.show();
  EXPECT_NEAR(ListOf(other).columnWidth(IndexOf(ListColumn::kArtist)), 222, 2);
}

TEST_F(ListColumns, AClickOnAColumnSortsByIt) {
  AddSongWith("b", "Zoe");
  AddSongWith("A", "émile");
  AddSongWith("song 10", "Emil");
  AddSongWith("song 9", "");
  ShowDetails();
  Sort(ListColumn::kTitle);
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"A", "b", "song 9", "song 10"}));
  EXPECT_EQ(Texts(ListColumn::kPosition), (QStringList{"1", "2", "3", "4"}));
  EXPECT_TRUE(Headers().isSortIndicatorShown());
  EXPECT_EQ(Headers().sortIndicatorSection(), IndexOf(ListColumn::kTitle));
  EXPECT_EQ(Headers().sortIndicatorOrder(), Qt::AscendingOrder);
  Sort(ListColumn::kTitle);
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"song 10", "song 9", "b", "A"}));
  EXPECT_EQ(Headers().sortIndicatorOrder(), Qt::DescendingOrder);
  Sort(ListColumn::kArtist);
  EXPECT_EQ(Texts(ListColumn::kArtist), (QStringList{"Emil", "émile", "Zoe", ""}));
  EXPECT_EQ(Headers().sortIndicatorSection(), IndexOf(ListColumn::kArtist));
  EXPECT_EQ(Headers().sortIndicatorOrder(), Qt::AscendingOrder);
}

TEST_F(ListColumns, TheFirstClickOnRanksShowsTheBestFirst) {
  for (const char* const rank : {"3", "7", "2"}) AddSongWith(SongDetails{}, rank);
  ShowDetails();
  Sort(ListColumn::kRank);
  EXPECT_EQ(Headers().sortIndicatorOrder(), Qt::DescendingOrder);
  EXPECT_EQ(SongsOf(*Box().selectednode()), (Songs{2, 1, 3}));
  Sort(ListColumn::kRank);
  EXPECT_EQ(Headers().sortIndicatorOrder(), Qt::AscendingOrder);
  EXPECT_EQ(SongsOf(*Box().selectednode()), (Songs{1, 2, 3}));
}

TEST_F(ListColumns, TheKeyboardSortsByTheMenu) {
  AddSongWith("b", "x");
  AddSongWith("a", "x");
  ShowDetails();
  EXPECT_EQ(TextsOf("SortMenu"),
            (QStringList{"Title", "Artist", "Album", "Year", "Length", "Rank"}));
  TypeInMenu("SortMenu", "Title");
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"a", "b"}));
  EXPECT_EQ(Headers().sortIndicatorSection(), IndexOf(ListColumn::kTitle));
  TypeInMenu("SortMenu", "Title");
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"b", "a"}));
  window.PVExplorer1().Undo();
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"a", "b"}));
}

TEST_F(ListColumns, TheMenuChecksTheColumnOfTheSort) {
  AddSongWith("b", "x");
  ShowDetails();
  const auto checked = [this] {
    emit Menu().aboutToShow();
    QStringList texts;
    for (const QAction* const item : SubMenu("SortMenu").actions())
      if (item->isChecked()) texts.append(item->text());
    return texts;
  };
  EXPECT_EQ(checked(), QStringList());
  Sort(ListColumn::kArtist);
  EXPECT_EQ(checked(), QStringList{"Artist"});
}

TEST_F(ListColumns, TheKeyboardMovesColumnsByTheMenu) {
  AddSongs(1);
  ShowDetails();
  TypeInMenu("MoveLeftMenu", "Artist");
  EXPECT_EQ(HeaderTexts().mid(1, 3), (QStringList{"Position", "Artist", "Title"}));
  TypeInMenu("MoveRightMenu", "Artist");
  TypeInMenu("MoveRightMenu", "Artist");
  EXPECT_EQ(HeaderTexts().mid(1, 4), (QStringList{"Position", "Title", "Album", "Artist"}));
  EXPECT_EQ(ColumnsOf(tallow.preferences, true)[4].column, ListColumn::kArtist);
  // The outer columns cannot move further.
  EXPECT_EQ(TextsOf("MoveLeftMenu").first(), "Position");
  EXPECT_EQ(TextsOf("MoveRightMenu").last(), "Length");
}

TEST_F(ListColumns, ASortIsAStepOfUndo) {
  AddSongWith("b", "x");
  AddSongWith("a", "x");
  ShowDetails();
  Sort(ListColumn::kTitle);
  window.PVExplorer1().Undo();
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"b", "a"}));
  EXPECT_FALSE(Headers().isSortIndicatorShown());
  window.PVExplorer1().Redo();
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"a", "b"}));
}

TEST_F(ListColumns, TheSelectionFollowsASort) {
  AddSongWith("b", "x");
  AddSongWith("a", "x");
  ShowDetails();
  SelectRow(0);
  Sort(ListColumn::kTitle);
  EXPECT_EQ(Selected(), std::vector<int>{1});
}

TEST_F(ListColumns, TheSelectionFollowsTheEntryOfASongThatTheFolderHoldsTwice) {
  AddSongWith("a", "Zoe");
  AddSongWith("b", "Zoe");
  AddSongWith("c", "Adam");
  Folder& one = AddFolder("first", {1, 2, 1, 3});
  ShowDetails();
  ASSERT_EQ(Box().selectednode(), &one);
  SelectRow(2);
  Sort(ListColumn::kArtist);
  EXPECT_EQ(SongsOf(one), (Songs{3, 1, 2, 1}));
  EXPECT_EQ(Selected(), std::vector<int>{3});
  window.PVExplorer1().Undo();
  EXPECT_EQ(Selected(), std::vector<int>{2});
}

TEST_F(ListColumns, AnotherFolderHasNoArrow) {
  AddSongWith("a", "x");
  Folder& other = AddFolder("other", {1});
  ShowDetails();
  Sort(ListColumn::kTitle);
  EXPECT_TRUE(Headers().isSortIndicatorShown());
  window.PVExplorer1().Select(Box().selectednode() == &other ? Nodes().ChildAt(1) : other);
  EXPECT_FALSE(Headers().isSortIndicatorShown());
}

TEST_F(ListColumns, PlayingAndPositionDoNotSort) {
  AddSongWith("b", "x");
  AddSongWith("a", "x");
  ShowDetails();
  Sort(ListColumn::kPosition);
  Sort(ListColumn::kPlaying);
  EXPECT_EQ(Texts(ListColumn::kTitle), (QStringList{"b", "a"}));
  EXPECT_FALSE(Headers().isSortIndicatorShown());
  EXPECT_FALSE(Box().History().CanUndo());
}

TEST_F(ListColumns, TheNameKeepsItsFourOrders) {
  AddSongWith("b", "x");
  AddSongWith("a", "x");
  ShowDetails();
  ItemOf(ListColumn::kName).trigger();
  Sort(ListColumn::kTitle);
  Sort(ListColumn::kName);
  EXPECT_FALSE(Headers().isSortIndicatorShown());
  EXPECT_EQ(Texts(ListColumn::kName), (QStringList{"1.  1.mp3", "2.  2.mp3"}));
  Sort(ListColumn::kName);
  EXPECT_EQ(Texts(ListColumn::kName), (QStringList{"1.  2.mp3", "2.  1.mp3"}));
  Sort(ListColumn::kName);
  EXPECT_EQ(HeaderTexts().first(), "By Rank -- best to worst");
}

TEST_F(ListColumns, TypingFindsATitle) {
  AddSongWith("Yesterday", "x");
  AddSongWith("Help", "x");
  ShowDetails();
  SelectRow(0);
  QTest::keyClicks(&List(), "help");
  EXPECT_EQ(Selected(), std::vector<int>{1});
}

TEST_F(ListColumns, TheFirstCellSpeaksTheWholeRow) {
  AddSongWith("One", "Somebody", 1999);
  ShowDetails();
  const auto spoken = [this](ListColumn column) {
    return Model().index(0, IndexOf(column)).data(Qt::AccessibleTextRole).toString();
  };
  EXPECT_EQ(spoken(ListColumn::kPlaying), "1, One, Somebody, Album, 1999, 3:05, not ranked");
  EXPECT_EQ(spoken(ListColumn::kTitle), spoken(ListColumn::kPlaying));
  EXPECT_EQ(spoken(ListColumn::kArtist), "Somebody");
  EXPECT_EQ(spoken(ListColumn::kRank), "not ranked");
  EXPECT_EQ(Model().headerData(0, Qt::Horizontal, Qt::AccessibleTextRole).toString(), "Playing");
}

TEST_F(ListColumns, TheTooltipOfATitleHasWhatIsKnownLineByLine) {
  AddSongWith("One", "Somebody", 1999);
  AddSongWith("<b>One", "", 0);
  ShowDetails();
  const auto tooltip = [this](int row, ListColumn column) {
    return Model().index(row, IndexOf(column)).data(Qt::ToolTipRole).toString();
  };
  const QString lines =
      "Title: One\nArtist: Somebody\nAlbum: Album\nYear: 1999\nLength: 3:05\nNot ranked";
  EXPECT_EQ(tooltip(0, ListColumn::kPlaying), lines);
  EXPECT_EQ(tooltip(0, ListColumn::kTitle), lines);
  EXPECT_EQ(tooltip(0, ListColumn::kArtist), "Somebody");
  EXPECT_EQ(tooltip(0, ListColumn::kRank), "not ranked");
  EXPECT_EQ(QTextDocumentFragment::fromHtml(tooltip(1, ListColumn::kTitle)).toPlainText(),
            "Title: <b>One\nAlbum: Album\nLength: 3:05\nNot ranked");
}

TEST_F(ListColumns, TheMarkIsInTheColumnPlaying) {
  AddSongs(2);
  ModelStandIn player;
  window.SetPlayer(&player);
  window.ShowMarks(true);
  ShowDetails();
  ItemOf(ListColumn::kName).trigger();
  const auto has_picture = [this](int row, ListColumn column) {
    return !Model().index(row, IndexOf(column)).data(Qt::DecorationRole).isNull();
  };
  EXPECT_FALSE(has_picture(1, ListColumn::kPlaying));
  player.Play(2, 200);
  EXPECT_TRUE(has_picture(1, ListColumn::kPlaying));
  EXPECT_FALSE(has_picture(0, ListColumn::kPlaying));
  EXPECT_FALSE(has_picture(1, ListColumn::kName));
  EXPECT_TRUE(Model()
                  .index(1, IndexOf(ListColumn::kPlaying))
                  .data(Qt::ToolTipRole)
                  .toString()
                  .contains("\nPlaying"));
  window.SetPlayer(nullptr);
}

TEST_F(ListColumns, ANameHasThePicturesThatHaveNoColumn) {
  AddSongs(1);
  ShowDetails();
  ItemOf(ListColumn::kName).trigger();
  const auto picture = [this] {
    return Model().index(0, IndexOf(ListColumn::kName)).data(Qt::DecorationRole);
  };
  EXPECT_TRUE(picture().isNull());
  ItemOf(ListColumn::kRank).trigger();
  EXPECT_FALSE(picture().isNull());
}

TEST_F(ListColumns, DetailsThatAreReadLaterAreShown) {
  AddSongs(1);
  music.File("1.mp3");
  AddFolder("one", {1});
  UseDetails(true);
  Show();
  EXPECT_EQ(Texts(ListColumn::kTitle), QStringList{"1"});
  std::promise<void> may_read;
  const std::shared_future<void> permission(may_read.get_future());
  tallow.details.Start(library, [permission] {
    return [permission](const std::string& path, const std::function<bool()>& /*stopped*/) {
      permission.wait();
      return SongDetails{.tags = {.found = true, .title = "One"},
                         .stamp = StampOf(path).value_or(FileStamp())};
    };
  });
  window.ShowNewDetails();
  int changes = 0;
  QObject::connect(&Model(), &QAbstractItemModel::dataChanged, [&changes] { ++changes; });
  window.ShowNewDetails();
  EXPECT_EQ(changes, 0);
  may_read.set_value();
  EXPECT_TRUE(QTest::qWaitFor([&] {
    tallow.details.Poll();
    window.ShowNewDetails();
    return changes > 0;
  }));
  EXPECT_EQ(Texts(ListColumn::kTitle), QStringList{"One"});
  tallow.details.Stop();
}

}  // namespace
}  // namespace tallow

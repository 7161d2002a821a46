// SPDX-License-Identifier: GPL-3.0-or-later
// The properties of songs, by the real keys, menus and dialog.
#include "ui/frame/frame_properties.h"

#include <gtest/gtest.h>

#include <QContextMenuEvent>
#include <QMenu>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QTreeWidget>

#include "tests/frame_fixture.h"
#include "ui/dialogs/frm_properties.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

class PropertiesOfSongs : public FrameTest {
 protected:
  PropertiesOfSongs() {
    tallow.preferences.SetSwitches({.more_commands = true});
    window = &ShowJukebox();
    Box().Caption("MINE");
    Folder& above = Box().Nodes().AddChild(nullptr, "above");
    Folder& below = Box().Nodes().AddChild(&above, "below");
    below.Items().emplace_back(2, 2);
    QApplication::setActiveWindow(&frame);
    Q_UNUSED(QTest::qWaitForWindowActive(&frame));
  }

  Jukebox& Box() { return window->Jukebox(); }
  PVExplorer& Explorer() { return window->PVExplorer1(); }
  SongListView& List() { return *window->findChild<SongListView*>(QStringLiteral("ListView")); }
  FolderTreeView& Tree() { return *window->findChild<FolderTreeView*>(QStringLiteral("TreeView")); }

  /// Calls `open`, and `act` with the dialog that it opens; closes the dialog.
  template <typename Open, typename Act>
  bool WithDialog(const Open& open, const Act& act) {
    bool was_open = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      auto* const dialog = qobject_cast<frmProperties*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      timer.stop();
      was_open = true;
      act(*dialog);
      dialog->accept();
    });
    timer.start(5);
    open();
    return was_open;
  }
  static QStringList Rows(const QDialog& dialog, const char* name) {
    QStringList rows;
    const auto* const list = dialog.findChild<QTreeWidget*>(QLatin1String(name));
    for (int row = 0; list != nullptr && row < list->topLevelItemCount(); ++row)
      rows += list->topLevelItem(row)->text(0) + ": " + list->topLevelItem(row)->text(1);
    return rows;
  }
  void AltEnter(QWidget& in) { QTest::keyClick(&in, Qt::Key_Return, Qt::AltModifier); }
  QString Status() { return frame.statusBar()->currentMessage(); }

  frmMain* window = nullptr;
};

TEST_F(PropertiesOfSongs, AltEnterInTheListShowsThoseOfTheSong) {
  List().SelectRows(1, 1);
  EXPECT_TRUE(WithDialog(
      [this] { AltEnter(List()); },
      [this](const QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Properties of \"b\"");
        EXPECT_TRUE(Rows(dialog, "lstProperties").contains("File Name: b.mp3"));
        EXPECT_EQ(Rows(dialog, "lstFolders"), (QStringList{"MINE: one", "MINE: above / below"}));
      }));
}

TEST_F(PropertiesOfSongs, OfSeveralSongsAreThoseOfAllSelected) {
  List().SelectRows(0, 1);
  EXPECT_TRUE(WithDialog([this] { AltEnter(List()); },
                         [](const QDialog& dialog) {
                           EXPECT_EQ(dialog.windowTitle(), "Properties of 2 Songs");
                           const QStringList rows = Rows(dialog, "lstProperties");
                           EXPECT_TRUE(rows.contains("Songs: 2 songs"));
                           EXPECT_TRUE(rows.contains("File Name: (different)"));
                           EXPECT_TRUE(Rows(dialog, "lstFolders").isEmpty());
                         }));
}

TEST_F(PropertiesOfSongs, TheFileOfTheSongIsShownOrAMessageSaysWhyNot) {
  std::string shown;
  bool fails = false;
  frame.Properties().OnShowFile([&](const std::string& path, const std::function<void()>& failed) {
    shown = path;
    if (fails) failed();
  });
  const auto show = [this] {
    EXPECT_TRUE(WithDialog([this] { AltEnter(List()); },
                           [](const QDialog& dialog) {
                             dialog.findChild<QPushButton*>(QStringLiteral("cmdShowFile"))->click();
                           }));
  };
  List().SelectRows(1, 1);
  show();
  EXPECT_EQ(shown, music.path() + "b.mp3");
  EXPECT_EQ(messages.Take(), Texts{});
  fails = true;
  show();
  EXPECT_EQ(messages.Take(),
            Texts{"No file manager could be opened. The file is\n\n    " + music.path() + "b.mp3"});
}

TEST_F(PropertiesOfSongs, WithoutASelectionTheStatusBarSaysSo) {
  List().clearSelection();
  AltEnter(List());
  EXPECT_EQ(Status(), "No song is selected.");
}

TEST_F(PropertiesOfSongs, AltEnterInTheTreeShowsThoseOfTheFoldersSongs) {
  Explorer().Select(*Box().Nodes().Find("above"));
  EXPECT_TRUE(WithDialog([this] { AltEnter(Tree()); },
                         [](const QDialog& dialog) {
                           EXPECT_EQ(dialog.windowTitle(), "Properties of the Songs of \"above\"");
                           EXPECT_TRUE(Rows(dialog, "lstProperties").contains("Title: b"));
                         }));
  Explorer().Select(Box().Nodes().AddChild(nullptr, "empty"));
  AltEnter(Tree());
  EXPECT_EQ(Status(), "This folder holds no songs.");
}

TEST_F(PropertiesOfSongs, AreTheLastItemOfBothPopUps) {
  for (const char* const name : {"ListMenu", "TreeMenu"}) {
    const QAction& last = *window->findChild<QMenu*>(QLatin1String(name))->actions().back();
    EXPECT_EQ(last.text(), "Pr&operties...");
    EXPECT_EQ(last.shortcut().toString(QKeySequence::NativeText), "Alt+Enter");
  }
  List().SelectRows(0, 0);
  QAction& item = *window->findChild<QMenu*>(QStringLiteral("ListMenu"))->actions().back();
  EXPECT_TRUE(WithDialog([&] { item.trigger(); }, [](const QDialog&) {}));
}

TEST_F(PropertiesOfSongs, AFolderOfTheDialogIsShownWithTheSong) {
  frmMain& other = frame.NewJukeboxWindow();
  other.Jukebox().Nodes().AddChild(nullptr, "empty");
  Folder& folder = other.Jukebox().Nodes().AddChild(nullptr, "two");
  folder.Items().emplace_back(1, 2);
  folder.Items().emplace_back(2, 2);
  frame.ShowJukeboxWindow(other);
  Area().setActiveSubWindow(&SubOf(*window));
  List().SelectRows(1, 1);
  EXPECT_TRUE(WithDialog([this] { AltEnter(List()); },
                         [](const QDialog& dialog) {
                           auto* const list =
                               dialog.findChild<QTreeWidget*>(QStringLiteral("lstFolders"));
                           list->setCurrentItem(list->topLevelItem(2));
                           QTest::keyClick(list, Qt::Key_Return);
                         }));
  EXPECT_EQ(Area().currentSubWindow(), &SubOf(other));
  EXPECT_EQ(other.Jukebox().selectednode(), &folder);
  EXPECT_EQ(other.PVExplorer1().SelectedRows(), std::vector<int>{1});
}

}  // namespace
}  // namespace tallow

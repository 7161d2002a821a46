// SPDX-License-Identifier: GPL-3.0-or-later
// Filing songs again, and following the switches, with the real menus, pop-ups and dialogs.
#include "ui/frame/frame_filing.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDialog>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QTest>
#include <QTreeView>

#include "jukebox/special_folders.h"
#include "tests/frame_fixture.h"
#include "tests/id3v2_tag.h"
#include "tests/tagged_file.h"
#include "ui/dialogs/frm_searching.h"
#include "ui/jukebox/pv_explorer.h"

namespace tallow {
namespace {

class FrameFilingTest : public FrameTest {
 protected:
  FrameFilingTest() {
    tallow.preferences.Load(PreferencesPath(tallow.application_folder));
    TagFile("a.mp3", "ABBA");
    TagFile("b.mp3", "Queens of the Stone Age");
    music.File("c.aac", Id3v2Tag({{"TPE1", "Кино"}, {"TALB", "Звезда"}}) + Audio(300));
    library.Save();
    window = &ShowJukebox();
    FolderTree& tree = Box().Nodes();
    for (const char* const text : {"All Songs", "Artist", "New"}) tree.AddChild(nullptr, text);
    for (const std::int32_t song : {1, 2}) tree.Find("All Songs")->Items().emplace_back(song, 2);
    Folder& queen = tree.AddChild(tree.Find("Artist"), "Queen");
    queen.Items().emplace_back(2, 2);
    searches.for_songs = [this](SearchProgress&) {
      library.AddSong(music.path(), "c.aac", kUnknownSize);
      return true;
    };
  }

  void TagFile(const std::string& name, const std::string& artist) {
    music.File(name, Id3v2Tag({{"TPE1", artist}, {"TALB", "Hits"}}) + Audio(300) +
                         Tag({.artist = artist}));
  }
  Jukebox& Box() { return window->Jukebox(); }
  PVExplorer& Explorer() { return window->PVExplorer1(); }
  QTreeView& Tree() { return *window->findChild<QTreeView*>(QStringLiteral("TreeView")); }
  QMenu& TreeMenu() { return *window->findChild<QMenu*>(QStringLiteral("TreeMenu")); }
  Folder& Top(const char* text) { return *Box().Nodes().Find(text); }
  /// The folders of the tree below "Artist" that are shown.
  QStringList ShownArtists() {
    const QModelIndex artist = IndexOf(Tree(), "Artist");
    QStringList texts;
    for (int row = 0; row < Tree().model()->rowCount(artist); ++row)
      if (!Tree().isRowHidden(row, artist))
        texts.append(Tree().model()->index(row, 0, artist).data().toString());
    return texts;
  }
  QString Status() { return frame.statusBar()->currentMessage(); }
  /// Opens the preferences, calls `act`, and closes them.
  void WithPreferences(const std::function<void(QDialog&)>& act) {
    bool was_open = false;
    QTimer::singleShot(0, [&] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
      act(*dialog);
      was_open = true;
      dialog->findChild<QPushButton*>(QStringLiteral("cmdClose"))->click();
    });
    Item("mnuPreferences").trigger();
    EXPECT_TRUE(was_open);
  }
  static void Click(QDialog& dialog, const char* name) {
    dialog.findChild<QAbstractButton*>(QLatin1String(name))->click();
  }

  frmMain* window = nullptr;
};

TEST_F(FrameFilingTest, TheMenuFilesTheSelectionElseTheFolder) {
  TagFile("a.mp3", "ABBA Gold");
  TagFile("b.mp3", "Queens");
  Explorer().SelectSong(Top("All Songs"), 0);
  Item("mnuFileAgainByTags").trigger();
  EXPECT_EQ(Status(), "1 song was filed again by the tags.");
  EXPECT_EQ(ShownArtists(), (QStringList{"Queen", "ABBA Gold"}));
  library.UseSwitches({.whole_artists = true});
  Explorer().Select(Top("Artist"));
  Item("mnuFileAgainByTags").trigger();
  EXPECT_EQ(Status(), "2 songs were filed again by the tags.");
  EXPECT_EQ(ShownArtists(), (QStringList{"ABBA Gold", "Queens"}));
  EXPECT_EQ(Box().selectednode(), &Top("Artist"));
  Explorer().Undo();
  EXPECT_EQ(ShownArtists(), (QStringList{"Queen", "ABBA Gold"}));
}

TEST_F(FrameFilingTest, TheMenuSaysThatNoJukeboxIsOpen) {
  SubOf(*window).close();
  DeleteClosedWindows();
  Item("mnuFileAgainByTags").trigger();
  EXPECT_TRUE(Status().startsWith("No jukebox is open."));
}

TEST_F(FrameFilingTest, AWholeStyleActsWhileThePreferencesAreOpen) {
  bool could_cancel = false;
  const auto find = searches.for_songs;
  searches.for_songs = [&](SearchProgress& progress) {
    auto* const searching = QApplication::activeModalWidget()->findChild<frmSearching*>();
    could_cancel = searching != nullptr && searching->isEnabled() && !frame.isEnabled() &&
                   !QApplication::activeModalWidget()->isEnabled();
    return find(progress);
  };
  WithPreferences([&](QDialog& dialog) {
    dialog.findChild<QRadioButton*>(QStringLiteral("optmodern"))->setFocus();
    Click(dialog, "optmodern");
    EXPECT_EQ(ShownArtists(), (QStringList{"ABBA", "Queens of the Stone Age", "Кино"}));
    EXPECT_EQ(Status(), "1 new song; 3 songs were filed again by the tags.");
    EXPECT_TRUE(dialog.isEnabled());
    EXPECT_EQ(dialog.focusWidget(), dialog.findChild<QWidget*>("optmodern"));
  });
  EXPECT_TRUE(could_cancel);
  EXPECT_TRUE(messages.Take().empty());
  // And back: what only the modern style lists is hidden.
  Explorer().Select(Top("All Songs"));
  WithPreferences([&](QDialog& dialog) { Click(dialog, "optclassic"); });
  EXPECT_EQ(ShownArtists(), (QStringList{"ABBA", "Queens of the Stone Age"}));
  EXPECT_EQ(Status(), "1 song is set aside; 2 songs were filed again by the tags.");
  EXPECT_EQ(Box().Nodes().Find("Кино", &Top("Artist"))->Items().size(), 1U);
}

TEST_F(FrameFilingTest, SingleSwitchesAreAskedAboutWhenThePreferencesClose) {
  messages.answer = MessageAnswer::kYes;
  WithPreferences([&](QDialog& dialog) {
    Click(dialog, "chkwholeArtists");
    Click(dialog, "chknaturalOrder");
    EXPECT_EQ(ShownArtists(), QStringList{"Queen"});
    EXPECT_TRUE(messages.Take().empty());
  });
  const Texts asked = messages.Take();
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_TRUE(asked[0].starts_with("The rules by which songs are filed have changed."));
  EXPECT_EQ(ShownArtists(), (QStringList{"ABBA", "Queens of the Stone Age"}));
  // Nothing is left to do.
  WithPreferences([](QDialog&) {});
  EXPECT_TRUE(messages.Take().empty());
}

TEST_F(FrameFilingTest, TheFolderOnShowIsLeftWhenItIsHidden) {
  WithPreferences([&](QDialog& dialog) { Click(dialog, "optmodern"); });
  Explorer().Select(*Box().Nodes().Find("Кино", &Top("Artist")));
  WithPreferences([&](QDialog& dialog) { Click(dialog, "optclassic"); });
  EXPECT_EQ(Box().selectednode(), &Top("Artist"));
  WithPreferences([&](QDialog& dialog) { Click(dialog, "optmodern"); });
  EXPECT_EQ(ShownArtists(), (QStringList{"ABBA", "Queens of the Stone Age", "Кино"}));
}

TEST_F(FrameFilingTest, TheChosenFolderStaysInView) {
  FolderTree& tree = Box().Nodes();
  for (int k = 0; k < 60; ++k)
    tree.AddChild(&Top("Artist"), "Artist " + std::to_string(k)).Items().emplace_back(1, 2);
  for (int k = 0; k < 60; ++k) tree.AddChild(nullptr, "Mine " + std::to_string(k));
  Explorer().ExpandAll();
  Explorer().Select(Top("Mine 40"));
  const auto is_in_view = [this] {
    return Tree().viewport()->rect().contains(Tree().visualRect(IndexOf(Tree(), "Mine 40")));
  };
  ASSERT_TRUE(is_in_view());
  WithPreferences([&](QDialog& dialog) {
    Click(dialog, "optmodern");
    EXPECT_TRUE(is_in_view());
    Click(dialog, "optclassic");
    EXPECT_TRUE(is_in_view());
  });
  EXPECT_EQ(Box().selectednode(), &Top("Mine 40"));
}

TEST_F(FrameFilingTest, DroppedAndOpenedSongsAreFiledByTheirNewerTags) {
  library.UseSwitches(kModernStyle);
  emit Explorer().FilesDropped({music / "c.aac"}, &Top("New"));
  EXPECT_EQ(ShownArtists(), (QStringList{"Queen", "Кино"}));
  Jukebox saved;
  for (const char* const text : {"All Songs", "Artist"}) saved.Nodes().AddChild(nullptr, text);
  ASSERT_TRUE(saved.Save(music / "saved.juk", library));
  frame.OpenFiles({music / "saved.juk"});
  ASSERT_EQ(frame.OpenJukeboxes().size(), 2U);
  FolderTree& opened = frame.OpenJukeboxes()[1]->Nodes();
  EXPECT_NE(opened.Find("Кино", opened.Find("Artist")), nullptr);
}

TEST_F(FrameFilingTest, ThePopUpAddsTheAlbumFolderWhereItIsMissing) {
  const auto last = [this] {
    emit Explorer().TreePopUp(&Top("Artist"), QPoint(10, 10));
    TreeMenu().close();
    // The last item is "Properties...".
    return TreeMenu().actions().at(TreeMenu().actions().size() - 2);
  };
  EXPECT_EQ(last()->text(), "Add To &Queue");
  tallow.preferences.SetSwitches({.newer_tags = true, .albums = true});
  ASSERT_EQ(last()->text(), "Add Al&bum Folder");
  last()->trigger();
  const Folder* const album = FindAlbumFolder(Box().Nodes());
  ASSERT_NE(album, nullptr) << Status().toStdString();
  EXPECT_EQ(Box().selectednode(), album);
  EXPECT_TRUE(Tree().model()->hasIndex(1, 0, IndexOf(Tree(), "Album")));
  EXPECT_EQ(album->ChildAt(0).Text(), "Hits (ABBA)");
  EXPECT_EQ(Status(), "2 album folders were added.");
  EXPECT_EQ(last()->text(), "Add To &Queue");
  // Without the switch the folder is hidden, not removed.
  tallow.preferences.SetSwitches({.newer_tags = true});
  const QModelIndex row = IndexOf(Tree(), "Album");
  EXPECT_TRUE(Tree().isRowHidden(row.row(), {}));
  EXPECT_NE(Box().selectednode(), album);
  tallow.preferences.SetSwitches({.newer_tags = true, .albums = true});
  EXPECT_FALSE(Tree().isRowHidden(row.row(), {}));
  Explorer().Undo();
  EXPECT_EQ(FindAlbumFolder(Box().Nodes()), nullptr);
  EXPECT_FALSE(IndexOf(Tree(), "Album").isValid());
  EXPECT_EQ(ShownArtists(), QStringList{"Queen"});
  EXPECT_EQ(last()->text(), "Add Al&bum Folder");
}

TEST_F(FrameFilingTest, TheMenuFillsANewJukeboxWithTheSwitch) {
  const auto songs = [this] {
    Item("mnuNew").trigger();
    return frame.OpenJukeboxes().back()->Nodes().Find("All Songs")->Items().size();
  };
  EXPECT_EQ(songs(), 0U);
  tallow.preferences.SetSwitches({.fills_new_jukeboxes = true});
  EXPECT_EQ(songs(), 2U);
  EXPECT_EQ(frame.OpenJukeboxes().size(), 3U);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_music_places.h"

#include <gtest/gtest.h>

#include <QDragEnterEvent>
#include <QImage>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QSet>
#include <QTest>
#include <QTreeWidget>
#include <QUrl>

#include "app/search/music_choice.h"
#include "tests/frame_fixture.h"
#include "ui/dialogs/frm_searching.h"
#include "ui/support/help_page.h"
#include "ui/support/qt_path.h"

namespace tallow {
namespace {

class FrmMusicPlaces : public FrameTest {
 protected:
  FrmMusicPlaces() {
    tallow.preferences.Load(PreferencesPath(tallow.application_folder));
    searches.drives_now.drives = {{disk, kFixedDrive}, {share, kRemoteDrive}};
  }

  frmMusicPlaces& Open() {
    dialog = std::make_unique<frmMusicPlaces>(
        MusicPlacesContext{.tallow = tallow,
                           .read_drives = [this] { return searches.DrivesNow(); },
                           .search = [this] { search(); },
                           .changed = [this] { ++changes; },
                           .ask_for_folder = [this] { return chosen; }});
    dialog->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    return *dialog;
  }
  QTreeWidget& List() { return *dialog->findChild<QTreeWidget*>(QStringLiteral("lstPlaces")); }
  QPushButton& Button(const char* name) {
    return *dialog->findChild<QPushButton*>(QLatin1String(name));
  }
  QString MessageText() {
    const auto* const label = dialog->findChild<QLabel*>(QStringLiteral("lblMessage"));
    return label->isVisible() ? label->text() : QString();
  }
  /// The lines as they are shown, "x ROOT|KIND|SONGS|STATE", with x for a ticked place.
  QStringList Lines() {
    QStringList lines;
    for (int row = 0; row < List().topLevelItemCount(); ++row) {
      const QTreeWidgetItem& item = *List().topLevelItem(row);
      lines.append((item.checkState(0) == Qt::Checked ? "x " : "- ") + item.text(0) + "|" +
                   item.text(1) + "|" + item.text(2) + "|" + item.text(3));
    }
    return lines;
  }
  static QString Line(const char* mark, const std::string& root, const char* rest) {
    return QString::fromUtf8(mark) + " " + QtPath(root) + "|" + rest;
  }
  /// Sends the events of a drop of files.
  /// \returns whether the dialog accepts them
  bool Drop(const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(30, 60), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(dialog.get(), &enter);
    QDropEvent drop(QPoint(30, 60), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(dialog.get(), &drop);
    return enter.isAccepted() && drop.isAccepted();
  }
  Texts StoredFolders() {
    Preferences stored;
    stored.Load(PreferencesPath(tallow.application_folder));
    return MusicChoice(stored).Folders();
  }

  // The songs of the fixture lie in the folder itself.
  const std::string disk = music.path();
  const std::string share = application.Folder("share");
  std::optional<std::string> chosen;
  std::function<void()> search;
  int changes = 0;
  std::unique_ptr<frmMusicPlaces> dialog;
};

TEST_F(FrmMusicPlaces, ShowsThePlacesWithTheirSongsAndStates) {
  Open();
  EXPECT_EQ(Lines(), (QStringList{Line("x", disk, "Fixed disk|2|Searched"),
                                  Line("-", share, "Network share|0|Not searched")}));
  EXPECT_FALSE(FileExists(PreferencesPath(tallow.application_folder)));
}

TEST_F(FrmMusicPlaces, ATickActsAndIsStoredAtOnce) {
  Open();
  List().setCurrentItem(List().topLevelItem(1));
  List().setFocus();
  QTest::keyClick(&List(), Qt::Key_Space);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Lines()[1].endsWith("Not searched yet"); }));
  EXPECT_EQ(changes, 1);
  Preferences stored;
  stored.Load(PreferencesPath(tallow.application_folder));
  EXPECT_EQ(MusicChoice(stored).TickedDrives(), Texts{share});
  QTest::keyClick(&List(), Qt::Key_Space);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Lines()[1].endsWith("|Not searched"); }));
  EXPECT_TRUE(MusicChoice(tallow.preferences).IsDefault());
}

TEST_F(FrmMusicPlaces, APlaceThatIsGoneIsAway) {
  chosen = music.Folder("gone");
  Open();
  Button("cmdAddFolder").click();
  std::filesystem::remove(chosen->substr(0, chosen->size() - 1));
  Open();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Lines().last().endsWith("|Away"); }));
}

TEST_F(FrmMusicPlaces, AFolderThatVanishesWhileTheDialogIsOpenIsAway) {
  chosen = music.Folder("vanishing");
  Open();
  Button("cmdAddFolder").click();
  EXPECT_TRUE(Lines().last().endsWith("|Not searched yet"));
  std::filesystem::remove(chosen->substr(0, chosen->size() - 1));
  EXPECT_TRUE(QTest::qWaitFor([&] { return Lines().last().endsWith("|Away"); }));
}

TEST_F(FrmMusicPlaces, AFolderIsAddedAndRemoved) {
  chosen = application.Folder("more");
  Open();
  EXPECT_FALSE(Button("cmdRemove").isEnabled());
  Button("cmdAddFolder").click();
  EXPECT_EQ(Lines().last(), Line("x", *chosen, "Folder|0|Not searched yet"));
  EXPECT_EQ(StoredFolders(), Texts{*chosen});
  EXPECT_EQ(MessageText(), "");
  Button("cmdAddFolder").click();
  EXPECT_EQ(MessageText(), QtPath(*chosen) + " is in the list already.");
  ASSERT_TRUE(Button("cmdRemove").isEnabled());
  Button("cmdRemove").click();
  EXPECT_EQ(Lines().size(), 2);
  EXPECT_EQ(StoredFolders(), Texts{});
  EXPECT_EQ(MessageText(), "");
  chosen.reset();
  Button("cmdAddFolder").click();
  EXPECT_EQ(Lines().size(), 2);
}

TEST_F(FrmMusicPlaces, FoldersCanBeDropped) {
  const std::string one = application.Folder("one");
  const std::string two = application.Folder("two");
  const std::string file = music.File("c.mp3");
  Open();
  EXPECT_TRUE(Drop({QUrl::fromLocalFile(QtPath(one)), QUrl::fromLocalFile(QtPath(file)),
                    QUrl::fromLocalFile(QtPath(two))}));
  EXPECT_EQ(StoredFolders(), (Texts{one, two}));
  EXPECT_EQ(MessageText(), QtPath(file) + " is not a folder that Tallow can open.");
  EXPECT_FALSE(Drop({}));
}

TEST_F(FrmMusicPlaces, SearchNowShowsWhatIsBeingSearched) {
  Open();
  QStringList during;
  search = [&] {
    tallow.place_being_searched = disk;
    EXPECT_TRUE(QTest::qWaitFor([&] { return Lines()[0].endsWith("Being searched"); }));
    for (const char* const name : {"cmdAddFolder", "cmdRemove", "cmdSearchNow", "cmdClose"})
      EXPECT_FALSE(Button(name).isEnabled()) << name;
    EXPECT_FALSE(Drop({QUrl::fromLocalFile(QtPath(share))}));
    tallow.place_being_searched.clear();
    AddSong(share, "c.mp3");
  };
  Button("cmdSearchNow").click();
  EXPECT_EQ(Lines(), (QStringList{Line("x", disk, "Fixed disk|2|Searched"),
                                  Line("-", share, "Network share|1|Not searched")}));
  EXPECT_TRUE(Button("cmdSearchNow").isEnabled());
}

TEST_F(FrmMusicPlaces, ADriveThatWasConnectedAppearsWhenTheDialogIsActiveAgain) {
  Open();
  searches.drives_now.drives.push_back({application.Folder("stick"), kRemovableDrive});
  frame.show();
  frame.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  dialog->activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Lines().size() == 3; }));
}

TEST_F(FrmMusicPlaces, GivenDrivesCannotBeChanged) {
  tallow.has_given_drives = true;
  Open();
  EXPECT_FALSE(Button("cmdAddFolder").isEnabled());
  EXPECT_FALSE(dialog->acceptDrops());
  List().setFocus();
  QTest::keyClick(&List(), Qt::Key_Space);
  EXPECT_TRUE(Lines()[0].startsWith("x ")) << Lines()[0].toStdString();
  EXPECT_TRUE(Lines()[0].contains("|Given by --drive|")) << Lines()[0].toStdString();
  EXPECT_TRUE(MusicChoice(tallow.preferences).IsDefault());
  EXPECT_TRUE(Button("cmdSearchNow").isEnabled());
}

TEST_F(FrmMusicPlaces, TheTickOfAGivenDriveLooksDisabled) {
  const auto picture_of_tick = [this] {
    Open();
    List().clearSelection();
    List().setCurrentItem(nullptr);
    Button("cmdClose").setFocus();
    QRect place = List().visualItemRect(List().topLevelItem(0));
    place.setWidth(place.height() + 4);
    return List().viewport()->grab(place).toImage();
  };
  searches.drives_now.drives.resize(1);
  const QImage before = picture_of_tick();
  tallow.has_given_drives = true;
  EXPECT_NE(picture_of_tick(), before);
}

TEST_F(FrmMusicPlaces, TabReachesEveryControl) {
  chosen = application.Folder("more");
  Open();
  Button("cmdAddFolder").click();
  List().setFocus();
  QStringList order;
  for (int k = 0; k < 6; ++k) {
    order.append(dialog->focusWidget()->objectName());
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(order, (QStringList{"lstPlaces", "cmdAddFolder", "cmdRemove", "cmdSearchNow",
                                "cmdClose", "lstPlaces"}))
      << order.join(' ').toStdString();
}

TEST_F(FrmMusicPlaces, EveryMnemonicIsUnique) {
  Open();
  QSet<QString> keys = {"Alt+P"};  // of the list
  for (const char* const name : {"cmdAddFolder", "cmdRemove", "cmdSearchNow", "cmdClose"}) {
    const QString key = Button(name).shortcut().toString();
    EXPECT_FALSE(key.isEmpty() || keys.contains(key)) << name;
    keys.insert(key);
  }
}

TEST_F(FrmMusicPlaces, FitsTheScreenAndCutsNoTextOff) {
  chosen = application.Folder("more");
  Open();
  Button("cmdAddFolder").click();
  Button("cmdAddFolder").click();
  QApplication::processEvents();
  EXPECT_LT(dialog->width(), dialog->screen()->availableSize().width());
  EXPECT_LT(dialog->height(), dialog->screen()->availableSize().height());
  for (const QLabel* const label : dialog->findChildren<QLabel*>())
    EXPECT_GE(label->height(), label->heightForWidth(label->width()))
        << label->text().toStdString();
  for (const QPushButton* const button : dialog->findChildren<QPushButton*>())
    EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
}

TEST_F(FrmMusicPlaces, TheMenuOpensItAndItsSearchCanBeCancelled) {
  const std::string folder = application.Folder("more");
  application.File("more/x/c.mp3");
  MusicChoice(tallow.preferences).AddFolder(folder);
  ShowJukebox();
  bool was_cancelled = false;
  searches.for_songs = [&](SearchProgress& progress) {
    auto* const window = dynamic_cast<frmSearching*>(&progress);
    EXPECT_NE(window, nullptr);
    // The dialog is modal, but does not keep the user from its search.
    EXPECT_EQ(window->parentWidget(), QApplication::activeModalWidget());
    EXPECT_TRUE(window->isEnabled());
    QTest::keyClick(window, Qt::Key_Escape);
    was_cancelled = std::exchange(tallow.SearchCancelled, false);
    return !was_cancelled;
  };
  QTimer::singleShot(50, [&] {
    auto* const shown = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(HelpPageOf(shown), "music-places");
    shown->findChild<QPushButton*>(QStringLiteral("cmdSearchNow"))->click();
    EXPECT_TRUE(shown->isVisible());
    EXPECT_TRUE(shown->isEnabled());
    QTest::keyClick(shown, Qt::Key_Escape);
  });
  Item("mnuWhereMyMusicIs").trigger();
  EXPECT_TRUE(was_cancelled);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(FrmMusicPlaces, TheButtonOfAnEmptyLibraryOpensIt) {
  library.Mp3Info(3, 1, "0");
  library.Mp3Info(3, 2, "0");
  frmMain& window = ShowJukebox();
  auto* const button = window.findChild<QPushButton*>(QStringLiteral("cmdWhereMyMusicIs"));
  ASSERT_NE(button, nullptr);
  bool was_open = false;
  QTimer::singleShot(50, [&] {
    auto* const shown = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(shown, nullptr);
    was_open = shown->objectName() == "frmMusicPlaces";
    shown->reject();
  });
  button->click();
  EXPECT_TRUE(was_open);
}

}  // namespace
}  // namespace tallow

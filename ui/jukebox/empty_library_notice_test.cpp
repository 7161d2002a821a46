// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/empty_library_notice.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include "app/search/music_choice.h"
#include "tests/drag_and_drop.h"
#include "tests/jukebox_window_fixture.h"
#include "ui/support/qt_path.h"

namespace tallow {
namespace {

class EmptyLibrary : public JukeboxWindowTest {
 protected:
  EmptyLibrary() {
    QObject::connect(&window, &frmMain::WhereMyMusicIs, [this] { ++asked; });
  }
  QWidget& Notice() { return *window.findChild<QWidget*>(QStringLiteral("EmptyLibrary")); }
  QPushButton& Button() {
    return *window.findChild<QPushButton*>(QStringLiteral("cmdWhereMyMusicIs"));
  }
  QString Text() { return window.findChild<QLabel*>(QStringLiteral("lblEmptyLibrary"))->text(); }

  int asked = 0;
};

TEST_F(EmptyLibrary, IsNamedInTheEmptyList) {
  AddFolder("All Songs");
  Show();
  EXPECT_TRUE(Notice().isVisible());
  EXPECT_EQ(Text(), "No songs were found on this computer's fixed disks.");
  EXPECT_EQ(List().accessibleDescription(), Text());
  QTest::mouseClick(&Button(), Qt::LeftButton);
  EXPECT_EQ(asked, 1);
}

TEST_F(EmptyLibrary, IsNotNamedOnceThereAreSongs) {
  Folder& all = AddFolder("All Songs");
  Show();
  AddSongs(1);
  all.Items().emplace_back(1, 2);
  Box().ListRefilled(library);
  EXPECT_FALSE(Notice().isVisible());
  EXPECT_EQ(RowsOf(List()).size(), 1);
}

TEST_F(EmptyLibrary, IsNotNamedInAnEmptyFolderOfALibraryWithSongs) {
  AddSongs(1);
  AddFolder("one");
  Show();
  EXPECT_FALSE(Notice().isVisible());
}

TEST_F(EmptyLibrary, FollowsTheChoiceOfPlaces) {
  AddFolder("All Songs");
  Show();
  MusicChoice(tallow.preferences).AddFolder(music.path());
  window.ShowEmptyLibrary();
  EXPECT_EQ(Text(), "No songs were found in the places that are searched.");
}

TEST_F(EmptyLibrary, ItsButtonIsReachedByTab) {
  AddFolder("All Songs");
  Show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  List().setFocus();
  QTest::keyClick(&List(), Qt::Key_Tab);
  EXPECT_TRUE(Button().hasFocus());
  QTest::keyClick(&Button(), Qt::Key_Return);
  EXPECT_EQ(asked, 1);
}

TEST_F(EmptyLibrary, ItsTextFitsAndStaysInTheMiddleOfTheList) {
  AddFolder("All Songs");
  Show();
  for (const QSize size : {QSize(500, 300), QSize(1200, 900)}) {
    window.resize(size);
    QApplication::processEvents();
    EXPECT_EQ(Notice().size(), List().viewport()->size());
    auto* const label = window.findChild<QLabel*>(QStringLiteral("lblEmptyLibrary"));
    EXPECT_GE(label->height(), label->heightForWidth(label->width()));
    EXPECT_GE(Button().width(), Button().sizeHint().width());
    EXPECT_TRUE(Notice().rect().contains(Button().geometry()));
  }
}

TEST_F(EmptyLibrary, DisappearsAfterADropOfAFolderWithSongsBelow) {
  AddFolder("one");
  Show();
  music.File("in/x/y/a.mp3");
  music.File("in/b.mp3");
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QtPath(music / "in"))});
  EXPECT_TRUE(DropAt(List(), QPoint(20, 20), data));
  ASSERT_TRUE(QTest::qWaitFor([&] { return RowsOf(List()).size() == 2; }));
  EXPECT_FALSE(Notice().isVisible());
  EXPECT_EQ(problems, QStringList{"2 new songs"});
}

}  // namespace
}  // namespace tallow

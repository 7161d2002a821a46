// SPDX-License-Identifier: GPL-3.0-or-later
// The windows while a disk does not answer.
#include <QDialog>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>
#include <QUrl>

#include "app/search/music_choice.h"
#include "app/system.h"
#include "tests/dead_folder_linux.h"
#include "tests/frame_fixture.h"
#include "tests/tagged_file.h"
#include "ui/dialogs/frm_searching.h"
#include "ui/dialogs/frm_splash.h"
#include "ui/start/start_up.h"
#include "ui/support/qt_path.h"

namespace tallow {
namespace {

/// Clicks a button as soon as it is visible, and records the text of a label in the same window.
template <typename Window>
class ClickOnceSeen {
 public:
  ClickOnceSeen(const char* button, const char* label) {
    QObject::connect(&timer_, &QTimer::timeout, [this, button, label] {
      ++ticks;
      for (QWidget* const widget : QApplication::topLevelWidgets()) {
        auto* const window = qobject_cast<Window*>(widget);
        auto* const found = window != nullptr
                                ? window->template findChild<QPushButton*>(QLatin1String(button))
                                : nullptr;
        if (found == nullptr || !found->isVisible() || !found->isEnabled()) continue;
        text = window->template findChild<QLabel*>(QLatin1String(label))->text();
        if (on_click) on_click();
        found->click();
      }
    });
    timer_.start(5);
  }
  QString text;
  int ticks = 0;  ///< how often events were processed
  std::function<void()> on_click;

 private:
  QTimer timer_;
};

class DeadShareWindows : public FrameTest {
 protected:
  /// A jukebox file with empty automatic folders.
  std::string MakeJukeboxFile() {
    Jukebox jukebox;
    for (const char* const text : {"All Songs", "Artist", "New"})
      jukebox.Nodes().AddChild(nullptr, text);
    const std::string path = application / "box.juk";
    EXPECT_TRUE(jukebox.Save(path, library));
    return path;
  }
  void AddSongOfShare() {
    music.File("share/c.mp3", Audio(300) + Tag({.artist = "Zappa"}));
    AddSong(share, "c.mp3");
  }
  std::size_t SongsOf(const char* folder) {
    return frame.OpenJukeboxes().at(0)->Nodes().Find(folder)->Items().size();
  }

  const std::string share = music.Folder("share");
};

TEST_F(DeadShareWindows, AfterCancelledFilingTheJukeboxHoldsTheSongsFiledSoFar) {
  AddSongOfShare();
  const std::string path = MakeJukeboxFile();
  frame.show();
  {
    const DeadFolder dead(share);
    ClickOnceSeen<frmSearching> cancel("cmdCancel", "Label1");
    cancel.on_click = [&] { EXPECT_FALSE(frame.isEnabled()); };
    frame.OpenFiles({path});
    EXPECT_EQ(cancel.text, QStringLiteral("Filing songs  . . . "));
    EXPECT_GT(cancel.ticks, 5);
  }
  EXPECT_TRUE(frame.isEnabled());
  EXPECT_EQ(frame.statusBar()->currentMessage(),
            QStringLiteral("Filing was cancelled; the remaining songs will be filed when the "
                           "jukebox is next opened."));
  ASSERT_EQ(frame.OpenJukeboxes().size(), 1U);
  EXPECT_EQ(SongsOf("All Songs"), 2U);
  EXPECT_EQ(SongsOf("New"), 2U);
  // Bringing in new songs also files the songs that were skipped.
  tallow.settings.NumerOfRecordsInTheMain(3);
  Item("mnuNewSongsNormalLocations").trigger();
  EXPECT_EQ(SongsOf("All Songs"), 3U);
  EXPECT_FALSE(tallow.filing_is_pending);
}

TEST_F(DeadShareWindows, APictureOnADeadShareIsNotWaitedFor) {
  tallow.settings.IsThereAPicture(true);
  tallow.settings.PictureLocation(share + "back.png");
  const DeadFolder dead(share);
  library.CheckPath(share, {}, [](std::string_view) { return false; });
  frame.show();
  ShowJukebox();
  frame.NoticeScan({});
  EXPECT_EQ(frame.statusBar()->currentMessage().toStdString(),
            share + "back.png cannot be read: The disk does not answer");
}

TEST_F(DeadShareWindows, ACancelledHandOverLeavesThePlayerTheSongsItHas) {
  AddSongOfShare();
  frmMain& window = ShowJukebox();
  const DeadFolder dead(share);
  ClickOnceSeen<frmSearching> cancel("cmdCancel", "Label1");
  emit window.PlaySongs({1, 2, 3});
  EXPECT_EQ(cancel.text, QStringLiteral("Handing songs to the player  . . . "));
  EXPECT_EQ(frame.statusBar()->currentMessage(),
            QStringLiteral("Handing songs to the player was cancelled: it has 2 of the 3 songs."));
  EXPECT_TRUE(frame.isEnabled());
}

TEST_F(DeadShareWindows, AStartProcessesEventsAndItsCancelButtonSkipsTheDrive) {
  AddSongOfShare();
  ASSERT_TRUE(library.Save());
  library.UseDrives([] { return MountedVolumes(); }, {share});
  library.FinishScan(true);
  Tallow again(application.path());
  again.library.UseDrives([] { return MountedVolumes(); }, {share});
  RecordedLink player;
  RecordedSearches nothing(again);
  frmMDIForm1 other(again, player, nothing, messages.Shower());
  StartUp windows(again, other, false);
  const auto drives = GivenDrives({share});
  System system(again, *drives, windows, [] { return std::string("/opt/player"); });
  const DeadFolder dead(share);
  ClickOnceSeen<frmSplash> cancel("cmdCancel", "lStatus");
  QTimer tip;
  QObject::connect(&tip, &QTimer::timeout, [] {
    if (QWidget* const modal = QApplication::activeModalWidget()) modal->close();
  });
  tip.start(5);
  ASSERT_TRUE(system.Main({}));
  EXPECT_TRUE(cancel.text.startsWith(QStringLiteral("Waiting for "))) << cancel.text.toStdString();
  EXPECT_GT(cancel.ticks, 5);
  EXPECT_TRUE(again.library.IsAway(3));
  EXPECT_FALSE(again.library.IsAway(1));
}

/// The dialog of the places with music, opened from the menu.
class DeadMusicPlace : public DeadShareWindows {
 protected:
  DeadMusicPlace() {
    tallow.preferences.Load(PreferencesPath(tallow.application_folder));
    searches.drives_now.drives = {{music.path(), kFixedDrive}};
  }
};

TEST_F(DeadMusicPlace, AFolderThatIsDroppedThereCanBeCancelled) {
  ShowJukebox();
  bool was_dropped = false;
  QTimer::singleShot(50, [&] {
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    {
      const DeadFolder dead(share);
      ClickOnceSeen<frmSearching> cancel("cmdCancel", "Label1");
      cancel.on_click = [&] {
        EXPECT_FALSE(dialog->findChild<QPushButton*>(QStringLiteral("cmdAddFolder"))->isEnabled());
      };
      QMimeData data;
      data.setUrls({QUrl::fromLocalFile(QtPath(share))});
      QDragEnterEvent enter(QPoint(30, 60), Qt::CopyAction, &data, Qt::LeftButton, {});
      QApplication::sendEvent(dialog, &enter);
      QDropEvent drop(QPoint(30, 60), Qt::CopyAction, &data, Qt::LeftButton, {});
      QApplication::sendEvent(dialog, &drop);
      EXPECT_EQ(cancel.text, QStringLiteral("Adding the folder  . . . "));
      EXPECT_GT(cancel.ticks, 5);
    }
    const auto* const message = dialog->findChild<QLabel*>(QStringLiteral("lblMessage"));
    EXPECT_EQ(message->text(),
              QtPath(share) + " is on a drive that does not answer, and was not added.");
    EXPECT_TRUE(dialog->findChild<QPushButton*>(QStringLiteral("cmdAddFolder"))->isEnabled());
    was_dropped = true;
    dialog->reject();
  });
  Item("mnuWhereMyMusicIs").trigger();
  EXPECT_TRUE(was_dropped);
  EXPECT_TRUE(MusicChoice(tallow.preferences).IsDefault());
}

}  // namespace
}  // namespace tallow

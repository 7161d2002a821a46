// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_picture.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QGuiApplication>
#include <QImage>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include "jukebox/window/song_list_view.h"
#include "tests/frame_fixture.h"

namespace tallow {
namespace {

class FrmPicture : public FrameTest {
 protected:
  FrmPicture() {
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::blue);
    picture = music / "a picture.jpg";
    EXPECT_TRUE(image.save(QString::fromStdString(picture)));
  }

  /// A dialog that is shown without waiting for its end.
  frmPicture& Open() {
    dialog = std::make_unique<frmPicture>(
        tallow,
        [this](const QString& address, bool tiled) {
          applied.append(address + (tiled ? " tiled" : ""));
        },
        [this](const std::string& folder) {
          asked_in = folder;
          return chosen;
        });
    dialog->show();
    return *dialog;
  }
  void Click(const char* button) {
    dialog->findChild<QPushButton*>(QLatin1String(button))->click();
  }
  QCheckBox& Box(const char* name) { return *dialog->findChild<QCheckBox*>(QLatin1String(name)); }
  clsINI Saved() const {
    clsINI saved;
    saved.GetandLoadIniInfo(tallow.settings_path);
    return saved;
  }
  QString Address() const { return "file:\\\\" + QString::fromStdString(picture); }

  std::string picture;
  std::unique_ptr<frmPicture> dialog;
  QStringList applied;
  std::optional<std::string> chosen;
  std::string asked_in;
};

TEST_F(FrmPicture, HasItsCaptionsAndTheSettings) {
  tallow.settings.IsItTiled(true);
  frmPicture& opened = Open();
  EXPECT_EQ(opened.objectName(), "frmPicture");
  EXPECT_EQ(opened.windowTitle(), "Picture");
  EXPECT_EQ(opened.findChild<QPushButton*>("Command1")->text(), "Browse . . .");
  EXPECT_EQ(Box("ChkNoPicture").text(), "Show Picture");
  EXPECT_EQ(Box("CheckTilePicture").text(), "Tile Picture");
  EXPECT_EQ(opened.findChild<QPushButton*>("Command3")->text(), "Cancel");
  EXPECT_FALSE(Box("ChkNoPicture").isChecked());
  EXPECT_TRUE(Box("CheckTilePicture").isChecked());
  const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
  EXPECT_LE((opened.geometry().center() - middle).manhattanLength(), 4);
}

TEST_F(FrmPicture, BrowsingBeginsInTheDataFolderAndChangesThePictureAtOnce) {
  Open();
  chosen = picture;
  Click("Command1");
  EXPECT_EQ(asked_in, application / "Grouping/");
  EXPECT_EQ(tallow.settings.PictureLocation(), picture);
  EXPECT_EQ(Saved().PictureLocation(), "");
  EXPECT_EQ(applied, QStringList());
}

TEST_F(FrmPicture, BrowsingBeginsInTheFolderOfAPictureThatIsThere) {
  tallow.settings.PictureLocation(picture);
  Open();
  Click("Command1");
  EXPECT_EQ(asked_in, music.path());
  // Nothing was chosen.
  EXPECT_EQ(tallow.settings.PictureLocation(), picture);
  tallow.settings.PictureLocation(music / "gone.jpg");
  Open();
  Click("Command1");
  EXPECT_EQ(asked_in, application / "Grouping/");
}

TEST_F(FrmPicture, ApplyingSavesAndShows) {
  Open();
  chosen = picture;
  Click("Command1");
  Box("ChkNoPicture").setChecked(true);
  Box("CheckTilePicture").setChecked(true);
  Click("Command2");
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(applied, QStringList{Address() + " tiled"});
  EXPECT_TRUE(Saved().IsItTiled());
  EXPECT_TRUE(Saved().IsThereAPicture());
  EXPECT_EQ(Saved().PictureLocation(), picture);
}

TEST_F(FrmPicture, WithoutShowPictureThereIsNone) {
  tallow.settings.PictureLocation(picture);
  tallow.settings.IsThereAPicture(true);
  Open();
  Box("ChkNoPicture").setChecked(false);
  Click("Command2");
  EXPECT_EQ(applied, QStringList{""});
  EXPECT_FALSE(Saved().IsThereAPicture());
}

TEST_F(FrmPicture, APictureThatIsGoneIsTakenAwayAndTheSettingsStay) {
  tallow.settings.PictureLocation(music / "gone.jpg");
  Open();
  Box("ChkNoPicture").setChecked(true);
  Click("Command2");
  EXPECT_EQ(applied, QStringList{""});
  EXPECT_TRUE(Saved().IsThereAPicture());
  EXPECT_EQ(Saved().PictureLocation(), music / "gone.jpg");
}

TEST_F(FrmPicture, CancelBringsBackThePathAndTouchesNothingElse) {
  tallow.settings.PictureLocation("before.jpg");
  for (const bool by_key : {false, true}) {
    Open();
    chosen = picture;
    Click("Command1");
    Box("ChkNoPicture").setChecked(true);
    if (by_key)
      QTest::keyClick(dialog.get(), Qt::Key_Escape);
    else
      Click("Command3");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(tallow.settings.PictureLocation(), "before.jpg");
    EXPECT_FALSE(tallow.settings.IsThereAPicture());
    EXPECT_EQ(applied, QStringList());
  }
}

TEST_F(FrmPicture, TheListsMenuOpensItAndEveryJukeboxWindowShowsThePicture) {
  tallow.settings.PictureLocation(picture);
  frmMain& one = ShowJukebox();
  frmMain& two = ShowJukebox();
  const auto has_picture = [](frmMain& window) {
    return window.findChild<SongListView*>()->HasBackgroundImage();
  };
  const auto open_and = [&](bool shown) {
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      auto* const opened = qobject_cast<frmPicture*>(QApplication::activeModalWidget());
      if (opened == nullptr) return;
      timer.stop();
      opened->findChild<QCheckBox*>("ChkNoPicture")->setChecked(shown);
      opened->findChild<QPushButton*>("Command2")->click();
    });
    timer.start(5);
    one.ActOnPopUpClick(kChangeBackgroundPicture, kListPane, one.Jukebox().selectednode());
  };
  open_and(true);
  EXPECT_TRUE(has_picture(one));
  EXPECT_TRUE(has_picture(two));
  open_and(false);
  EXPECT_FALSE(has_picture(one));
  EXPECT_FALSE(has_picture(two));
}

}  // namespace
}  // namespace tallow

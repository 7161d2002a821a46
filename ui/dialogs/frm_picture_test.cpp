// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_picture.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QCheckBox>
#include <QFileDialog>
#include <QGuiApplication>
#include <QImage>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QTest>

#include "tests/frame_fixture.h"
#include "ui/jukebox/picture_file.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"

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

  /// Shows a dialog without running a modal loop.
  frmPicture& Open() {
    dialog = std::make_unique<frmPicture>(
        tallow,
        [this](const QString& address, bool tiled) {
          applied.append(address + (tiled ? " tiled" : ""));
          return std::string();
        },
        [this](const std::string& folder) {
          asked_in = folder;
          return chosen;
        },
        messages.Shower());
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
  static QString PictureOf(const std::string& path) {
    return "file:\\\\" + QString::fromStdString(path);
  }
  QString Address() const { return "file:\\\\" + QString::fromStdString(picture); }

  std::string picture;
  std::unique_ptr<frmPicture> dialog;
  QStringList applied;
  std::optional<std::string> chosen;
  std::string asked_in;
};

TEST_F(FrmPicture, ShowsTheCaptionsAndTheSettings) {
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

TEST_F(FrmPicture, BrowsingBeginsInTheFolderOfAnExistingPicture) {
  tallow.settings.PictureLocation(picture);
  Open();
  Click("Command1");
  EXPECT_EQ(asked_in, music.path());
  // The user cancelled, so the picture is unchanged.
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

TEST_F(FrmPicture, WithoutShowPictureNoPictureIsShown) {
  tallow.settings.PictureLocation(picture);
  tallow.settings.IsThereAPicture(true);
  Open();
  Box("ChkNoPicture").setChecked(false);
  Click("Command2");
  EXPECT_EQ(applied, QStringList{""});
  EXPECT_FALSE(Saved().IsThereAPicture());
}

TEST_F(FrmPicture, AMissingPictureIsNotShownAndTheSettingsStay) {
  tallow.settings.PictureLocation(music / "gone.jpg");
  Open();
  Box("ChkNoPicture").setChecked(true);
  Click("Command2");
  EXPECT_EQ(applied, QStringList{""});
  EXPECT_TRUE(Saved().IsThereAPicture());
  EXPECT_EQ(Saved().PictureLocation(), music / "gone.jpg");
}

TEST_F(FrmPicture, CancelRestoresThePathAndChangesNothingElse) {
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
    one.Run(ListCommand::kChangeBackgroundPicture, one.Jukebox().selectednode());
  };
  open_and(true);
  EXPECT_TRUE(has_picture(one));
  EXPECT_TRUE(has_picture(two));
  open_and(false);
  EXPECT_FALSE(has_picture(one));
  EXPECT_FALSE(has_picture(two));
}

TEST_F(FrmPicture, ChoosingAPictureChecksShowPicture) {
  Open();
  EXPECT_FALSE(Box("ChkNoPicture").isChecked());
  Click("Command1");
  EXPECT_FALSE(Box("ChkNoPicture").isChecked());
  chosen = picture;
  Click("Command1");
  EXPECT_TRUE(Box("ChkNoPicture").isChecked());
  Click("Command2");
  EXPECT_EQ(applied, QStringList{Address()});
  EXPECT_TRUE(Saved().IsThereAPicture());
}

TEST_F(FrmPicture, TheFileDialogOffersThreeExtensionsJpgFirst) {
  frmPicture real(tallow, [](const QString&, bool) { return std::string(); });
  real.show();
  QStringList filters;
  QString selected;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    auto* const files = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (files == nullptr) return;
    timer.stop();
    filters = files->nameFilters();
    selected = files->selectedNameFilter();
    files->reject();
  });
  timer.start(5);
  real.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
  EXPECT_EQ(filters, (QStringList{"JPEG (*.jpg)", "JPEG (*.jpeg)", "PNG (*.png)"}));
  EXPECT_EQ(selected, "JPEG (*.jpg)");
}

TEST_F(FrmPicture, JpegAndPngPicturesWithAnyExtensionCanBeShown) {
  frmMain& window = ShowJukebox();
  QImage image(20, 10, QImage::Format_RGB32);
  image.fill(Qt::green);
  for (const char* const name : {"a.jpeg", "a.png", "a.JPG"}) {
    const std::string path = music / name;
    ASSERT_TRUE(image.save(QString::fromStdString(path)));
    Open();
    chosen = path;
    Click("Command1");
    EXPECT_EQ(messages.Take(), Texts{}) << name;
    EXPECT_EQ(tallow.settings.PictureLocation(), path);
    EXPECT_EQ(window.PVExplorer1().SetBackgroundImage(PictureOf(path), false), "") << name;
    EXPECT_EQ(window.findChild<SongListView*>()->BackgroundSize(), QSize(20, 10)) << name;
  }
}

TEST_F(FrmPicture, AFileThatIsNoPictureIsRejectedWithAMessage) {
  const std::string text = music.File("text.jpg", "this is no picture");
  const std::string folder = music.Folder("folder.jpg");
  const auto refuse = [&](const std::string& path, const std::string& reason) {
    tallow.settings.PictureLocation("before.jpg");
    Open();
    chosen = path;
    Click("Command1");
    EXPECT_EQ(messages.Take(),
              Texts{path + " cannot be shown behind the songs: " + reason +
                    ". Choose a JPEG or PNG file with \"Change Backgroup Picture\"."});
    EXPECT_EQ(tallow.settings.PictureLocation(), "before.jpg");
    EXPECT_FALSE(Box("ChkNoPicture").isChecked());
  };
  refuse(text, "Unsupported image format");
  refuse(folder, "it is a folder");
  refuse(music / "gone.jpg", "it is gone");
}

TEST_F(FrmPicture, AFileThatIsNoLongerAPictureIsReportedOnApply) {
  const std::string folder = music.Folder("folder.jpg");
  tallow.settings.PictureLocation(folder);
  tallow.settings.IsThereAPicture(true);
  Open();
  Click("Command2");
  EXPECT_EQ(applied, QStringList{""});
  EXPECT_EQ(messages.Take(),
            Texts{folder + " cannot be shown behind the songs: it is a folder. Choose a JPEG or "
                           "PNG file with \"Change Backgroup Picture\"."});
  EXPECT_EQ(Saved().PictureLocation(), folder);
}

TEST_F(FrmPicture, AnUnreadablePictureIsReportedAtStartUp) {
  const std::string text = music.File("text.jpg", "this is no picture");
  tallow.settings.PictureLocation(text);
  tallow.settings.IsThereAPicture(true);
  ShowJukebox();
  const std::string problem =
      text +
      " cannot be shown behind the songs: Unsupported image format. Choose a JPEG or PNG "
      "file with \"Change Backgroup Picture\".";
  EXPECT_EQ(frame.statusBar()->currentMessage().toStdString(), problem);
  frame.NoticeScan({"2 songs"});
  EXPECT_EQ(frame.statusBar()->currentMessage().toStdString(), problem + "  (and 1 more)");
  frame.NoticeScan({"2 songs"});
  EXPECT_EQ(frame.statusBar()->currentMessage(), "2 songs");
}

/// Builds a JPEG picture, red on the left and blue on the right, with the Exif orientation that a
/// camera writes.
/// \param orientation Exif orientation, 1 to 8
std::string PictureOfCamera(int orientation) {
  QImage image(64, 32, QImage::Format_RGB32);
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      image.setPixelColor(x, y, x < image.width() / 2 ? Qt::red : Qt::blue);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "JPEG", 100);
  // One directory entry: tag 0x0112 (orientation), type 16-bit integer, count 1, the value.
  std::string note("Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0", 24);
  note += static_cast<char>(orientation);
  note += std::string(7, '\0');
  std::string segment("\xFF\xE1\0", 3);
  segment += static_cast<char>(note.size() + 2);
  std::string picture = bytes.toStdString();
  picture.insert(2, segment + note);
  return picture;
}

TEST_F(FrmPicture, APictureIsRotatedByItsExifOrientation) {
  struct Expected {
    int orientation;
    QSize size;
    QPoint red;
    QPoint blue;
  };
  const Expected all[] = {
      {1, {64, 32}, {8, 16}, {56, 16}},
      {3, {64, 32}, {56, 16}, {8, 16}},
      {6, {32, 64}, {16, 8}, {16, 56}},
      {8, {32, 64}, {16, 56}, {16, 8}},
  };
  frmMain& window = ShowJukebox();
  for (const auto& [orientation, size, red, blue] : all) {
    const std::string path = music.File("camera.jpg", PictureOfCamera(orientation));
    const QImage image = ReadPicture(path).pixmap.toImage();
    ASSERT_EQ(image.size(), size) << orientation;
    EXPECT_GT(image.pixelColor(red).red(), 200) << orientation;
    EXPECT_GT(image.pixelColor(blue).blue(), 200) << orientation;
    window.PVExplorer1().SetBackgroundImage(PictureOf(path), false);
    EXPECT_EQ(window.findChild<SongListView*>()->BackgroundSize(), size) << orientation;
  }
}

}  // namespace
}  // namespace tallow

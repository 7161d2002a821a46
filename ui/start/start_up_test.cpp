// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/start/start_up.h"

#include <functional>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QUrl>

#include "app/system.h"
#include "jukebox/initial_jukebox.h"
#include "tests/recorded_link.h"
#include "tests/recorded_progress.h"
#include "tests/recorded_searches.h"
#include "tests/tagged_file.h"
#include "tests/window_fixture.h"
#include "ui/dialogs/frm_tip.h"
#include "ui/jukebox/frm_main.h"
#include "ui/support/qt_path.h"
#include "ui/support/shown_title.h"
#include "util/user_folders.h"

namespace tallow {
namespace {

class StartUpTest : public testing::Test {
 protected:
  StartUpTest() {
    music.File("a.mp3", Audio(300) + Tag({.artist = "ABBA", .year = "1976", .genra = 13}));
    music.File("b/b.mp3", Audio(300) + Tag({.artist = "Queen", .year = "1985", .genra = 17}));
  }

  template <typename View>
  View& Child(const char* name) {
    return *frame.findChild<View*>(QLatin1String(name));
  }

  /// Clicks a button in the next message box and stores the properties of the box.
  void ClickInNextBox(const std::function<QAbstractButton*(const QMessageBox&)>& button_of) {
    auto* const timer = new QTimer(&frame);
    QObject::connect(timer, &QTimer::timeout, [this, timer, button_of] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      timer->deleteLater();
      box_text = box->text();
      box_icon = box->icon();
      box_buttons = box->standardButtons();
      button_of(*box)->click();
    });
    timer->start(5);
  }
  void AnswerNextBox(QMessageBox::StandardButton button) {
    ClickInNextBox([button](const QMessageBox& box) { return box.button(button); });
  }

  TempFolder application;
  TempFolder music;
  Tallow tallow{application.path()};
  TestDrives drives{{{music.path()}}};
  RecordedLink link;
  RecordedSearches searches{tallow};
  frmMDIForm1 frame{tallow, link, searches};
  StartUp windows{tallow, frame, false};
  QString box_text;
  QMessageBox::Icon box_icon = QMessageBox::NoIcon;
  QMessageBox::StandardButtons box_buttons;
};

TEST_F(StartUpTest, TheFirstStartEndsWithTheSampleJukeboxOnScreen) {
  EXPECT_TRUE(System(tallow, drives, windows).Main(QtsRuntimeFile()));
  EXPECT_TRUE(frame.isVisible());
  EXPECT_EQ(ShownTitle(*frame.findChild<frmMain*>()), QString::fromLatin1(kSampleCaption.data()));
  auto& tree = Child<QTreeView>("TreeView");
  EXPECT_EQ(tree.model()->rowCount(), 12);
  EXPECT_TRUE(IndexOf(tree, "Artist/Queen").isValid());
  EXPECT_TRUE(IndexOf(tree, "Decades/80's").isValid());
  QStringList songs = RowsOf(Child<QTableView>("ListView"));
  EXPECT_EQ(songs, (QStringList{"1.  a.mp3", "2.  b.mp3"}));
  for (const QWidget* const window : QApplication::topLevelWidgets())
    EXPECT_NE(window->objectName(), "frmSplash");
}

TEST_F(StartUpTest, TheJpegPluginExists) {
  EXPECT_TRUE(FileExists(QtsRuntimeFile().path)) << QtsRuntimeFile().path;
}

TEST_F(StartUpTest, TheSplashWindowShowsTheProgressOfTheSearches) {
  windows.ShowSplash();
  const auto splash = [] {
    for (QWidget* const window : QApplication::topLevelWidgets())
      if (window->objectName() == QLatin1String("frmSplash")) return window;
    return static_cast<QWidget*>(nullptr);
  };
  ASSERT_NE(splash(), nullptr);
  EXPECT_TRUE(splash()->isVisible());
  EXPECT_FALSE(static_cast<QDialog*>(splash())->isModal());
  auto* const cancel = splash()->findChild<QPushButton*>(QStringLiteral("cmdCancel"));
  EXPECT_FALSE(cancel->isVisible());
  windows.ShowCancelButton(true);
  EXPECT_TRUE(cancel->isVisible());
  cancel->click();
  EXPECT_TRUE(tallow.SearchCancelled);
  windows.Splash().SetStatus("Looking for Mp3s in /");
  EXPECT_EQ(splash()->findChild<QLabel*>(QStringLiteral("lStatus"))->text(),
            "Looking for Mp3s in /");
  windows.UnloadSplash();
  EXPECT_EQ(splash(), nullptr);
}

TEST_F(StartUpTest, AskShowsAQuestionWithYesAndNo) {
  AnswerNextBox(QMessageBox::Yes);
  EXPECT_TRUE(windows.Ask("Go on?"));
  EXPECT_EQ(box_text, "Go on?");
  EXPECT_EQ(box_icon, QMessageBox::Question);
  EXPECT_EQ(box_buttons, QMessageBox::Yes | QMessageBox::No);
  AnswerNextBox(QMessageBox::No);
  EXPECT_FALSE(windows.Ask("Go on?"));
}

TEST_F(StartUpTest, ShowErrorShowsAMessageWithAnOkButtonOnly) {
  AnswerNextBox(QMessageBox::Ok);
  windows.ShowError("It is <b>over</b>.");
  EXPECT_EQ(box_text, "It is <b>over</b>.");
  EXPECT_EQ(box_buttons, QMessageBox::Ok);
}

TEST_F(StartUpTest, ASilentStartShowsNoMessageBoxes) {
  StartUp silent(tallow, frame, true);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(silent.Ask("a question"));
  silent.ShowError("a message");
  silent.Notice({"a notice"});
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "a question\na message\na notice\n");
}

TEST_F(StartUpTest, ASilentStartPrintsAChoiceAndLeavesItOpen) {
  StartUp silent(tallow, frame, true);
  testing::internal::CaptureStderr();
  EXPECT_EQ(silent.Choose("Which one?", {"a", "b"}), std::nullopt);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Which one?\n");
}

TEST_F(StartUpTest, AChoiceIsMadeInAMessageBox) {
  ClickInNextBox([](const QMessageBox& box) { return box.buttons().at(1); });
  EXPECT_EQ(windows.Choose("Which one?", {"a", "b", "c"}), std::optional<std::size_t>(1));
  EXPECT_EQ(box_text, "Which one?");
}

#ifndef _WIN32
TEST_F(StartUpTest, ATextFileIsOpenedInTheEditorUnlessTheStartIsSilent) {
  // Receives the URLs of files in place of the desktop.
  QTextBrowser editor;
  QDesktopServices::setUrlHandler(QStringLiteral("file"), &editor, "setSource");
  const std::string path = application.File("readme.txt", "text");
  StartUp(tallow, frame, true).OpenInTextEditor(path);
  EXPECT_EQ(editor.source(), QUrl());
  windows.OpenInTextEditor(path);
  EXPECT_EQ(editor.source().toLocalFile(), QtPath(path));
  // A file that is not there is looked for beside the program.
  const std::string shipped = std::string(FolderOfPath(ExecutablePath())) + "shipped.txt";
  windows.OpenInTextEditor(application / "shipped.txt");
  EXPECT_EQ(editor.source().toLocalFile(), QtPath(shipped));
  QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}
#endif

TEST_F(StartUpTest, ADamagedSettingsFileOffersToCreateANewOne) {
  application.File("Grouping/System/TallowOrganizer.ini", "x\r\ny\r\nabc\r\n");
  AnswerNextBox(QMessageBox::No);
  EXPECT_FALSE(System(tallow, drives, windows).Main(QtsRuntimeFile()));
  EXPECT_TRUE(box_text.contains("TallowOrganizer.ini, line 3: 'abc' is not a number"))
      << box_text.toStdString();
  EXPECT_FALSE(frame.isVisible());
}

TEST_F(StartUpTest, TheFirstJukeboxHasTheFocus) {
  StartUp windows(tallow, frame, false);
  Jukebox& jukebox = windows.NewJukebox();
  jukebox.AddColumnHeader(kNameHeader);
  jukebox.Nodes().AddChild(nullptr, "a");
  windows.ShowJukebox(jukebox);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  const auto tree_has_focus = [] {
    const QWidget* const focus = QApplication::focusWidget();
    return focus != nullptr && focus->objectName() == QLatin1String("TreeView");
  };
  ASSERT_TRUE(QTest::qWaitFor(tree_has_focus));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "ListView");
}

TEST_F(StartUpTest, ASilentStartDismissesQuestionsThatCanBeDismissed) {
  StartUp silent(tallow, frame, true);
  EXPECT_EQ(silent.AskDismissable("Recover?"), std::nullopt);
}

TEST_F(StartUpTest, TheTipComesAfterTheStartAndOnce) {
  QSettings().setValue(QStringLiteral("Options/Show Tips at Startup"), 1);
  frame.show();
  windows.ShowDueTip();
  EXPECT_EQ(frame.findChild<frmTip*>(), nullptr);
  // The program opens the files of the command line between these two.
  windows.ShowTip();
  EXPECT_EQ(frame.findChild<frmTip*>(), nullptr);
  windows.ShowDueTip();
  auto* const tip = frame.findChild<frmTip*>();
  ASSERT_NE(tip, nullptr);
  EXPECT_FALSE(tip->isModal());
  delete tip;
  windows.ShowDueTip();
  EXPECT_EQ(frame.findChild<frmTip*>(), nullptr);
  QSettings().setValue(QStringLiteral("Options/Show Tips at Startup"), 0);
}

}  // namespace
}  // namespace tallow

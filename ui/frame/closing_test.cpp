// SPDX-License-Identifier: GPL-3.0-or-later
// What happens to changes when windows are closed, and when closing is cancelled.
#include <gtest/gtest.h>

#include <QDialog>
#include <QMdiSubWindow>
#include <QStatusBar>
#include <QTest>

#include "app/data_paths.h"
#include "jukebox/initial_jukebox.h"
#include "tests/frame_fixture.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/player/frm_main_winamp.h"
#include "util/file_system.h"

namespace tallow {
namespace {

class Closing : public FrameTest {
 protected:
  /// A jukebox window with a file and a change that is not saved in it.
  frmMain& ChangedJukebox(const std::string& caption) {
    frmMain& window = ShowJukebox();
    window.Jukebox().Caption(caption);
    window.Jukebox().FileLocation(application / "Grouping/");
    EXPECT_TRUE(window.Jukebox().Save(FileOf(caption), library));
    window.Jukebox().Nodes().AddChild(nullptr, "unsaved");
    window.Jukebox().IsFormDirty(true);
    return window;
  }
  std::string FileOf(const std::string& caption) const {
    return application / "Grouping/" + QString::fromStdString(caption).toLower().toStdString() +
           ".juk";
  }
  bool IsSaved(const std::string& caption) {
    Jukebox saved;
    return saved.Load(FileOf(caption), library) && saved.Nodes().Find("unsaved") != nullptr;
  }
  void CloseWith(frmMain& window, MessageAnswer answer) {
    messages.answer = answer;
    SubOf(window).close();
    DeleteClosedWindows();
  }
};

TEST_F(Closing, AnUnchangedJukeboxClosesWithoutAQuestion) {
  CloseWith(ShowJukebox(), MessageAnswer::kCancel);
  EXPECT_EQ(messages.Take(), Texts{});
  EXPECT_TRUE(frame.OpenJukeboxes().empty());
}

TEST_F(Closing, AChangedJukeboxAsksWithYesAndNoOnly) {
  CloseWith(ChangedJukebox("MIX"), MessageAnswer::kNo);
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(messages.shown[0].text, "Do you want to save changes to MIX");
  EXPECT_EQ(messages.shown[0].buttons, MessageButtons::kYesNo);
  EXPECT_TRUE(messages.shown[0].can_be_dismissed);
  EXPECT_TRUE(frame.OpenJukeboxes().empty());
  EXPECT_FALSE(IsSaved("MIX"));
}

TEST_F(Closing, YesSavesFirst) {
  CloseWith(ChangedJukebox("MIX"), MessageAnswer::kYes);
  EXPECT_EQ(messages.Take(), Texts{"Do you want to save changes to MIX"});
  EXPECT_TRUE(frame.OpenJukeboxes().empty());
  EXPECT_TRUE(IsSaved("MIX"));
  EXPECT_EQ(tallow.settings.LocOfLastSavedJukeBox(), FileOf("MIX"));
}

TEST_F(Closing, DismissingTheQuestionKeepsTheWindowOpen) {
  frmMain& window = ChangedJukebox("MIX");
  CloseWith(window, MessageAnswer::kCancel);
  EXPECT_EQ(frame.OpenJukeboxes().size(), 1U);
  EXPECT_TRUE(window.isVisible());
  EXPECT_FALSE(IsSaved("MIX"));
}

TEST_F(Closing, TheSampleHasAQuestionOfItsOwnAndIsSavedUnderAName) {
  frame.show();
  Item("mnuNew").trigger();
  messages.answer = MessageAnswer::kYes;
  WithFileDialog(Item("mnuClose"), [](QFileDialog& dialog) { Choose(dialog, "First"); });
  EXPECT_EQ(messages.Take(),
            Texts{"You should save this initial Jukebox to speed up the program.  Do you want to "
                  "save this Jukebox?"});
  DeleteClosedWindows();
  EXPECT_TRUE(frame.OpenJukeboxes().empty());
  EXPECT_TRUE(FileExists(application / "Grouping/first.juk"));
}

TEST_F(Closing, ACancelledFileDialogKeepsTheWindowOpen) {
  frame.show();
  Item("mnuNew").trigger();
  messages.answer = MessageAnswer::kYes;
  WithFileDialog(Item("mnuClose"), [](QFileDialog& dialog) { dialog.reject(); });
  DeleteClosedWindows();
  ASSERT_EQ(frame.OpenJukeboxes().size(), 1U);
  EXPECT_EQ(frame.OpenJukeboxes()[0]->Caption(), kSampleCaption);
}

TEST_F(Closing, AFailedSaveKeepsTheWindowOpen) {
  frmMain& window = ChangedJukebox("MIX");
  RemoveFile(FileOf("MIX"));
  CreateFolders(FileOf("MIX") + kSep + "x");
  CloseWith(window, MessageAnswer::kYes);
  EXPECT_EQ(messages.shown.size(), 2U);
  EXPECT_EQ(frame.OpenJukeboxes().size(), 1U);
  EXPECT_TRUE(window.Jukebox().IsFormDirty());
}

TEST_F(Closing, TheClosedJukeboxIsSavedThoughAnotherIsActive) {
  frmMain& one = ChangedJukebox("ONE");
  frmMain& two = ChangedJukebox("TWO");
  Area().setActiveSubWindow(&SubOf(two));
  CloseWith(one, MessageAnswer::kYes);
  EXPECT_TRUE(IsSaved("ONE"));
  EXPECT_FALSE(IsSaved("TWO"));
  EXPECT_EQ(frame.OpenJukeboxes(), std::vector<Jukebox*>{&two.Jukebox()});
}

TEST_F(Closing, AMinimizedJukeboxIsSavedWhenItIsClosed) {
  frmMain& one = ChangedJukebox("ONE");
  frmMain& two = ChangedJukebox("TWO");
  SubOf(one).showMinimized();
  CloseWith(one, MessageAnswer::kYes);
  EXPECT_EQ(messages.Take(), Texts{"Do you want to save changes to ONE"});
  EXPECT_TRUE(IsSaved("ONE"));
  EXPECT_FALSE(IsSaved("TWO"));
  EXPECT_EQ(frame.OpenJukeboxes(), std::vector<Jukebox*>{&two.Jukebox()});
}

TEST_F(Closing, ClosingTheFrameAlsoSavesMinimizedWindows) {
  frmMain& one = ChangedJukebox("ONE");
  ChangedJukebox("TWO");
  frmMain& three = ChangedJukebox("THREE");
  SubOf(one).showMinimized();
  SubOf(three).showMinimized();
  frame.showMinimized();
  messages.answer = MessageAnswer::kYes;
  bool is_minimized = false;
  messages.on_show = [&] { is_minimized = is_minimized || frame.isMinimized(); };
  EXPECT_TRUE(frame.close());
  EXPECT_EQ(messages.Take(),
            (Texts{"Do you want to save changes to ONE", "Do you want to save changes to TWO",
                   "Do you want to save changes to THREE"}));
  // The window that a question is about is visible.
  EXPECT_FALSE(is_minimized);
  for (const char* const caption : {"ONE", "TWO", "THREE"}) EXPECT_TRUE(IsSaved(caption));
}

TEST_F(Closing, AFailedSaveWhileTheFrameClosesKeepsAllOpen) {
  frmMain& one = ChangedJukebox("ONE");
  frmMain& two = ChangedJukebox("TWO");
  RemoveFile(FileOf("TWO"));
  CreateFolders(FileOf("TWO") + kSep + "x");
  messages.answer = MessageAnswer::kYes;
  EXPECT_FALSE(frame.close());
  DeleteClosedWindows();
  EXPECT_TRUE(IsSaved("ONE"));
  EXPECT_EQ(frame.OpenJukeboxes(), (std::vector<Jukebox*>{&one.Jukebox(), &two.Jukebox()}));
  EXPECT_TRUE(two.Jukebox().IsFormDirty());
}

TEST_F(Closing, TheFrameClosesItsWindowsFirstAndThenThePlayer) {
  frmMain& one = ChangedJukebox("ONE");
  ChangedJukebox("TWO");
  one.Run(ListCommand::kPlayAllSongsInFolder, one.Jukebox().selectednode());
  link.Take();
  messages.answer = MessageAnswer::kYes;
  EXPECT_TRUE(frame.close());
  EXPECT_EQ(messages.Take(),
            (Texts{"Do you want to save changes to ONE", "Do you want to save changes to TWO"}));
  EXPECT_TRUE(IsSaved("ONE"));
  EXPECT_TRUE(IsSaved("TWO"));
  EXPECT_EQ(link.Take(), (Texts{"273 40047 0", "1024 0 101", "273 40001 0"}));
}

TEST_F(Closing, APlayerThatHasEndedDoesNotPreventClosing) {
  for (const bool panel_only : {true, false}) {
    frmMain& window = ShowJukebox();
    window.Run(ListCommand::kPlayAllSongsInFolder, window.Jukebox().selectednode());
    link.found = 0;
    window.Run(ListCommand::kPlayAllSongsInFolder, window.Jukebox().selectednode());
    EXPECT_EQ(messages.Take(), Texts{"Couldn't find WinAMP's Window"});
    ASSERT_NE(frame.PlayerPanel(), nullptr);
    link.Take();
    if (panel_only)
      frame.Player().End();
    else
      EXPECT_TRUE(frame.close());
    EXPECT_EQ(messages.Take(), Texts{});
    EXPECT_EQ(link.Take(), Texts{"find"});
    DeleteClosedWindows();
    EXPECT_EQ(frame.PlayerPanel(), nullptr);
    link.found = 7;
  }
}

TEST_F(Closing, CancellingTheQuestionKeepsTheProgramAndItsMusicRunning) {
  frmMain& one = ChangedJukebox("ONE");
  one.Run(ListCommand::kPlayAllSongsInFolder, one.Jukebox().selectednode());
  link.Take();
  messages.answer = MessageAnswer::kCancel;
  EXPECT_FALSE(frame.close());
  EXPECT_TRUE(frame.isVisible());
  EXPECT_TRUE(one.isVisible());
  EXPECT_EQ(Area().currentSubWindow(), &SubOf(one));
  EXPECT_NE(frame.PlayerPanel(), nullptr);
  EXPECT_EQ(link.Take(), Texts{});
}

TEST_F(Closing, CancellingTheSecondQuestionKeepsTheFirstJukeboxOpenToo) {
  frmMain& one = ChangedJukebox("ONE");
  frmMain& two = ChangedJukebox("TWO");
  frame.KeepUnsavedChanges();
  int asked = 0;
  messages.on_show = [&] {
    messages.answer = ++asked == 1 ? MessageAnswer::kNo : MessageAnswer::kCancel;
  };
  EXPECT_FALSE(frame.close());
  DeleteClosedWindows();
  EXPECT_EQ(frame.OpenJukeboxes(), (std::vector<Jukebox*>{&one.Jukebox(), &two.Jukebox()}));
  EXPECT_TRUE(FileExists(SystemFolder(application.path()) + "Jukebox-1.unsaved"));
  // The first jukebox asks again.
  messages.on_show = {};
  messages.Take();
  CloseWith(one, MessageAnswer::kNo);
  EXPECT_EQ(messages.Take(), Texts{"Do you want to save changes to ONE"});
}

TEST_F(Closing, ATextBeingTypedIsAChangeAndIsSaved) {
  frmMain& window = ShowJukebox();
  Jukebox& jukebox = window.Jukebox();
  jukebox.Caption("MIX");
  jukebox.FileLocation(application / "Grouping/");
  ASSERT_TRUE(jukebox.Save(FileOf("MIX"), library));
  const auto type = [&](const QString& text) {
    DeleteClosedWindows();
    window.PVExplorer1().EditText(jukebox.Nodes().ChildAt(0));
    auto* const editor = window.findChild<QTreeView*>()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->setText(text);
  };
  type("typed");
  frame.SaveDatForm();
  Jukebox saved;
  ASSERT_TRUE(saved.Load(FileOf("MIX"), library));
  EXPECT_NE(saved.Nodes().Find("typed"), nullptr);
  type("typed again");
  CloseWith(window, MessageAnswer::kYes);
  EXPECT_EQ(messages.Take(), Texts{"Do you want to save changes to MIX"});
  ASSERT_TRUE(saved.Load(FileOf("MIX"), library));
  EXPECT_NE(saved.Nodes().Find("typed again"), nullptr);
}

TEST_F(Closing, ADisabledFrameDoesNotClose) {
  ShowJukebox();
  frame.setEnabled(false);
  EXPECT_FALSE(frame.close());
  EXPECT_EQ(frame.OpenJukeboxes().size(), 1U);
}

TEST_F(Closing, AFileHandedOverDuringTheQuestionKeepsTheProgramOpen) {
  ChangedJukebox("ONE");
  Jukebox made;
  made.Nodes().AddChild(nullptr, "All Songs");
  ASSERT_TRUE(made.Save(FileOf("OTHER"), library));
  messages.answer = MessageAnswer::kNo;
  // A second start hands over the file; the modal dialog makes the file wait.
  QDialog question(&frame);
  question.setModal(true);
  messages.on_show = [&] {
    question.show();
    frame.OpenFiles({FileOf("OTHER")});
    question.hide();
  };
  EXPECT_FALSE(frame.close());
  EXPECT_EQ(messages.Take(), Texts{"Do you want to save changes to ONE"});
  DeleteClosedWindows();
  EXPECT_TRUE(frame.isVisible());
  EXPECT_TRUE(QTest::qWaitFor([&] {
    const auto open = frame.OpenJukeboxes();
    return open.size() == 1 && open[0]->Caption() == "OTHER";
  }));
}

class Unsaved : public Closing {
 protected:
  Texts Files() const {
    Texts names;
    for (const FileEntry& file :
         ListFolder(SystemFolder(application.path()), {.pattern = "*.unsaved*"}).files)
      names.push_back(file.name);
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(Unsaved, ChangesAreKeptEveryMinute) {
  const auto* const timer = frame.findChild<QTimer*>(QStringLiteral("KeepUnsavedTimer"));
  ASSERT_NE(timer, nullptr);
  EXPECT_TRUE(timer->isActive());
  EXPECT_EQ(timer->interval(), 60000);
  ChangedJukebox("MIX");
  ChangedJukebox("OTHER");
  EXPECT_EQ(Files(), Texts{});
  // Shortens the interval, so that the test need not wait a minute.
  auto& clock = const_cast<QTimer&>(*timer);
  clock.start(1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Files().size() == 2; }));
}

TEST_F(Unsaved, ThereIsAFileForEachChangedJukeboxUntilItIsSavedOrClosed) {
  frmMain& one = ChangedJukebox("ONE");
  ChangedJukebox("TWO");
  frame.KeepUnsavedChanges();
  EXPECT_EQ(Files(), (Texts{"Jukebox-1.unsaved", "Jukebox-2.unsaved"}));
  frame.SaveDatForm();
  EXPECT_EQ(Files(), Texts{"Jukebox-1.unsaved"});
  CloseWith(one, MessageAnswer::kCancel);
  EXPECT_EQ(Files(), Texts{"Jukebox-1.unsaved"});
  CloseWith(one, MessageAnswer::kNo);
  EXPECT_EQ(Files(), Texts{});
}

TEST_F(Unsaved, ChangesAreKeptBeforeASearchForNewSongs) {
  ChangedJukebox("ONE");
  Texts during_search;
  searches.for_songs = [&](SearchProgress&) {
    during_search = Files();
    return true;
  };
  Item("mnuNewSongsWholeComputerSearch").trigger();
  EXPECT_EQ(during_search, Texts{"Jukebox-1.unsaved"});
}

TEST_F(Unsaved, AWindowDeletedWithoutBeingClosedLeavesItsFile) {
  delete &SubOf(ChangedJukebox("ONE"));
  frmMain& two = ChangedJukebox("TWO");
  frame.KeepUnsavedChanges();
  delete &SubOf(two);
  EXPECT_EQ(Files(), Texts{"Jukebox-1.unsaved"});
}

TEST_F(Unsaved, ANewJukeboxHasNothingToKeep) {
  frame.show();
  Item("mnuNew").trigger();
  Item("mnuNew").trigger();
  frame.KeepUnsavedChanges();
  EXPECT_EQ(Files(), Texts{});
  frame.OpenJukeboxes()[1]->Nodes().AddChild(nullptr, "x");
  frame.KeepUnsavedChanges();
  EXPECT_EQ(Files(), Texts{"Jukebox-1.unsaved"});
}

TEST_F(Unsaved, AFailureToKeepChangesIsReportedInTheStatusBar) {
  ChangedJukebox("ONE");
  CreateFolders(SystemFolder(application.path()) + "Jukebox-1.unsaved.new" + kSep + "x");
  frame.KeepUnsavedChanges();
  const QString said = frame.statusBar()->currentMessage();
  EXPECT_TRUE(
      said.startsWith("The unsaved changes of ONE could not be stored for crash recovery. "))
      << said.toStdString();
  EXPECT_TRUE(said.endsWith(". Save the jukebox."));
}

}  // namespace
}  // namespace tallow

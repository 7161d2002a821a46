// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>

#include "tests/recorded_link.h"
#include "tests/recorded_messages.h"
#include "tests/recorded_searches.h"
#include "tests/window_fixture.h"
#include "ui/frame/frm_mdi_form1.h"
#include "ui/jukebox/frm_main.h"

namespace tallow {

/// A frame window whose messages to the player are recorded.
class FrameTest : public LibraryTest {
 protected:
  FrameTest() {
    tallow.settings.LocOfWinAmpExe("/opt/player");
    tallow.player_path = "/opt/player";
    AddSong(music.path(), "a.mp3");
    AddSong(music.path(), "b.mp3");
    music.File("a.mp3");
    music.File("b.mp3");
    link.answers["1024 0 0"] = 0x2081;
    link.logs_queries = false;
  }

  /// A jukebox window on screen with a folder of both songs.
  frmMain& ShowJukebox() {
    frmMain& window = frame.NewJukeboxWindow();
    Folder& folder = window.Jukebox().Nodes().AddChild(nullptr, "one");
    folder.Items().emplace_back(1, 2);
    folder.Items().emplace_back(2, 2);
    frame.show();
    frame.ShowJukeboxWindow(window);
    return window;
  }
  /// How often songs were handed to the player since the last call.
  std::ptrdiff_t HandOvers() {
    const Texts sent = link.Take();
    return std::count(sent.begin(), sent.end(), "1024 0 101");
  }
  QAction& Item(const char* name) { return *frame.findChild<QAction*>(QLatin1String(name)); }
  /// Triggers an action that opens the file dialog, and calls `act` when the dialog is open.
  template <typename Act>
  static void WithFileDialog(QAction& item, const Act& act) {
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      timer.stop();
      act(*dialog);
    });
    timer.start(5);
    item.trigger();
  }
  static void Choose(QFileDialog& dialog, const QString& file) {
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(file);
    QMetaObject::invokeMethod(&dialog, "accept");
  }
  /// Runs the deferred deletion of closed windows.
  static void DeleteClosedWindows() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  QMdiArea& Area() { return *frame.findChild<QMdiArea*>(); }
  QMdiSubWindow& SubOf(const QWidget& window) {
    return *qobject_cast<QMdiSubWindow*>(window.parentWidget());
  }

  RecordedLink link;
  RecordedMessages messages;
  RecordedSearches searches{tallow};
  frmMDIForm1 frame{tallow, link, searches, messages.Shower()};
};

}  // namespace tallow

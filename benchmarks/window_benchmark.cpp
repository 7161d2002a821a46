// SPDX-License-Identifier: GPL-3.0-or-later
// Measures what the user sees, on a display in memory: the second start of the whole program to the
// moment the jukebox is painted; showing "All Songs"; scrolling to its end. Prints a line each:
// what, seconds, KiB.
//
// Usage: tallow_window_benchmark MUSIC APPLICATION_FOLDER
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>

#include <QApplication>
#include <QScrollBar>
#include <QTableView>
#include <QTreeView>

#include "app/drive_list.h"
#include "app/system.h"
#include "app/tallow.h"
#include "jukebox/window/frm_main.h"
#include "ui/frm_mdi_form1.h"
#include "ui/start_up.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

long Memory() {
  std::ifstream status("/proc/self/statm");
  long pages = 0;
  status >> pages >> pages;
  return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

int Run(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const auto begin = Clock::now();
  QApplication application(argc, argv);
  Tallow tallow(std::string(argv[2]) + "/");
  const auto drives = GivenDrives({argv[1]});
  frmMDIForm1 frame(tallow);
  const long before = Memory();
  StartUp windows(tallow, frame, true);
  if (!System(tallow, *drives, windows).Main(QtsRuntimeFile())) return 1;
  QApplication::processEvents();
  frame.grab();
  std::printf("start %.6f %ld\n", SecondsSince(begin), Memory() - before);

  auto* const list = frame.findChild<QTableView*>(QStringLiteral("ListView"));
  auto* const tree = frame.findChild<QTreeView*>(QStringLiteral("TreeView"));
  const QModelIndex all_songs = tree->model()->index(0, 0);
  double show = 1;
  double scroll = 1;
  constexpr int kTimes = 5;
  for (int k = 0; k < kTimes; ++k) {
    tree->setCurrentIndex(tree->model()->index(tree->model()->rowCount() - 1, 0));
    QApplication::processEvents();
    const auto shown = Clock::now();
    tree->setCurrentIndex(all_songs);
    list->viewport()->repaint();
    show = std::min(show, SecondsSince(shown));
    QApplication::processEvents();
    const auto scrolled = Clock::now();
    list->verticalScrollBar()->setValue(list->verticalScrollBar()->maximum());
    list->viewport()->repaint();
    scroll = std::min(scroll, SecondsSince(scrolled));
    QApplication::processEvents();
  }
  std::printf("show %.6f %d\nscroll %.6f %d\n", show, list->model()->rowCount(), scroll,
              list->model()->rowCount());
  return 0;
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) { return argc == 3 ? tallow::Run(argc, argv) : 2; }

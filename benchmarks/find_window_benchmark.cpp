// SPDX-License-Identifier: GPL-3.0-or-later
// Types into the find field of the whole frame window, on an in-memory display, and measures from
// each key until the list with the hits is painted.
//
// Usage: tallow_find_window_benchmark FOLDER COUNT
//   see tallow_find_benchmark
//
// Prints lines of a name and seconds:
//   first_painted  the first key, for which the details are read and the index is made
//   painted        the slowest key of several typed texts, each the best of several runs; the text
//                  follows
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include "app/search/drive_list.h"
#include "app/search/drive_searches.h"
#include "app/tallow.h"
#include "benchmarks/find_library.h"
#include "player/player_link.h"
#include "ui/frame/frm_mdi_form1.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

constexpr int kRuns = 5;

/// A key press of the field.
double SecondsOfKey(QLineEdit& field, SongListView& list, QChar letter) {
  const auto begin = std::chrono::steady_clock::now();
  QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(letter));
  QApplication::sendEvent(&field, &press);
  // A search that has to wait for other keys comes now.
  QApplication::processEvents();
  list.viewport()->repaint();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// Types a text several times. \returns the best seconds of each key
std::vector<double> TimesOfKeys(QLineEdit& field, SongListView& list, const QString& text) {
  std::vector<double> best(static_cast<std::size_t>(text.size()), 1e9);
  for (int k = 0; k < kRuns; ++k) {
    field.clear();
    QApplication::processEvents();
    for (qsizetype n = 0; n < text.size(); ++n) {
      double& seconds = best[static_cast<std::size_t>(n)];
      seconds = std::min(seconds, SecondsOfKey(field, list, text[n]));
    }
  }
  return best;
}

int Run(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const FindLibrary library(argv[1], std::atoi(argv[2]));
  Tallow tallow(library.Application());
  tallow.preferences.OverrideStyle(Style::kModern);
  library.Fill(tallow);
  tallow.details.Use(tallow.library);
  const auto drives = GivenDrives({});
  const auto player = SystemPlayerLink();
  DriveSearches searches(tallow, *drives);
  frmMDIForm1 frame(tallow, *player, searches, [](const Message&) { return MessageAnswer::kNo; });
  frmMain& window = frame.NewJukeboxWindow();
  window.Jukebox().Nodes().AddChild(nullptr, "one").Items().emplace_back(1, 2);
  frame.resize(1280, 800);
  frame.show();
  frame.ShowJukeboxWindow(window);
  QApplication::processEvents();
  auto* const list = window.findChild<SongListView*>(QStringLiteral("ListView"));
  auto* const field = frame.findChild<QLineEdit*>(QStringLiteral("FindField"));
  field->setFocus();

  std::printf("first_painted %.6f\n", SecondsOfKey(*field, *list, 'b'));
  if (!window.Jukebox().ShowsHits()) return 1;
  // The first search of a very large library does not wait for all details.
  tallow.details.LoadAll();
  double slowest = 0;
  std::string slowest_text;
  for (const std::string_view typed : kTypedTexts) {
    const QString text = QString::fromUtf8(typed.data(), static_cast<qsizetype>(typed.size()));
    const std::vector<double> times = TimesOfKeys(*field, *list, text);
    for (std::size_t n = 0; n < times.size(); ++n)
      if (times[n] > slowest) {
        slowest = times[n];
        slowest_text = text.first(static_cast<qsizetype>(n) + 1).toStdString();
      }
  }
  std::printf("painted %.6f \"%s\"\n", slowest, slowest_text.c_str());
  return 0;
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) { return argc == 3 ? tallow::Run(argc, argv) : 2; }

// SPDX-License-Identifier: GPL-3.0-or-later
// Measures what the user sees, on an in-memory display: the second start of the whole program until
// the jukebox is painted; showing "All Songs"; scrolling to its end; cutting half of its songs,
// pasting them and undoing both, and the same with a quarter, in a row and scattered. Prints per
// line: what, seconds, KiB or rows.
//
// Usage: tallow_window_benchmark [--modern] MUSIC APPLICATION_FOLDER [JUKEBOX]
//   --modern  runs in the modern style
//   JUKEBOX   is saved after the start, and opened by later starts; nothing else is then measured
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <QApplication>
#include <QScrollBar>
#include <QTreeView>

#include "app/search/drive_list.h"
#include "app/search/drive_searches.h"
#include "app/system.h"
#include "app/tallow.h"
#include "benchmarks/process_memory.h"
#include "details/child_reader.h"
#include "player/player_link.h"
#include "ui/frame/frm_mdi_form1.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"
#include "ui/start/start_up.h"
#include "util/user_folders.h"

namespace tallow {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// A subset of the rows of a list.
struct Part {
  const char* name;
  int of;    ///< selects one row of this many
  int step;  ///< 1 selects consecutive rows
};
constexpr Part kParts[] = {
    {"half", 2, 1}, {"quarter", 4, 1}, {"every_2nd", 2, 2}, {"every_4th", 4, 4}};

/// Cuts, pastes and undoes in a user folder like "All Songs", with its list on show.
void Edit(frmMDIForm1& frame, SongListView& list) {
  frmMain& window = *frame.WindowOf(*frame.OpenJukeboxes().front());
  PVExplorer& explorer = window.PVExplorer1();
  FolderTree& tree = window.Jukebox().Nodes();
  Folder& mine = tree.AddChild(nullptr, "mine");
  Folder& other = tree.AddChild(nullptr, "other");
  mine.Items() = tree.ChildAt(0).Items();
  explorer.Select(mine);
  constexpr int kTimes = 5;
  for (const Part& part : kParts) {
    double cut = 1;
    double paste = 1;
    double undo_paste = 1;
    double undo_cut = 1;
    std::vector<int> rows;
    for (int k = 0; k < list.model()->rowCount() / part.of; ++k) rows.push_back(k * part.step);
    for (int k = 0; k < kTimes; ++k) {
      list.SelectRows(rows);
      const auto measure = [&](double& best, const auto& act) {
        const auto begin = Clock::now();
        act();
        list.viewport()->repaint();
        best = std::min(best, SecondsSince(begin));
        QApplication::processEvents();
      };
      measure(cut, [&] { explorer.CutSongs(); });
      explorer.Select(other);
      measure(paste, [&] { explorer.Paste(&other); });
      measure(undo_paste, [&] { explorer.Undo(); });
      explorer.Select(mine);
      measure(undo_cut, [&] { explorer.Undo(); });
    }
    const auto print = [&](const char* what, double seconds) {
      std::printf("%s_%s %.6f %d\n", what, part.name, seconds, static_cast<int>(rows.size()));
    };
    print("cut", cut);
    print("paste", paste);
    print("undo_paste", undo_paste);
    print("undo_cut", undo_cut);
  }
}

/// The arguments of a run.
struct Arguments {
  bool is_modern = false;
  std::string music;
  std::string application_folder;
  std::string jukebox;  ///< empty: none is saved
};

std::optional<Arguments> Parse(std::vector<std::string> texts) {
  Arguments arguments;
  arguments.is_modern = std::erase(texts, "--modern") > 0;
  if (texts.size() != 2 && texts.size() != 3) return std::nullopt;
  arguments.music = texts[0];
  arguments.application_folder = texts[1] + "/";
  if (texts.size() == 3) arguments.jukebox = texts[2];
  return arguments;
}

int Run(int argc, char** argv, const Arguments& arguments) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const auto begin = Clock::now();
  QApplication application(argc, argv);
  Tallow tallow(arguments.application_folder);
  if (arguments.is_modern) tallow.preferences.OverrideStyle(Style::kModern);
  tallow.details.ReadInChildren(
      {.program = ExecutablePath(), .arguments = {std::string(kServeDetailsOption)}});
  const auto drives = GivenDrives({arguments.music});
  const auto player = SystemPlayerLink();
  DriveSearches searches(tallow, *drives);
  frmMDIForm1 frame(tallow, *player, searches, [](const Message&) { return MessageAnswer::kNo; });
  const long before = ProcessMemory();
  StartUp windows(tallow, frame, true);
  if (!System(tallow, *drives, windows).Main(QtsRuntimeFile())) return 1;
  QApplication::processEvents();
  frame.grab();
  std::printf("start %.6f %ld\n", SecondsSince(begin), ProcessMemory() - before);

  if (!arguments.jukebox.empty()) {
    Jukebox& jukebox = *frame.OpenJukeboxes().front();
    if (!jukebox.Save(arguments.jukebox, tallow.library)) return 1;
    tallow.settings.LocOfLastSavedJukeBox(arguments.jukebox);
    tallow.SaveSettings();
    return 0;
  }
  auto* const list = frame.findChild<SongListView*>(QStringLiteral("ListView"));
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
  Edit(frame, *list);
  return 0;
}

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  // The child that reads tags, as in main.cpp.
  if (argc == 2 && argv[1] == tallow::kServeDetailsOption) return tallow::ServeSongDetails();
  const auto arguments = tallow::Parse({argv + 1, argv + argc});
  return arguments ? tallow::Run(argc, argv, *arguments) : 2;
}

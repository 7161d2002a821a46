// SPDX-License-Identifier: GPL-3.0-or-later
// Random commands, drags, searches and undo steps in two jukebox windows; after each of them the
// widgets must show the contents of the jukeboxes.
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <utility>

#include <QAbstractItemModelTester>

#include "tests/drag_and_drop.h"
#include "tests/jukebox_window_fixture.h"
#include "ui/jukebox/explorer_drag.h"
#include "ui/jukebox/folder_tree_model.h"
#include "ui/jukebox/song_list_model.h"

namespace tallow {
namespace {

class RandomWidgets : public JukeboxWindowTest, public testing::WithParamInterface<unsigned> {
 protected:
  static constexpr int kSongs = 25;
  static constexpr int kMinFolders = 8;
  static constexpr int kMaxFolders = 40;

  RandomWidgets() {
    AddSongs(kSongs);
    // Connects the windows as the frame does.
    for (const auto& [each, its_other] : {std::pair(&window, &other), std::pair(&other, &window)}) {
      QObject::connect(each, &frmMain::LinkedStepDone,
                       [this, into = its_other](EditHistory::MoveLink link, bool back) {
                         linked_steps += into->PVExplorer1().StepLinked(link.move, back) ? 1 : 0;
                       });
      QObject::connect(each, &frmMain::RanksChanged, [this, into = its_other](const Songs& songs) {
        into->Jukebox().RanksChanged(library, songs);
        ++rankings;
      });
    }
    // Every other run has the columns of details.
    tallow.preferences.SetSwitches({.columns_of_details = HasDetails(), .more_commands = true});
    window.FollowPreferences();
    other.FollowPreferences();
    other.Jukebox().AddColumnHeader(kNameHeader);
    other.Jukebox().AddColumnHeader(kKeyHeader);
    for (frmMain* const each : {&window, &other}) {
      FolderTree& tree = each->Jukebox().Nodes();
      for (const char* const text : {"All Songs", "Decades", "Artist", "mine", "mine too"}) {
        Folder& folder = tree.AddChild(nullptr, text);
        for (int song = 1; song <= kSongs; song += 1 + Random(2))
          folder.Items().emplace_back(song, 2);
      }
      tree.AddChild(tree.Find("Decades"), "80's");
      each->resize(700, 500);
      each->show();
      each->ShowJukebox();
    }
  }

  static bool HasDetails() { return GetParam() % 2 == 0; }
  int Random(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
  bool OneOf(int count) { return Random(count) == 0; }

  static void Collect(Folder& folder, std::vector<Folder*>& to) {
    to.push_back(&folder);
    for (std::int32_t k = 0; k < folder.Children(); ++k) Collect(folder.ChildAt(k), to);
  }
  static std::vector<Folder*> AllFolders(frmMain& of) {
    std::vector<Folder*> all;
    FolderTree& tree = of.Jukebox().Nodes();
    for (std::int32_t k = 0; k < tree.Children(); ++k) Collect(tree.ChildAt(k), all);
    return all;
  }
  Folder* AnyFolder(frmMain& of) {
    const std::vector<Folder*> all = AllFolders(of);
    return all.empty() ? nullptr
                       : all[static_cast<std::size_t>(Random(static_cast<int>(all.size())))];
  }
  void SelectSomeRows(frmMain& of) {
    std::vector<int> rows;
    for (int row = 0; row < ListOf(of).model()->rowCount(); ++row)
      if (OneOf(2)) rows.push_back(row);
    if (!rows.empty()) ListOf(of).SelectRows(rows);
  }
  void Drop(frmMain& on, const Folder* to, const QMimeData* data) {
    if (data == nullptr) return;
    FolderTreeView& tree = TreeOf(on);
    QPoint place(5, tree.viewport()->height() - 3);
    if (to != nullptr) {
      const QModelIndex index = static_cast<FolderTreeModel*>(tree.model())->IndexOf(*to);
      tree.scrollTo(index);
      place = tree.visualRect(index).center();
    }
    drops += DropAt(tree, place, *data, OneOf(3) ? Qt::ControlModifier : Qt::NoModifier) ? 1 : 0;
  }
  /// Drags the selected songs to another line of their list.
  void DragInside(frmMain& in) {
    if (in.Jukebox().ShowsHits()) return;
    const auto data = in.PVExplorer1().SongsToDrag();
    if (data == nullptr) return;
    SongListView& list = ListOf(in);
    const std::vector<std::int32_t> before = SongsOf(*in.Jukebox().selectednode());
    EXPECT_TRUE(DropAt(list, QPoint(5, Random(list.viewport()->height())), *data));
    list_moves += SongsOf(*in.Jukebox().selectednode()) != before ? 1 : 0;
  }
  /// Files a song, as the categorizer does.
  void File(frmMain& in, Folder& folder) {
    folder.Items().emplace_back(1 + Random(kSongs), 2);
    in.Jukebox().Nodes().AddChild(&folder, "filed");
    in.Jukebox().ListRefilled(library);
  }
  /// Refills the list while the file of a song is missing.
  void Prune(frmMain& in) {
    const int song = 1 + Random(kSongs);
    library.Mp3Info(kFileIsThere, song, "0");
    in.Jukebox().ListRefilled(library);
    library.Mp3Info(kFileIsThere, song, "1");
  }

  void ShowHits(frmMain& in) {
    Songs hits;
    for (int song = 1; song <= kSongs; ++song)
      if (OneOf(3)) hits.push_back(song);
    std::shuffle(hits.begin(), hits.end(), random);
    const Folder* const shown = in.Jukebox().selectednode();
    if (!in.Jukebox().ShowsHits() && shown != nullptr)
      before_hits[&in] = {shown->Key(), SongsOf(*shown), in.PVExplorer1().SelectedRows()};
    in.PVExplorer1().ShowHits(hits);
  }
  /// Gives the folder back. If it still holds the same songs, the same entries must be selected.
  void HideHits(frmMain& in) {
    if (!in.Jukebox().ShowsHits()) return;
    in.PVExplorer1().HideHits();
    const Folder* const shown = in.Jukebox().selectednode();
    const BeforeHits& before = before_hits[&in];
    if (shown == nullptr || shown->Key() != before.folder || SongsOf(*shown) != before.songs)
      return;
    EXPECT_EQ(in.PVExplorer1().SelectedRows(), before.selected);
    ++folders_given_back;
  }
  void Step(frmMain& in, bool back) {
    const bool hits = in.Jukebox().ShowsHits();
    back ? in.PVExplorer1().Undo() : in.PVExplorer1().Redo();
    if (hits && !in.Jukebox().ShowsHits()) ++steps_from_hits;
  }

  void ActOnTreeOf(frmMain& one, Folder* folder) {
    const int count = static_cast<int>(AllFolders(one).size());
    switch (Random(7)) {
      case 0:
        return one.Run(TreeCommand::kAddFolderToRoot, folder);
      case 1:
        return one.Run(TreeCommand::kAddFolderToSelected, folder);
      case 2:
        if (count > kMinFolders) one.Run(TreeCommand::kCutFolder, folder);
        return;
      case 3:
        return one.Run(TreeCommand::kCopyFolder, folder);
      case 4:
        if (count < kMaxFolders) one.Run(TreeCommand::kPasteFolder, OneOf(4) ? nullptr : folder);
        return;
      case 5:
        if (count > kMinFolders) one.Run(TreeCommand::kDeleteFolder, folder);
        return;
      default:
        return one.Run(TreeCommand::kSortNodes, OneOf(3) ? nullptr : folder);
    }
  }
  void ActOnListOf(frmMain& one, Folder* folder) {
    SelectSomeRows(one);
    Folder* const shown = one.Jukebox().ListFolder();
    SongListView& list = ListOf(one);
    switch (Random(9)) {
      case 0:
        return one.Run(OneOf(2) ? ListCommand::kCutSongs : ListCommand::kDeleteSongs, shown);
      case 1:
        return one.Run(ListCommand::kCopySongs, shown);
      case 2:
        return one.Run(ListCommand::kPasteSongs, OneOf(2) ? shown : folder);
      case 3: {
        const QHeaderView& header = *list.horizontalHeader();
        // Most of the sorts are by name or title.
        const int section =
            OneOf(2) ? Random(header.count()) : one.findChild<SongListModel*>()->NamingColumn();
        const int x = header.sectionViewportPosition(section) + header.sectionSize(section) / 2;
        return QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, QPoint(x, 8));
      }
      case 4:
        return one.Run(RankCommand(1 + Random(kNoRankItem)), shown);
      case 5:
        emit list.RankStepsWanted(OneOf(2) ? 1 : -1);
        return;
      case 6:
        return QTest::keyClick(&list, OneOf(2) ? Qt::Key_Up : Qt::Key_Down, Qt::AltModifier);
      case 7:
        return DragInside(one);
      default:
        emit one.PVExplorer1().ColumnClick(ListColumn::kName);
        return;
    }
  }
  void Act(frmMain& one, frmMain& two) {
    Folder* const folder = AnyFolder(one);
    PVExplorer& explorer = one.PVExplorer1();
    messages.answer = OneOf(3) ? MessageAnswer::kNo : MessageAnswer::kYes;
    switch (Random(16)) {
      case 0:
      case 1:
      case 2:
        return ActOnTreeOf(one, folder);
      case 3:
      case 4:
      case 12:
      case 13:
        return ActOnListOf(one, folder);
      case 5:
        if (folder != nullptr) explorer.Select(*folder);
        return;
      case 6:
        return Step(one, true);
      case 7:
        return Step(one, false);
      case 8:
        SelectSomeRows(one);
        return Drop(two, AnyFolder(two), explorer.SongsToDrag().get());
      case 9:
        return Drop(two, OneOf(4) ? nullptr : AnyFolder(two), explorer.FolderToDrag().get());
      case 10:
        if (folder != nullptr) File(one, *folder);
        return;
      case 14:
        if (OneOf(2)) ShowHits(one);
        return;
      case 15:
        return HideHits(one);
      default:
        return Prune(one);
    }
  }

  void ExpectShown(frmMain& one) {
    const Folder* const shown = one.Jukebox().selectednode();
    const QModelIndex current = TreeOf(one).currentIndex();
    ASSERT_EQ(shown == nullptr, one.Jukebox().Nodes().Children() == 0);
    ASSERT_EQ(current.isValid(), shown != nullptr);
    if (shown == nullptr) return;
    ASSERT_TRUE(one.Jukebox().Nodes().Contains(*shown));
    ASSERT_EQ(FolderTreeModel::FolderOf(current), shown);
    // No folder is marked while the list shows hits.
    const bool hits = one.Jukebox().ShowsHits();
    ASSERT_EQ(TreeOf(one).selectionModel()->isSelected(current), !hits);
    const Folder& list = *one.Jukebox().ListFolder();
    ASSERT_EQ(ListOf(one).model()->rowCount(), static_cast<int>(list.Items().size()));
    const std::vector<std::int32_t> songs = SongsOf(list);
    ExpectSortedAsTheArrowSays(one, songs);
    for (const SongEntry& entry : list.Items()) {
      // In the classic style a ranking gives its picture to the selected entries, not to others of
      // the same songs.
      if (!HasDetails() && std::ranges::count(songs, entry.SubItem()) > 1) continue;
      // The worst item of the menu stores 3, and shows 2 at first.
      const std::int32_t rank = library.Song(entry.SubItem()).Rank();
      ASSERT_TRUE(entry.Icon() == rank || (rank == 3 && entry.Icon() == kNeverRanked))
          << entry.SubItem();
    }
    for (std::size_t k = 0; k < list.Items().size(); ++k)
      ASSERT_EQ(list.Items()[k].LabelPosition(), static_cast<std::int32_t>(k) + 1);
    for (const Folder* const folder : AllFolders(one))
      for (std::size_t k = 0; k < folder->Items().size(); ++k)
        ASSERT_TRUE(folder == shown || folder->Items()[k].LabelPosition() == 0) << folder->Text();
  }
  /// The titles of the songs are their numbers.
  void ExpectSortedAsTheArrowSays(frmMain& one, const Songs& songs) {
    const QHeaderView& header = *ListOf(one).horizontalHeader();
    const auto& model = *one.findChild<SongListModel*>();
    if (!header.isSortIndicatorShown() ||
        header.sortIndicatorSection() != model.IndexOf(ListColumn::kTitle))
      return;
    ++arrows;
    ASSERT_TRUE(header.sortIndicatorOrder() == Qt::AscendingOrder
                    ? std::ranges::is_sorted(songs)
                    : std::ranges::is_sorted(songs, std::greater()));
  }

  std::mt19937 random{GetParam()};
  frmMain other{tallow, messages.Shower()};
  int drops = 0;
  int linked_steps = 0;
  int list_moves = 0;
  int rankings = 0;
  int arrows = 0;              ///< seen
  int folders_given_back = 0;  ///< unchanged
  int steps_from_hits = 0;     ///< undone or redone, and the hits are gone
  struct BeforeHits {
    std::uint32_t folder = 0;
    Songs songs;
    std::vector<int> selected;
  };
  std::map<const frmMain*, BeforeHits> before_hits;
};

TEST_P(RandomWidgets, ShowTheContentsOfTheirJukeboxes) {
  constexpr auto kFatal = QAbstractItemModelTester::FailureReportingMode::Fatal;
  const QAbstractItemModelTester tree_tester(Tree().model(), kFatal);
  const QAbstractItemModelTester list_tester(List().model(), kFatal);
  for (int command = 0; command < 1000; ++command) {
    SCOPED_TRACE("command " + std::to_string(command));
    frmMain& one = OneOf(2) ? window : other;
    frmMain& two = OneOf(2) ? window : other;
    Act(one, two);
    one.PVExplorer1().CommitEditing();
    two.PVExplorer1().CommitEditing();
    ExpectShown(window);
    ExpectShown(other);
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(drops, 0);
  EXPECT_GT(linked_steps, 0);
  EXPECT_GT(list_moves, 0);
  EXPECT_GT(rankings, 0);
  EXPECT_GT(folders_given_back, 0);
  EXPECT_GT(steps_from_hits, 0);
  if (HasDetails()) {
    EXPECT_GT(arrows, 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWidgets, testing::Range(1U, 7U));

}  // namespace
}  // namespace tallow

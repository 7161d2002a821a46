// SPDX-License-Identifier: GPL-3.0-or-later
// Songs that are away or missing, in the list of a jukebox window.
#include <filesystem>

#include <QAbstractItemModel>

#include "tests/jukebox_window_fixture.h"
#include "ui/jukebox/song_list_model.h"

namespace tallow {
namespace {

namespace fs = std::filesystem;
/// A jukebox window over four songs on a drive that can be unmounted; two of the songs are in a
/// second folder.
class AwayList : public JukeboxWindowTest {
 protected:
  AwayList() {
    library.UseDrives([this] { return mounted; }, {});
    for (const char* const name : {"one/a.mp3", "one/b.mp3", "two/c.mp3", "two/d.mp3"}) {
      const std::string path = music.File(name);
      library.AddSong(FolderOfPath(path), NameOfPath(path), 1);
    }
    library.ImportFoundSongs(0);
    library.FinishScan(true);
  }
  void Check() {
    library.BeginScan(ScanKind::kFolderList);
    library.CheckToSeeIfFilesAreMissingAndMakeFalse();
    library.FinishScan(true);
    window.Jukebox().ListRefilled(library);
  }
  QAbstractItemModel& Model() { return *List().model(); }
  QStringList Rows() {
    QStringList rows;
    for (int row = 0; row < Model().rowCount(); ++row)
      rows.append(Model().index(row, 0).data().toString());
    return rows;
  }

  MountedVolumes mounted{{music.path() + "one" + kSep, {"uuid A", kSep}, false},
                         {music.path() + "two" + kSep, {"uuid B", kSep}, false}};
};

TEST_F(AwayList, ASongOfADriveThatIsAwayIsGreyAndSaysWhy) {
  AddFolder("mine", {1, 2, 3});
  Show();
  const std::string one = music.path() + "one" + kSep;
  fs::remove_all(fs::path(one));
  mounted.erase(mounted.begin());
  Check();
  EXPECT_EQ(Rows(), (QStringList{"1.  a.mp3", "2.  b.mp3", "3.  c.mp3"}));
  EXPECT_EQ(Model().index(0, 0).data(Qt::ForegroundRole).value<QBrush>(), GreyText());
  EXPECT_NE(GreyText().color(), QGuiApplication::palette().color(QPalette::Text));
  EXPECT_FALSE(Model().index(2, 0).data(Qt::ForegroundRole).isValid());
  const QString why = QString::fromStdString("a.mp3 is on a drive that is away: " + one);
  for (const int role : {int(Qt::ToolTipRole), int(Qt::AccessibleTextRole)})
    EXPECT_TRUE(Model().index(0, 0).data(role).toString().endsWith(why));
}

TEST_F(AwayList, AMissingSongHasNoRowAndTheOthersKeepTheirs) {
  Folder& mine = AddFolder("mine", {1, 2, 3, 4});
  Show();
  RemoveFile(music / "one/b.mp3");
  Check();
  EXPECT_EQ(SongsOf(mine), (Songs{1, 2, 3, 4}));
  EXPECT_EQ(Rows(), (QStringList{"1.  a.mp3", "2.  c.mp3", "3.  d.mp3"}));
  // Commands act on the song of the selected row.
  SelectRow(1);
  EXPECT_EQ(window.PVExplorer1().SelectedRows(), std::vector<int>{2});
  window.PVExplorer1().CutSongs();
  EXPECT_EQ(SongsOf(mine), (Songs{1, 2, 4}));
  EXPECT_EQ(Rows(), (QStringList{"1.  a.mp3", "2.  d.mp3"}));
  // The song after the removed song is selected.
  EXPECT_EQ(window.PVExplorer1().SelectedRows(), std::vector<int>{2});
  window.PVExplorer1().Undo();
  EXPECT_EQ(Rows(), (QStringList{"1.  a.mp3", "2.  c.mp3", "3.  d.mp3"}));
  EXPECT_EQ(window.PVExplorer1().SelectedRows(), std::vector<int>{2});
  // SelectSong selects the row that shows the song.
  EXPECT_EQ(window.PVExplorer1().SelectSong(mine, 3), 3);
  EXPECT_EQ(List().currentIndex().row(), 2);
  EXPECT_EQ(window.PVExplorer1().SelectSong(mine, 1), -1);
}

TEST_F(AwayList, PastedSongsAfterMissingOnesAreSelected) {
  Folder& mine = AddFolder("mine", {1, 2});
  Show();
  RemoveFile(music / "one/b.mp3");
  Check();
  window.PVExplorer1().AddSongs(mine, {{3, 2}, {4, 2}});
  EXPECT_EQ(Rows(), (QStringList{"1.  a.mp3", "2.  c.mp3", "3.  d.mp3"}));
  EXPECT_EQ(window.PVExplorer1().SelectedRows(), (std::vector<int>{2, 3}));
}

TEST_F(AwayList, OpeningARowPlaysItsSong) {
  AddFolder("mine", {1, 2, 3});
  Show();
  RemoveFile(music / "one/b.mp3");
  Check();
  emit List().doubleClicked(Model().index(1, 0));
  EXPECT_EQ(played.back(), Songs{3});
  window.Run(ListCommand::kPlayAllSongsInFolder, window.Jukebox().selectednode());
  EXPECT_EQ(played.back(), (Songs{1, 3}));
}

TEST_F(AwayList, ACommandWithoutASelectionReportsThat) {
  AddFolder("mine", {1, 2});
  Show();
  List().clearSelection();
  Folder* const mine = window.Jukebox().selectednode();
  using enum ListCommand;
  for (const ListCommand item : {kCutSongs, kCopySongs, kDeleteSongs, kRankBest}) {
    problems.clear();
    window.Run(item, mine);
    EXPECT_EQ(problems, QStringList{"No song is selected."}) << static_cast<int>(item);
  }
  EXPECT_EQ(SongsOf(*mine), (Songs{1, 2}));
}

TEST_F(AwayList, PlayingAnEmptyFolderReportsThat) {
  AddFolder("mine", {});
  Show();
  Folder* const mine = window.Jukebox().selectednode();
  window.Run(ListCommand::kPlayAllSongsInFolder, mine);
  window.Run(ListCommand::kPlaySelectedSongs, mine);
  EXPECT_EQ(problems, (QStringList{"This folder holds no songs to play.", "No song is selected."}));
}

}  // namespace
}  // namespace tallow

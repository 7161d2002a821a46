// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <QApplication>
#include <QHeaderView>
#include <QTest>

#include "app/play_commands.h"
#include "tests/recorded_messages.h"
#include "tests/window_fixture.h"
#include "ui/jukebox/folder_tree_view.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {

/// A jukebox window without folders.
class JukeboxWindowTest : public LibraryTest {
 protected:
  using Songs = std::vector<std::int32_t>;

  JukeboxWindowTest() {
    window.Jukebox().AddColumnHeader(kNameHeader);
    window.Jukebox().AddColumnHeader(kKeyHeader);
    window.resize(800, 500);
    QObject::connect(&window, &frmMain::PlaySongs,
                     [this](const Songs& songs) { played.push_back(songs); });
    QObject::connect(&window, &frmMain::Problem,
                     [this](const QStringList& lines) { problems += lines; });
  }

  void UseMoreCommands() {
    tallow.preferences.SetSwitches({.more_commands = true});
    window.FollowPreferences();
  }

  FolderTreeView& Tree() { return TreeOf(window); }
  SongListView& List() { return ListOf(window); }
  static FolderTreeView& TreeOf(frmMain& of) {
    return *of.findChild<FolderTreeView*>(QStringLiteral("TreeView"));
  }
  static SongListView& ListOf(frmMain& of) {
    return *of.findChild<SongListView*>(QStringLiteral("ListView"));
  }
  Jukebox& Box() { return window.Jukebox(); }
  FolderTree& Nodes() { return window.Jukebox().Nodes(); }

  /// Adds the songs "1.mp3", "2.mp3" and so on.
  void AddSongs(int count) {
    for (int k = 1; k <= count; ++k) AddSong(music.path(), std::to_string(k) + ".mp3");
  }
  Folder& AddFolder(const char* text, const Songs& records = {}, Folder* parent = nullptr) {
    Folder& folder = Nodes().AddChild(parent, text);
    for (const std::int32_t record : records) folder.Items().emplace_back(record, 2);
    return folder;
  }
  void Show() {
    window.show();
    window.ShowJukebox();
  }
  void Click(const QString& path) {
    const QModelIndex index = IndexOf(Tree(), path);
    ASSERT_TRUE(index.isValid());
    Tree().scrollTo(index);
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualRect(index).center());
  }
  void ClickHeader() {
    QTest::mouseClick(List().horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(20, 8));
  }
  QString Header() { return List().model()->headerData(0, Qt::Horizontal).toString(); }
  void SelectRow(int row, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(List().viewport(), Qt::LeftButton, keys,
                      List().visualRect(List().model()->index(row, 0)).center());
  }
  std::vector<int> Selected() { return window.PVExplorer1().SelectedRows(); }

  /// The texts of the folders below `above`, or at top level.
  Texts FoldersIn(const Folder* above = nullptr) {
    Texts texts;
    const std::int32_t count = above != nullptr ? above->Children() : Nodes().Children();
    for (std::int32_t k = 0; k < count; ++k)
      texts.push_back((above != nullptr ? above->ChildAt(k) : Nodes().ChildAt(k)).Text());
    return texts;
  }

  RecordedMessages messages;
  frmMain window{tallow, messages.Shower()};
  std::vector<Songs> played;
  QStringList problems;
};

}  // namespace tallow

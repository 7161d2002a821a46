// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QSplitter>

#include "jukebox/jukebox.h"
#include "jukebox/jukebox_edits.h"

class QContextMenuEvent;
class QDropEvent;
class QKeyEvent;
class QMimeData;

namespace tallow {

class ExplorerDrag;
class FolderTreeModel;
class FolderTreeView;
class SongListModel;
class SongListView;

/// Something is about to be cut.
struct BeforeCutEvent {
  const Folder& folder;  ///< the folder that is cut, or whose songs are
  bool songs;            ///< songs of the folder are cut, not the folder itself
  bool cancel = false;   ///< to be set by whoever does not allow it
};

/// The explorer control: a jukebox's folders on the left, the songs of the folder on show on the
/// right.
///
/// It shows a Jukebox, changes it as it is told and tells what the user does; what that means is the
/// jukebox window's business. What it cuts or copies lies on a clipboard that it may share with others of
/// its kind.
class PVExplorer : public QSplitter, private JukeboxView {
  Q_OBJECT

 public:
  /// \param jukebox, library, clipboard have to outlive the control
  PVExplorer(Jukebox& jukebox, const clsMain& library, JukeboxClipboard& clipboard,
             QWidget* parent);
  ~PVExplorer() override;

  /// The folder on show; null for none.
  Folder* selectednode() const noexcept { return jukebox_.selectednode(); }

  /// Gives the keyboard to one of the halves.
  void TakeFocus(bool list);
  /// Selects a folder in the tree, as a click on it does.
  void Select(const Folder& folder);
  /// Shows a folder, selects one of its songs and scrolls it into view.
  /// \param row its place in the list, from 0, before the folder is shown
  /// \returns its place then; -1 when it has gone, because its file is missing
  int SelectSong(const Folder& folder, int row);
  /// Lets the user type another text for a folder.
  void EditText(const Folder& folder);
  /// Opens all folders of the tree.
  void ExpandAll();
  /// Opens the folders that are marked as open, and closes the others.
  void ExpandMarked();

  // Songs are named by their places in the folder, from 0. Those that are missing and remembered have one,
  // though the list does not show them.

  /// The places of the selected songs, in list order.
  std::vector<int> SelectedRows() const;
  /// Scrolls the list so that a song can be seen.
  /// \param row its place, from 0
  void EnsureVisible(int row);
  /// Where a song of the list lies on the screen.
  QRect PlaceOfRow(int row) const;

  /// Where the user is in the list, by songs and not by places.
  struct Place {
    std::uint32_t folder = 0;            ///< key of the folder on show; 0 for none
    std::vector<std::int32_t> selected;  ///< record numbers
    std::int32_t current = 0;            ///< record number; 0 for none
    int scrolled = 0;
  };
  Place CurrentPlace() const;
  /// Goes back to a place, as far as its songs are still there.
  void GoTo(const Place& place);
  /// GoTo after the songs have come into another order. The current song is in sight then, if any is
  /// selected.
  void FollowSongs(const Place& place);

  /// The folder that the keys and the menus act on while the tree has the keyboard: the one on show; null
  /// after a click beside the folders, as for the pop-up menu there.
  Folder* FolderForCommands() const noexcept { return beside_ ? nullptr : selectednode(); }

  /// See SongListView.
  std::string SetBackgroundImage(const QString& address, bool tiled);

  /// Keeps the right and the lower edge of the control free of its parts, where they could not be seen.
  /// \param width, height of what is left free, in pixels
  void KeepFree(int width, int height);

  /// Saves the tree, with the text of a folder that is being typed. See Jukebox::Save.
  bool Save(const std::string& path);
  /// See Jukebox::Load.
  bool Load(const std::string& path, const AskWhichSongs& ask = {}) {
    return jukebox_.Load(path, library_, ask);
  }

  /// Cuts or copies the selected songs.
  void CutSongs();
  void CopySongs();
  void CutFolder(Folder& folder);
  void CopyFolder(Folder& folder) { edits_.CopyFolder(folder); }
  /// Pastes behind what a folder holds.
  /// \param into null for top level
  void Paste(Folder* into);
  /// Removes a folder without asking anybody.
  void DeleteFolder(Folder& folder);
  /// Adds a folder "New Folder" and lets the user type its text.
  /// \param parent null for top level
  void AddFolder(Folder* parent);
  /// Moves a folder, with all below it, behind the folders of the top level. One that must not be cut, or
  /// is there already, stays where it is.
  void MoveToRoot(Folder& folder);
  /// \param above null for the whole tree
  void SortNodes(Folder* above);
  /// Adds songs to a folder that does not hold them yet.
  void AddSongs(Folder& to, const std::vector<SongEntry>& songs);
  void Undo();
  void Redo();
  /// Takes back, or does again, a half of a move between two windows, and tells nobody.
  /// \returns false when that is not the next step here
  bool StepHalf(std::uint64_t pair, bool back);
  /// Takes over the text of a folder that is being changed.
  void CommitEditing();

  /// What a drag of the selected songs, or of a folder, carries; null for none.
  std::unique_ptr<ExplorerDrag> SongsToDrag();
  std::unique_ptr<ExplorerDrag> FolderToDrag();

 signals:
  /// A folder was clicked, or reached with the keyboard.
  void NodeClick(tallow::Folder* folder);
  /// A header of the list was clicked.
  void ColumnClick();
  /// Songs or a folder are about to be cut, or to be moved by a drag.
  void BeforeCut(tallow::BeforeCutEvent& event);
  /// The list was filled with the songs of the folder on show.
  void ListRefilled();
  /// A half has got the keyboard focus.
  /// \param pane see PopUpPane
  void FocusChanged(int pane);
  void CaptionChanged(const QString& caption);
  /// A song was opened: double-clicked, or entered with the keyboard.
  /// \param row its place in the list, from 0
  void ItemOpened(int row);
  /// A pop-up menu is wanted.
  /// \param position where, on the screen
  void ListPopUp(const QPoint& position);
  /// \param folder the folder concerned; null for none
  void TreePopUp(tallow::Folder* folder, const QPoint& position);
  /// The key of a command of a pop-up menu was pressed.
  /// \param command see TreeCommand and ListCommand
  void CommandKey(int pane, int command);
  /// Files were dropped from another program.
  /// \param paths in the bytes of the disk
  void FilesDropped(const std::vector<std::string>& paths, tallow::Folder* to);
  /// One half of a move between two windows was taken back, or done again.
  void HalfStepped(tallow::EditHistory::Half half, bool back);
  /// Something could not be done, and why.
  void Problem(const QStringList& lines);

 private:
  void CaptionChanged() override;
  void ListChanged() override;
  void LabelsChanged() override;
  void HeadersChanged() override;

  bool eventFilter(QObject* watched, QEvent* event) override;
  void SetUpTree();
  void SetUpList();
  void SetUpDragging();
  bool KeyPressed(const QKeyEvent& key, bool in_list);
  bool IsEditKey(const QKeyEvent& key, bool in_list);
  void MenuWanted(const QContextMenuEvent& event, bool in_list);
  void MenuAtSelection(bool in_list);

  bool ListKeyPressed(const QKeyEvent& key);
  void ShowFocus();
  bool MayCut(const Folder& folder, bool songs);
  void RefillList();
  void AfterStep(const Jukebox::StepResult& result, const Place& before);
  void ActBeside(bool beside);
  void SongsAdded(const Folder& to, std::size_t before);
  void SongsTaken(int first);
  void SelectNear(int row);
  void ShowBeside(const Folder& folder);
  void Tell(JukeboxEdits::Result result);
  void MarkOpen(const Folder& folder);
  void DragOver(QDropEvent& event, Folder* to);
  void Drop(QDropEvent& event, Folder* to);
  bool CanDrop(const ExplorerDrag& drag, const Folder* to, bool copy) const;
  Folder* FolderOfKey(std::uint32_t key) const;
  void TakeDrop(PVExplorer& source, Folder& from, bool songs, const std::vector<int>& rows,
                Folder* to, bool copy);

  Jukebox& jukebox_;
  const clsMain& library_;
  JukeboxEdits edits_;
  FolderTreeModel* folders_;
  SongListModel* songs_;
  FolderTreeView* tree_;
  SongListView* list_;
  bool told_ = false;           ///< a folder has been told since a mouse button was last pressed
  bool came_by_click_ = false;  ///< a click has just brought the focus to the tree
  bool keep_place_ = false;     ///< the list is filled again where it is
  bool beside_ = false;         ///< the last click into the tree was beside the folders
};

}  // namespace tallow

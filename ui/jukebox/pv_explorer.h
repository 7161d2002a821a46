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

/// Event emitted before songs or a folder are cut.
struct BeforeCutEvent {
  const Folder& folder;  ///< the folder to cut, or the folder of the songs to cut
  bool songs;            ///< whether songs are cut, not the folder itself
  bool cancel = false;   ///< set by a receiver to forbid the cut
};

/// The explorer control: a jukebox's folders on the left, the songs of the folder on show on the
/// right.
///
/// The control shows a Jukebox, edits it, and emits signals for the user's actions; the jukebox
/// window handles the signals. Cut or copied songs and folders are stored on a clipboard, which
/// several controls may share.
class PVExplorer : public QSplitter, private JukeboxView {
  Q_OBJECT

 public:
  /// \param jukebox, library, clipboard must outlive the control
  PVExplorer(Jukebox& jukebox, const clsMain& library, JukeboxClipboard& clipboard,
             QWidget* parent);
  ~PVExplorer() override;

  /// The folder on show; null for none.
  Folder* selectednode() const noexcept { return jukebox_.selectednode(); }

  /// Sets the keyboard focus to the list or to the tree.
  void TakeFocus(bool list);
  /// Selects a folder in the tree, like a click on it.
  void Select(const Folder& folder);
  /// Shows a folder, selects one of its songs and scrolls to the song.
  /// \param row index of the song in the folder, from 0, before the folder is shown
  /// \returns the index of the song after the folder is shown; -1 if the song was removed because
  /// its file is missing
  int SelectSong(const Folder& folder, int row);
  /// Starts the renaming of a folder by the user.
  void EditText(const Folder& folder);
  /// Expands all folders of the tree.
  void ExpandAll();
  /// Expands the folders that are marked as open and collapses the others.
  void ExpandMarked();

  // Songs are identified by their indexes in the folder, from 0. Missing songs that the folder
  // remembers have an index too, although the list does not show them.

  /// The indexes of the selected songs, in list order.
  std::vector<int> SelectedRows() const;
  /// Scrolls the list to a song.
  /// \param row index of the song, from 0
  void EnsureVisible(int row);
  /// The rectangle of a song of the list, in screen coordinates.
  QRect PlaceOfRow(int row) const;

  /// The state of the list, stored by songs instead of rows.
  struct Place {
    std::uint32_t folder = 0;            ///< key of the folder on show; 0 for none
    std::vector<std::int32_t> selected;  ///< record numbers of the selected songs
    std::int32_t current = 0;            ///< record number of the current song; 0 for none
    int scrolled = 0;
  };
  Place CurrentPlace() const;
  /// Restores a state, as far as its songs still exist.
  void GoTo(const Place& place);
  /// Like GoTo, for use after the songs were reordered. If any song is selected, also scrolls to
  /// the current song.
  void FollowSongs(const Place& place);

  /// The folder that keys and menus act on while the tree has the focus: the folder on show; null
  /// after a click in the empty area of the tree, as for the pop-up menu there.
  Folder* FolderForCommands() const noexcept { return in_empty_area_ ? nullptr : selectednode(); }

  /// See SongListView::SetBackgroundImage.
  std::string SetBackgroundImage(const QString& address, bool tiled);

  /// Keeps a margin at the right and bottom edges of the control empty, because that part is not
  /// visible.
  /// \param width, height size of the margin, in pixels
  void SetHiddenMargin(int width, int height);

  /// Saves the tree, after applying the text of a folder that is being renamed. See Jukebox::Save.
  bool Save(const std::string& path);
  /// See Jukebox::Load.
  bool Load(const std::string& path, const ResolveConfusedSongs& ask = {}) {
    return jukebox_.Load(path, library_, ask);
  }

  /// Cuts or copies the selected songs.
  void CutSongs();
  void CopySongs();
  void CutFolder(Folder& folder);
  void CopyFolder(Folder& folder) { edits_.CopyFolder(folder); }
  /// Pastes the clipboard at the end of a folder.
  /// \param into null for the top level
  void Paste(Folder* into);
  /// Deletes a folder without confirmation.
  void DeleteFolder(Folder& folder);
  /// Adds a folder "New Folder" and starts its renaming by the user.
  /// \param parent null for the top level
  void AddFolder(Folder* parent);
  /// Moves a folder with its subfolders to the end of the top level. Has no effect on a folder that
  /// must not be cut or is already at the top level.
  void MoveToRoot(Folder& folder);
  /// \param above the folder whose subfolders are sorted; null for the whole tree
  void SortNodes(Folder* above);
  /// Adds the songs that a folder does not contain yet.
  void AddSongs(Folder& to, const std::vector<SongEntry>& songs);
  void Undo();
  void Redo();
  /// Undoes or redoes one half of a move between two windows, without emitting LinkedStepDone.
  /// \param pair identifies the move
  /// \param back whether to undo
  /// \returns false if that half is not the next step in this window
  bool StepHalf(std::uint64_t pair, bool back);
  /// If a folder is being renamed, applies the typed text.
  void CommitEditing();

  /// Creates the data of a drag of the selected songs, or of a folder; null if nothing can be
  /// dragged.
  std::unique_ptr<ExplorerDrag> SongsToDrag();
  std::unique_ptr<ExplorerDrag> FolderToDrag();

 signals:
  /// The user clicked a folder, or moved to it with the keyboard.
  void NodeClick(tallow::Folder* folder);
  /// The user clicked a column header of the list.
  void ColumnClick();
  /// Emitted before songs or a folder are cut, or moved by a drag.
  void BeforeCut(tallow::BeforeCutEvent& event);
  /// The list was refilled with the songs of the folder on show.
  void ListRefilled();
  /// A pane has received the keyboard focus.
  /// \param pane see PopUpPane
  void FocusChanged(int pane);
  void CaptionChanged(const QString& caption);
  /// The user opened a song by a double-click or with Enter.
  /// \param row index of the song in the folder, from 0
  void ItemOpened(int row);
  /// The user wants to open a pop-up menu.
  /// \param position in screen coordinates
  void ListPopUp(const QPoint& position);
  /// \param folder the folder that the menu acts on; null for none
  void TreePopUp(tallow::Folder* folder, const QPoint& position);
  /// The user pressed the shortcut of a command of a pop-up menu.
  /// \param command see TreeCommand and ListCommand
  void CommandKey(int pane, int command);
  /// The user dropped files from another program.
  /// \param paths in the encoding of the file system
  void FilesDropped(const std::vector<std::string>& paths, tallow::Folder* to);
  /// One half of a move between two windows was undone or redone.
  void LinkedStepDone(tallow::EditHistory::MoveLink link, bool back);
  /// An operation failed; the lines say why.
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
  void SetInEmptyArea(bool beside);
  void SongsAdded(const Folder& to, std::size_t before);
  void SongsTaken(int first);
  void SelectNear(int row);
  void SelectNeighbour(const Folder& folder);
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
  bool told_ = false;           ///< whether NodeClick was emitted since the last mouse press
  bool came_by_click_ = false;  ///< whether a click has just moved the focus to the tree
  bool keep_place_ = false;     ///< whether refilling the list keeps the scroll position
  bool in_empty_area_ = false;  ///< whether the last click in the tree hit its empty area
};

}  // namespace tallow

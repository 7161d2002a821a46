// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QSplitter>

#include "app/columns/column_choice.h"
#include "jukebox/jukebox.h"
#include "ui/jukebox/explorer/explorer_edits.h"
#include "ui/jukebox/explorer/shown_songs.h"
#include "ui/jukebox/pop_up_menus.h"

class QAbstractScrollArea;

namespace tallow {

class ExplorerDrag;
class ExplorerDragging;
class ExplorerKeys;
class ExplorerSteps;
class FolderChoice;
class FolderExpansion;
class FolderTreeModel;
class FolderTreeView;
class HiddenFolders;
class PaneFocus;
class PlayerModel;
class PlayingMarks;
class PopUpRequests;
class SongColumns;
class SongListModel;
class SongListView;

/// The explorer control: a jukebox's folders on the left, the songs of the folder on show on the
/// right.
///
/// The control shows a Jukebox, edits it, and emits signals for the user's actions; the jukebox
/// window handles the signals. Cut or copied songs and folders are stored on a clipboard, which
/// several controls may share.
///
/// The control puts together the two panes and the objects in `explorer/`, each of which does one
/// of its jobs; most functions and signals below are those of such an object.
class PVExplorer : public QSplitter, private JukeboxView {
  Q_OBJECT

 public:
  /// \param jukebox, library, clipboard must outlive the control
  PVExplorer(Jukebox& jukebox, const clsMain& library, JukeboxClipboard& clipboard,
             QWidget* parent);
  ~PVExplorer() override;

  /// The folder on show; null for none.
  Folder* selectednode() const noexcept { return jukebox_.selectednode(); }

  /// Whether the list has songs.
  bool ShowsSongs() const;

  /// Switches the keys and drags of Switches::more_commands. They are on at first.
  void UseMoreCommands(bool on);

  /// Makes the tree as wide as its names need, within bounds.
  void FitTree();

  /// Sets the keyboard focus to the list or to the tree.
  void GrabFocus(bool list);
  /// Selects a folder in the tree, like a click on it, and shows its songs.
  void Select(const Folder& folder);
  /// Shows a folder, selects one of its songs and scrolls to the song.
  /// \param row index of the song in the folder, from 0, before the folder is shown
  /// \returns the index of the song after the folder is shown; -1 if the song was removed because
  /// its file is missing
  int SelectSong(const Folder& folder, int row);
  /// Shows the hits of a search in the list instead of the songs of the folder on show, see
  /// ShownSongs::ShowHits.
  void ShowHits(const std::vector<std::int32_t>& songs) { shown_songs_.ShowHits(songs); }
  /// Shows the songs of the folder again, as they were.
  void HideHits() { shown_songs_.HideHits(); }
  /// Selects the first song of the list, if there is one.
  void SelectFirstSong() { shown_songs_.SelectNear(0); }
  /// Starts the renaming of a folder by the user.
  void EditText(const Folder& folder);
  /// Shows the folders that the switches of the library list, and no others.
  void UpdateHiddenFolders();
  /// Expands all folders of the tree.
  void ExpandAll();
  /// Expands the folders that are marked as open and collapses the others.
  void ExpandMarked();

  // Songs are identified by their indexes in the folder, from 0. Missing songs that the folder
  // remembers have an index too, although the list does not show them.

  /// The indexes of the selected songs, in list order.
  std::vector<int> SelectedRows() const { return shown_songs_.Selected(); }
  /// The index of the song that a command begins with: of the current song if it is selected, else
  /// of the first selected song; -1 if none is selected.
  int ChosenRow() const { return shown_songs_.Chosen(); }
  /// Scrolls the list to a song.
  /// \param row index of the song, from 0
  void EnsureVisible(int row) { shown_songs_.EnsureVisible(row); }
  /// The rectangle of a song of the list, in screen coordinates.
  QRect PlaceOfRow(int row) const { return shown_songs_.RectOf(row); }

  using Place = ShownSongs::Place;
  /// See the functions of ShownSongs.
  Place CurrentPlace() const { return shown_songs_.CurrentPlace(); }
  void GoTo(const Place& place) { shown_songs_.GoTo(place); }
  void FollowSongs(const Place& place) { shown_songs_.Follow(place); }

  /// The folder that keys and menus act on while the tree has the focus: the folder on show; null
  /// after a click in the empty area of the tree, as for the pop-up menu there.
  Folder* FolderForCommands() const noexcept;

  /// Shows columns in the list, see SongListView::ShowColumns.
  void ShowColumns(const std::vector<ChosenColumn>& columns, const SongColumns& texts,
                   bool details);
  /// Shows with an arrow that the list is sorted by a column, or shows no arrow.
  void ShowSort(std::optional<ListColumn> column, bool descending);
  /// The left lower corner of the column headers, in screen coordinates.
  QPoint BelowHeaders() const;
  /// Call after details of songs were read.
  void DetailsChanged();

  /// The pane of the songs, for widgets over it.
  QAbstractScrollArea& List() const;

  /// See SongListView::SetBackgroundImage.
  std::string SetBackgroundImage(const QString& address, bool tiled);

  /// Marks in the list what plays, and what could not be played.
  /// \param player null for no marks; must outlive the control, or the next call
  void ShowMarks(PlayerModel* player);

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

  // See the functions of ExplorerEdits.
  void CutSongs(std::string_view verb = "Cut") { edits_.CutSongs(verb); }
  void CopySongs() { edits_.CopySongs(); }
  void CutFolder(Folder& folder) { edits_.CutFolder(folder); }
  void CopyFolder(const Folder& folder) { edits_.CopyFolder(folder); }
  void Paste(Folder* into) { edits_.Paste(into); }
  void DeleteFolder(Folder& folder) { edits_.DeleteFolder(folder); }
  void AddFolder(Folder* parent) { edits_.AddFolder(parent); }
  void AddFolderOf(std::string_view text, const std::vector<SongEntry>& songs) {
    edits_.AddFolderOf(text, songs);
  }
  void MoveToRoot(Folder& folder) { edits_.MoveToRoot(folder); }
  void SortNodes(Folder* above) { edits_.SortNodes(above); }
  void AddSongs(Folder& to, const std::vector<SongEntry>& songs) { edits_.AddSongs(to, songs); }

  // See the functions of ExplorerSteps.
  void Undo();
  void Redo();
  bool StepLinked(std::uint64_t move, bool back);

  /// If a folder is being renamed, applies the typed text.
  void CommitEditing();

  // See the functions of ExplorerDragging.
  std::unique_ptr<ExplorerDrag> SongsToDrag() const;
  std::unique_ptr<ExplorerDrag> FolderToDrag() const;

 signals:
  /// The user clicked a folder, or moved to it with the keyboard.
  void NodeClick(tallow::Folder* folder);
  /// The user clicked a column header of the list.
  void ColumnClick(tallow::ListColumn column);
  // See SongListView.
  void ColumnsChanged(const std::vector<tallow::ChosenColumn>& columns);
  void RankWanted(int rank);
  void RankStepsWanted(int steps);
  /// The user wants to open the menu of the column headers.
  /// \param position in screen coordinates
  void HeaderPopUp(const QPoint& position);
  /// Emitted before songs or a folder are cut, or moved by a drag.
  void BeforeCut(tallow::BeforeCutEvent& event);
  /// The list was refilled with the songs of the folder on show.
  void ListRefilled();
  /// Songs have other record numbers; the list is not refilled yet.
  void SongsRenumbered(const tallow::NewNumbers& numbers);
  /// Other songs of the list are selected.
  void SelectionChanged();
  /// A pane has received the keyboard focus.
  /// \param pane see PopUpPane
  void FocusChanged(int pane);
  void CaptionChanged(const QString& caption);
  /// The user opened a song by a double-click or with Enter.
  /// \param row index of the song in the folder, from 0
  void ItemOpened(int row);
  /// The user wants to pause what plays, or to let it go on.
  void PlayOrPause();
  /// The user wants to open a pop-up menu.
  /// \param position in screen coordinates
  void ListPopUp(const QPoint& position);
  /// \param folder the folder that the menu acts on; null for none
  void TreePopUp(tallow::Folder* folder, const QPoint& position);
  /// The user pressed Esc in the list or in the tree.
  void Escaped();
  /// The user pressed the shortcut of a command of a pop-up menu.
  void TreeCommandKey(tallow::TreeCommand command);
  void ListCommandKey(tallow::ListCommand command);
  /// The user dropped files from another program.
  /// \param paths in the encoding of the file system
  void FilesDropped(const std::vector<std::string>& paths, tallow::Folder* to);
  /// This window's part of a move between two windows was undone or redone.
  void LinkedStepDone(tallow::EditHistory::MoveLink link, bool back);
  /// Undo or redo has changed the ranks of songs; the library is not saved yet.
  void RanksChanged(const std::vector<std::int32_t>& songs);
  /// An operation failed; the lines say why.
  void Problem(const QStringList& lines);

 private:
  void CaptionChanged() override;
  void ListChanged() override;
  void LabelsChanged() override;
  void HeadersChanged() override;
  void Renumbered(const NewNumbers& numbers) override;

  void ConnectTree();
  void ConnectList();
  void ConnectKeys();

  Jukebox& jukebox_;
  const clsMain& library_;
  FolderTreeModel* folders_;
  SongListModel* songs_;
  FolderTreeView* tree_;
  SongListView* list_;
  ShownSongs shown_songs_;
  ExplorerEdits edits_;
  // Destroyed before the panes, which are child widgets.
  std::unique_ptr<ExplorerSteps> steps_;
  std::unique_ptr<ExplorerDragging> dragging_;
  std::unique_ptr<FolderExpansion> expansion_;
  std::unique_ptr<HiddenFolders> hidden_;
  std::unique_ptr<FolderChoice> choice_;
  std::unique_ptr<PopUpRequests> pop_ups_;
  std::unique_ptr<ExplorerKeys> keys_;
  std::unique_ptr<PaneFocus> focus_;
  std::unique_ptr<PlayingMarks> marks_;  ///< null when nothing is marked
};

}  // namespace tallow

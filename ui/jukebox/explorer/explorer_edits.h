// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <QObject>
#include <QStringList>

#include "jukebox/jukebox_edits.h"
#include "ui/jukebox/explorer/shown_songs.h"

namespace tallow {

class FolderTreeView;

/// Event emitted before songs or a folder are cut.
struct BeforeCutEvent {
  const Folder& folder;  ///< the folder to cut, or the folder of the songs to cut
  bool songs;            ///< whether songs are cut, not the folder itself
  bool cancel = false;   ///< set by a receiver to forbid the cut
};

/// The edits of the explorer control: makes the user's changes to folders and songs by
/// JukeboxEdits, and shows the result of each, by what is selected, expanded and reported.
class ExplorerEdits : public QObject {
  Q_OBJECT

 public:
  /// \param jukebox, clipboard, tree, songs must outlive this object
  ExplorerEdits(Jukebox& jukebox, JukeboxClipboard& clipboard, FolderTreeView& tree,
                ShownSongs& songs);

  /// Returns the folder with a key, which may be that of the hits on show; null for none, and for
  /// key 0.
  Folder* FolderOfKey(std::uint32_t key) const;

  /// Cuts or copies the selected songs. Hits of a search cannot be cut.
  /// \param verb of the step's name, see NameOfSongStep
  void CutSongs(std::string_view verb = "Cut");
  void CopySongs();
  void CutFolder(Folder& folder);
  void CopyFolder(const Folder& folder) { edits_.CopyFolder(folder); }
  /// Pastes the clipboard at the end of a folder.
  /// \param into null for the top level
  void Paste(Folder* into);
  /// Deletes a folder without confirmation.
  void DeleteFolder(Folder& folder);
  /// Adds a folder "New Folder" and starts its renaming by the user.
  /// \param parent null for the top level
  void AddFolder(Folder* parent);
  /// Adds a folder with songs at the end of the top level, shows it and starts its renaming by the
  /// user.
  void AddFolderOf(std::string_view text, const std::vector<SongEntry>& songs);
  /// See JukeboxEdits::Rename.
  bool Rename(Folder& folder, std::string_view text);
  /// Moves a folder with its subfolders to the end of the top level. Has no effect on a folder that
  /// must not be cut or is already at the top level.
  void MoveToRoot(Folder& folder);
  /// \param above the folder whose subfolders are sorted; null for the whole tree
  void SortNodes(Folder* above);
  /// Adds the songs that a folder does not contain yet.
  void AddSongs(Folder& to, const std::vector<SongEntry>& songs);

  // Songs and folders can be moved from the jukebox of another control as well, given by its edits.

  /// Moves or copies songs to another folder. Songs of an automatic folder and hits of a search are
  /// always copied.
  /// \param rows indexes of the songs in the folder, from 0, ascending; not empty
  void DropSongs(ExplorerEdits& source, Folder& from, const std::vector<int>& rows, Folder& to,
                 bool copy);
  /// Moves songs inside the folder on show, to before the song in a row of the list.
  /// \param rows   indexes of the songs in the folder, from 0, ascending
  /// \param before index that a song has before the move, or the number of songs
  void MoveSongsTo(const std::vector<int>& rows, int before);
  /// Moves the selected songs up or down by one row of the list. Nothing moves if one of them would
  /// leave the list.
  void MoveSongsByOne(bool up);

  /// Moves or copies a folder to the end of another folder.
  /// \param to null for the top level
  void DropFolder(ExplorerEdits& source, Folder& folder, Folder* to, bool copy);

 signals:
  /// Emitted before songs or a folder are cut, or moved by a drag.
  void BeforeCut(tallow::BeforeCutEvent& event);
  /// An edit failed, or had nothing to change; the lines say why.
  void Problem(const QStringList& lines);

 private:
  bool MayCut(const Folder& folder, bool songs);
  void FollowMove(ShownSongs::Place place, const JukeboxEdits::SongMove& move);
  void SelectNeighbour(const Folder& folder);
  void ReportProblem(JukeboxEdits::Result result);

  Jukebox& jukebox_;
  JukeboxEdits edits_;
  FolderTreeView& tree_;
  ShownSongs& songs_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QObject>

class QDropEvent;

namespace tallow {

class DropLine;
class ExplorerDrag;
class ExplorerEdits;
class Folder;
class FolderTreeView;
class Jukebox;
class ShownSongs;
class SongListView;
class clsMain;

/// Dragging from and to the explorer control: starts the drags of songs and folders, decides what
/// may be dropped where, and has ExplorerEdits carry out a drop. Songs that are dropped on the list
/// that they come from move to the line that is shown there.
///
/// Other programs are offered only a copy of songs, because a move would remove the files. Inside
/// the program, LinkAction therefore means a move of songs.
class ExplorerDragging : public QObject {
  Q_OBJECT

 public:
  /// All parameters must outlive this object.
  ExplorerDragging(const Jukebox& jukebox, const clsMain& library, FolderTreeView& tree,
                   SongListView& list, const ShownSongs& songs, ExplorerEdits& edits);

  /// Creates the data of a drag of the selected songs, or of the current folder; null if nothing
  /// can be dragged.
  std::unique_ptr<ExplorerDrag> SongsToDrag() const;
  std::unique_ptr<ExplorerDrag> FolderToDrag() const;

  /// Switches moving songs inside their list; see Switches::more_commands. On at first.
  void UseMoreCommands(bool on) noexcept { moves_in_list_ = on; }

 signals:
  /// The user dropped files from another program.
  /// \param paths in the encoding of the file system
  void FilesDropped(const std::vector<std::string>& paths, tallow::Folder* to);

 private:
  void DragOver(QDropEvent& event, const Folder* to) const;
  void Drop(QDropEvent& event, const Folder* to);
  bool MovesInList(const QDropEvent& event) const;
  void DragOverList(QDropEvent& event);
  void DropOnList(QDropEvent& event);
  bool CanDrop(const ExplorerDrag& drag, const Folder* to, bool copy) const;

  const Jukebox& jukebox_;
  const clsMain& library_;
  const FolderTreeView& tree_;
  const ShownSongs& songs_;
  bool moves_in_list_ = true;
  DropLine* drop_line_;  ///< a child of the list
  ExplorerEdits& edits_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "jukebox/jukebox_clipboard.h"
#include "jukebox/list_positions.h"

namespace tallow {

class Jukebox;

/// The text of a new folder.
inline constexpr std::string_view kNewFolder = "New Folder";

/// The user's commands on folders and songs of a jukebox. Each call that changes something is a
/// step that can be undone.
///
/// Only Rename checks for protected folders; for cut and delete, the caller must check. Songs are
/// given by their positions in the list, from 0, ascending; invalid positions are ignored. The
/// songs of a changed list have no labels until Jukebox::ListRefilled.
class JukeboxEdits {
 public:
  /// \param jukebox, clipboard must outlive this object
  JukeboxEdits(Jukebox& jukebox, JukeboxClipboard& clipboard)
      : jukebox_(jukebox), clipboard_(clipboard) {}

  /// Appends a folder "New Folder" to the subfolders of a parent.
  /// \param parent null for top level
  /// \returns the folder; null when it would lie deeper than kMaxLevel
  Folder* AddFolder(Folder* parent);

  /// Appends a folder with songs to the top level, as one step.
  /// \param songs a song that is there several times is taken once
  Folder& AddFolderOf(std::string_view text, const std::vector<SongEntry>& songs);

  /// Renames a folder. Fails for a special folder and for a text of blanks only. If a special
  /// folder after this one has the same text, this folder is moved after it, so that the special
  /// folder stays the first with that text.
  /// \returns whether the folder has the text now
  bool Rename(Folder& folder, std::string_view text);

  /// Moves the songs from the folder to the clipboard.
  /// \param verb of the step's name, see NameOfSongStep
  void CutSongs(Folder& folder, const std::vector<int>& rows, std::string_view verb = "Cut");
  void CopySongs(const Folder& folder, const std::vector<int>& rows);
  /// Moves the folder, with everything below it, from the tree to the clipboard.
  void CutFolder(Folder& folder);
  void CopyFolder(const Folder& folder);

  /// Result of a paste or a drop.
  enum class Result {
    kDone,
    kNothing,       ///< there was nothing to paste or drop
    kAlreadyThere,  ///< the folder holds all the songs
    kTooDeep,       ///< folders would lie deeper than kMaxLevel
    kNeedsFolder,   ///< songs cannot be pasted at top level
  };

  /// Appends the content of the clipboard to a folder: the songs that the folder does not hold yet,
  /// or the folder on the clipboard.
  /// \param into null for top level, which cannot hold songs
  Result Paste(Folder* into);

  /// Removes a folder with everything below it.
  void DeleteFolder(Folder& folder);

  /// Appends songs to a folder, except those that the folder already holds.
  Result AddSongs(Folder& to, const std::vector<SongEntry>& songs);

  /// Moves or copies songs to another folder, in the same or in another jukebox. A move between two
  /// jukeboxes is one step in each; the two steps are linked.
  /// \param copy true to copy, false to move
  Result DropSongs(JukeboxEdits& source, Folder& from, const std::vector<int>& rows, Folder& to,
                   bool copy);

  /// What a move inside a folder has done.
  struct SongMove {
    /// Whether the order of the songs has changed, which is a step. It has not if only entries of
    /// the same song have changed places.
    bool is_step = false;
    /// For each former position, the present one: its SourceOf.
    Permutation moved_to;
  };

  /// Moves songs inside their folder. They keep their order among each other.
  /// \param before position of the song that they are moved before, or the number of songs
  SongMove MoveSongsTo(Folder& folder, const std::vector<int>& rows, int before);

  /// Moves songs inside their folder by one line: each changes places with a neighbour in turn.
  /// \param rows       in the order in which they move
  /// \param neighbours for each row, the position of the song that it changes places with
  SongMove MoveSongsByOne(Folder& folder, const std::vector<int>& rows,
                          const std::vector<int>& neighbours);

  /// Moves or copies a folder, appending it to the subfolders of a folder in the same or in another
  /// jukebox.
  /// \param to   null for top level; must not be the folder itself or lie below it
  /// \param copy true to copy, false to move
  Result DropFolder(JukeboxEdits& source, Folder& folder, Folder* to, bool copy);

  /// Whether a folder can be dropped at the given target.
  static bool CanDropFolder(const Folder& folder, const Folder* to, bool copy) noexcept;

  /// Sorts the subfolders of a folder on all levels, see NaturalLess. Equal texts keep their order.
  /// \param above null for the whole tree
  /// \returns whether the order has changed
  bool SortNodes(Folder* above);

 private:
  static std::vector<SongEntry> EntriesAt(const Folder& folder, const std::vector<int>& rows);
  static std::vector<std::int32_t> ValidRows(const Folder& folder, const std::vector<int>& rows);
  void RemoveSongs(Folder& folder, const std::vector<int>& rows, std::string_view verb);
  void RemoveFolder(Folder& folder, std::string_view name);
  Result AddSongs(Folder& to, const std::vector<SongEntry>& songs, std::string_view verb);
  SongMove ReorderSongs(Folder& folder, std::vector<std::int32_t> order, std::size_t moved);
  void MoveBehind(const Folder& folder, const Folder& other);
  Result AddCopy(const Folder& folder, Folder* parent, std::string_view name);
  void LinkSteps(const JukeboxEdits& source);
  bool SortBelow(Folder* above);

  Jukebox& jukebox_;
  JukeboxClipboard& clipboard_;
};

/// Returns the folder to show instead when a folder is removed that is shown or holds the shown
/// folder: the next sibling, else the previous sibling, else the parent; null when there is none.
Folder* FolderToShowAfterRemoval(const Folder& folder) noexcept;

}  // namespace tallow

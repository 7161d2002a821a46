// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "jukebox/jukebox_clipboard.h"

namespace tallow {

class Jukebox;

/// What a new folder is called.
inline constexpr std::string_view kNewFolder = "New Folder";

/// What a user can do to the folders and songs of a jukebox. Each call that changes something is a step
/// that can be undone.
///
/// Which folders are protected is not asked here, but for renaming: that is whoever cuts or deletes to say.
/// Songs are named by their places in the list, from 0, rising; places that there are not are passed
/// over. The songs of a changed list have no labels until Jukebox::ListRefilled.
class JukeboxEdits {
 public:
  /// \param jukebox, clipboard have to outlive the object
  JukeboxEdits(Jukebox& jukebox, JukeboxClipboard& clipboard)
      : jukebox_(jukebox), clipboard_(clipboard) {}

  /// Adds a folder "New Folder" behind the others.
  /// \param parent null for top level
  /// \returns the folder; null when it would lie too deep
  Folder* AddFolder(Folder* parent);

  /// Gives a folder another text. A special folder keeps its own, and a text of blanks is none. A folder
  /// that gets the text of a special one behind it goes behind that, which so stays the special one.
  /// \returns whether the folder has the text now
  bool Rename(Folder& folder, std::string_view text);

  /// The songs leave the folder and lie on the clipboard.
  void CutSongs(Folder& folder, const std::vector<int>& rows);
  void CopySongs(const Folder& folder, const std::vector<int>& rows);
  /// The folder leaves the tree, with all below it, and lies on the clipboard.
  void CutFolder(Folder& folder);
  void CopyFolder(const Folder& folder);

  /// How a paste or a drop ended.
  enum class Result {
    kDone,
    kNothing,      ///< there was nothing that could go there
    kTooDeep,      ///< folders would lie deeper than kMaxLevel
    kNeedsFolder,  ///< songs, and no folder for them
  };

  /// Adds what is on the clipboard behind what a folder holds: songs that it does not hold yet, or the
  /// folder.
  /// \param into null for top level, where there are no songs
  Result Paste(Folder* into);

  /// Removes a folder with all below it.
  void DeleteFolder(Folder& folder);

  /// Adds songs behind those of a folder, each that it does not hold yet.
  Result AddSongs(Folder& to, const std::vector<SongEntry>& songs);

  /// Songs of a folder go to another one, of this jukebox or of another one. A move between two jukeboxes is
  /// a step of each, and these are a pair.
  /// \param copy they stay where they are, too
  Result DropSongs(JukeboxEdits& source, Folder& from, const std::vector<int>& rows, Folder& to,
                   bool copy);

  /// A folder goes behind the folders of another one, of this jukebox or of another one.
  /// \param to   null for top level; a folder does not go into itself or below
  /// \param copy it stays where it is, too
  Result DropFolder(JukeboxEdits& source, Folder& folder, Folder* to, bool copy);

  /// Whether a folder could be dropped there.
  static bool CanDropFolder(const Folder& folder, const Folder* to, bool copy) noexcept;

  /// Sorts the folders below one, and all below these, see NaturalLess. Equal texts keep their order.
  /// \param above null for the whole tree
  void SortNodes(Folder* above);

 private:
  static std::vector<SongEntry> EntriesAt(const Folder& folder, const std::vector<int>& rows);
  static std::vector<std::int32_t> ValidRows(const Folder& folder, const std::vector<int>& rows);
  void RemoveSongs(Folder& folder, const std::vector<int>& rows);
  void PutBehind(const Folder& folder, const Folder& other);
  Result AddCopy(const Folder& folder, Folder* parent);
  void PairSteps(const JukeboxEdits& source);
  void SortBelow(Folder* above);

  Jukebox& jukebox_;
  JukeboxClipboard& clipboard_;
};

/// The folder to show when one goes that is on show, or that holds it: the next beside it, else the one
/// before it, else the one above it; null when there is none.
Folder* FolderBeside(const Folder& folder) noexcept;

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "jukebox/edit_history.h"
#include "jukebox/folder_tree.h"
#include "jukebox/found_songs.h"
#include "jukebox/jukebox_display.h"
#include "jukebox/jukebox_file.h"
#include "jukebox/song_links.h"
#include "jukebox/song_list_order.h"

namespace tallow {

class clsMain;

/// One open jukebox. Owns what a jukebox consists of and keeps its parts consistent:
/// - FolderTree: the folders and songs
/// - EditHistory: undo and redo of changes to them
/// - JukeboxFile: the file, loading and saving
/// - JukeboxDisplay: the folder shown and what else the window displays
/// - FoundSongs: the hits of a search, while the list shows them instead of the folder
/// - SongListOrder: the sort order of the list
class Jukebox {
 public:
  Jukebox() = default;
  Jukebox(const Jukebox&) = delete;
  Jukebox& operator=(const Jukebox&) = delete;

  FolderTree& Nodes() noexcept { return tree_; }
  const FolderTree& Nodes() const noexcept { return tree_; }

  /// The window title: the name of the jukebox.
  const std::string& Caption() const noexcept { return display_.Caption(); }
  void Caption(std::string_view caption) { display_.Caption(caption); }

  /// The directory of the jukebox's file, ending in a separator; empty if the jukebox was never
  /// saved.
  const std::string& FileLocation() const noexcept { return file_.Location(); }
  void FileLocation(std::string_view folder) { file_.Location(folder); }

  /// The number of the jukebox's window among the documents, as text.
  const std::string& Tag() const noexcept { return display_.Tag(); }
  void Tag(std::string_view tag) { display_.Tag(tag); }

  /// Whether the jukebox has changed since it was saved or loaded. True if the user's changes since
  /// then have not all been undone, or if IsFormDirty(true) was called.
  bool IsFormDirty() const noexcept { return was_marked_dirty_ || !history_.IsAsSaved(); }
  /// \param dirty true: marks the jukebox as changed until it is saved; false: marks it as saved
  void IsFormDirty(bool dirty) noexcept;

  /// Whether the jukebox has changes that are not in its file, as far as is known without reading
  /// the file: it is dirty, and was never saved or has another content than its file.
  bool IsUnsaved() const { return IsFormDirty() && (FilePath().empty() || DiffersFromFile()); }
  /// Sets a callback that runs when IsUnsaved() may have changed.
  void OnChange(std::function<void()> changed);

  /// The undo history, which makes and undoes the user's changes to folders and songs.
  EditHistory& History() noexcept { return history_; }

  /// Result of Undo or Redo.
  struct StepResult {
    bool done = false;            ///< false when there was no step
    Folder* concerned = nullptr;  ///< the folder to show; null for none
    /// The songs of the shown folder have changed and have no labels yet.
    bool list_changed = false;
    /// Record numbers of the songs whose ranks have changed. The library is not saved yet, and the
    /// icons of these songs are old.
    std::vector<std::int32_t> ranked = {};
  };
  /// Undoes the latest step, or redoes the step that was undone last. Does nothing when there is
  /// none.
  StepResult Undo();
  StepResult Redo();

  /// Resets the list to unsorted, as when a folder is shown.
  void ResetSort();

  /// Encodes the jukebox as the bytes of its file.
  std::string Encode(const clsMain& library) const {
    return file_.Encode(tree_, HeadersOfFolder(), library);
  }

  /// Call this after folders may have left the tree: if the shown folder has left it, no folder is
  /// shown any more. Hits of a search stay.
  void HideRemovedFolder();

  /// Replaces old record numbers by new ones in folders and undo steps. The songs of the shown
  /// folder have no labels until ListRefilled.
  void Renumber(const NewNumbers& numbers);

  /// Whether folders or songs differ from the file that was last loaded or saved, or from the
  /// content at the last RememberContent. Unlike IsFormDirty, this compares contents.
  bool DiffersFromFile() const { return file_.Content().DiffersFrom(tree_); }
  /// Whether closing the jukebox would lose something: the jukebox was never saved, its file is
  /// gone, or its content differs from its file.
  bool HasUnsavedChanges(const clsMain& library) const {
    return file_.HasUnsavedChanges(tree_, library);
  }
  /// Records the current content as that of the file. Save and Load do this themselves.
  void RememberContent() { file_.Content().Remember(tree_); }

  /// Whether the tree is shown with all folders expanded.
  bool Expanded() const noexcept { return display_.Expanded(); }
  void Expanded(bool expanded) noexcept { display_.Expanded(expanded); }

  /// The texts of the list's column headers, from left to right.
  const std::vector<std::string>& ColumnHeaders() const noexcept {
    return display_.ColumnHeaders();
  }
  void AddColumnHeader(std::string_view text) { display_.AddColumnHeader(text); }

  /// Saves the jukebox, see JukeboxFile::Save. On failure FileProblem() has the reason.
  bool Save(const std::string& path, const clsMain& library) {
    return file_.Save(path, tree_, HeadersOfFolder(), library);
  }

  /// Replaces folders, songs and columns with those of a file. Afterwards no folder is shown. Songs
  /// whose record numbers have changed in the library are looked up by name, see RelinkSongs.
  ///
  /// \param ask see RelinkSongs; may be empty
  /// \returns true on success; otherwise FileProblem() has the reason and nothing has changed
  bool Load(const std::string& path, const clsMain& library, const ResolveConfusedSongs& ask = {});

  /// Like Load, from the bytes of a jukebox that was not saved in this state. The jukebox is then
  /// dirty.
  /// \param file the path of the jukebox's file; empty for none
  /// \returns true on success; otherwise FileProblem() says briefly what is wrong with the bytes
  bool LoadUnsaved(std::string_view bytes, const std::string& file, const clsMain& library,
                   const ResolveConfusedSongs& ask = {});

  /// The path of the file that was last loaded or saved; empty for none.
  const std::string& FilePath() const noexcept { return file_.Path(); }

  /// Why the last Save, Load or LoadUnsaved failed. After Save and Load the text names the file,
  /// the problem and what to do.
  const std::string& FileProblem() const noexcept { return file_.Problem(); }

  /// The folder shown, that is the one chosen in the tree; null for none. While the list shows the
  /// hits of a search, it is the folder that the list goes back to.
  Folder* selectednode() const noexcept { return display_.ShownFolder(); }

  /// The folder whose songs the list shows: the hits of a search while they are shown, else
  /// selectednode(). Null for none.
  Folder* ListFolder() const noexcept { return found_.Shown() ? found_.Shown() : selectednode(); }

  /// Whether the list shows the hits of a search.
  bool ShowsHits() const noexcept { return found_.Shown() != nullptr; }
  /// Shows the hits of a search in the list; selectednode() stays. The hits are not part of the
  /// jukebox: sorting them is no step, and they are not saved.
  /// \param songs record numbers, in the order of the list
  void ShowHits(const std::vector<std::int32_t>& songs, const clsMain& library);
  /// Shows the songs of selectednode() again, and the header that its list had. No effect while no
  /// hits are shown.
  void HideHits(const clsMain& library);

  /// Shows a folder, as a click on it does. The songs of the folder shown before get their record
  /// numbers as texts again, the songs of the new folder get labels, and the list becomes unsorted.
  /// Hits of a search are not shown any more.
  ///
  /// \param folder_changes the program's counter of folders shown; incremented
  void ShowFolder(Folder& folder, const clsMain& library, std::int64_t& folder_changes);

  /// Labels the shown songs and makes the window refill its list.
  void ListRefilled(const clsMain& library);

  /// Call this after rank pictures of shown songs have changed.
  void PicturesChanged() { display_.LabelsChanged(); }
  /// Call this after ranks have changed: shows the pictures of the ranks that are stored, at all
  /// entries of these songs. Other entries keep their pictures.
  /// \param songs record numbers
  void RanksChanged(const clsMain& library, const std::vector<std::int32_t>& songs);

  /// Sorts the list by the next order, as a click on a column header does, see SongListOrder.
  ///
  /// \throws TypeMismatchError, OverflowError from the sort by rank when a rank is not a number
  void ColumnClick(const clsMain& library);

  /// Sorts the list by a column, as one step of the history. See SongListOrder::SortBy.
  void SortByColumn(const clsMain& library, const ColumnKeys& keys, bool descending);

  /// The sort state: 0 not sorted yet, 1 to 4 the order that the next click applies.
  int SortState() const noexcept { return order_.State(); }

  /// \param view null for none; must outlive the jukebox or be removed before
  void SetView(JukeboxView* view) noexcept { display_.SetView(view); }
  JukeboxView* View() const noexcept { return display_.View(); }

 private:
  /// Replaces folders, songs and columns.
  void Replace(LoadedJukebox& loaded);
  void LabelSongs(const clsMain& library);
  /// Call after the order of the shown songs has changed.
  void Reordered(const clsMain& library, std::string_view header);
  /// The column headers as they are without the hits of a search.
  std::vector<std::string> HeadersOfFolder() const;
  StepResult AfterStep(Folder* concerned);

  FolderTree tree_;
  EditHistory history_{tree_};
  JukeboxFile file_;
  JukeboxDisplay display_;
  SongListOrder order_;
  FoundSongs found_;
  /// Order and first header of the list of selectednode(), while hits are shown.
  SongListOrder order_before_hits_;
  std::string header_before_hits_;
  std::function<void()> changed_;  ///< may be empty
  bool was_marked_dirty_ = false;  ///< by IsFormDirty(true), since the jukebox was saved
};

/// The file name of an entry's song; empty when the library has no such song.
std::string_view FileNameOf(const SongEntry& entry, const clsMain& library);

/// The text of an entry: its record number, or after labelling its position, ".  " and its file
/// name.
std::string EntryText(const SongEntry& entry, const clsMain& library);

}  // namespace tallow

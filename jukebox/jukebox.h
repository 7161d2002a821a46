// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jukebox/edit_history.h"
#include "jukebox/folder_tree.h"
#include "jukebox/jukebox_file.h"

namespace tallow {

class clsMain;

/// The header of the name column whenever a folder is shown.
inline constexpr std::string_view kNameHeader = "Name    --        (click to sort)";
/// The header of the second column.
inline constexpr std::string_view kKeyHeader = "Key";

/// Callbacks from a jukebox to its window.
class JukeboxView {
 public:
  virtual ~JukeboxView() = default;
  virtual void CaptionChanged() = 0;
  /// The shown folder or its songs have changed: fill the list again.
  virtual void ListChanged() = 0;
  /// Texts or pictures of the shown songs have changed; the set of songs is the same.
  virtual void LabelsChanged() = 0;
  virtual void HeadersChanged() = 0;
};

/// One open jukebox: a tree of folders, the folder shown, and the sort order of its list. The
/// window is a view of the jukebox.
class Jukebox {
 public:
  Jukebox() = default;
  Jukebox(const Jukebox&) = delete;
  Jukebox& operator=(const Jukebox&) = delete;

  FolderTree& Nodes() noexcept { return tree_; }
  const FolderTree& Nodes() const noexcept { return tree_; }

  /// The window title: the name of the jukebox.
  const std::string& Caption() const noexcept { return caption_; }
  void Caption(std::string_view caption);

  /// The directory of the jukebox's file, ending in a separator; empty if the jukebox was never
  /// saved.
  const std::string& FileLocation() const noexcept { return file_location_; }
  void FileLocation(std::string_view folder) { file_location_ = folder; }

  /// The number of the jukebox's window among the documents, as text.
  const std::string& Tag() const noexcept { return tag_; }
  void Tag(std::string_view tag) { tag_ = tag; }

  /// Whether the jukebox has changed since it was saved or loaded. True if the user's changes since
  /// then have not all been undone, or if IsFormDirty(true) was called.
  bool IsFormDirty() const noexcept { return is_form_dirty_ || !history_.IsAsSaved(); }
  /// \param dirty true: stays until the jukebox is saved; false: the jukebox is saved now
  void IsFormDirty(bool dirty) noexcept;

  /// The undo history, which makes and undoes the user's changes to folders and songs.
  EditHistory& History() noexcept { return history_; }

  /// Result of Undo or Redo.
  struct StepResult {
    bool done = false;            ///< false when there was no step
    Folder* concerned = nullptr;  ///< the folder to show; null for none
    /// The songs of the shown folder have changed and have no labels yet.
    bool list_changed = false;
  };
  /// Undoes the latest step, or redoes the step that was undone last. Does nothing when there is
  /// none.
  StepResult Undo();
  StepResult Redo();

  /// Resets the list to unsorted, as when a folder is shown.
  void ResetSort();

  /// Encodes the jukebox as the bytes of its file.
  std::string Encode(const clsMain& library) const;

  /// Call this after folders may have left the tree: if the shown folder has left it, no folder is
  /// shown any more.
  void HideRemovedFolder();

  /// Replaces old record numbers by new ones in folders and undo steps. The songs of the shown
  /// folder have no labels until ListRefilled.
  void Renumber(const NewNumbers& numbers);

  /// Whether folders or songs differ from the file that was last loaded or saved, or from the
  /// content at the last RememberContent. Unlike IsFormDirty, this compares contents.
  bool DiffersFromFile() const { return ContentHash(tree_) != remembered_content_; }
  /// Whether closing the jukebox would lose something: the jukebox was never saved, its file is
  /// gone, or its content differs from its file.
  bool HasUnsavedChanges(const clsMain& library) const;
  /// Records the current content as that of the file. Save and Load do this themselves.
  void RememberContent() {
    remembered_content_ = ContentHash(tree_);
    remembered_is_stale_ = false;
  }

  /// Whether the tree is shown with all folders expanded.
  bool Expanded() const noexcept { return expanded_; }
  void Expanded(bool expanded) noexcept { expanded_ = expanded; }

  /// The texts of the list's column headers, from left to right.
  const std::vector<std::string>& ColumnHeaders() const noexcept { return headers_; }
  void AddColumnHeader(std::string_view text);

  /// Writes the jukebox to a file, replacing the file atomically. An existing file with other
  /// content is kept beside it as a ".bak" backup.
  ///
  /// \returns true on success; otherwise FileProblem() has the reason and the old file is unchanged
  bool Save(const std::string& path, const clsMain& library);

  /// Replaces folders, songs and columns by those of a file. Afterwards no folder is shown. Songs
  /// whose record numbers have changed in the library are looked up by name, see RelinkSongs.
  ///
  /// \returns true on success; otherwise FileProblem() has the reason and nothing has changed
  ///
  /// \param ask see RelinkSongs; may be empty
  bool Load(const std::string& path, const clsMain& library, const ResolveConfusedSongs& ask = {});

  /// Like Load, from the bytes of a jukebox that was not saved in this state. The jukebox is then
  /// dirty.
  /// \param file the path of the jukebox's file; empty for none
  /// \returns true on success; otherwise FileProblem() says briefly what is wrong with the bytes
  bool LoadUnsaved(std::string_view bytes, const std::string& file, const clsMain& library,
                   const ResolveConfusedSongs& ask = {});

  /// The path of the file that was last loaded or saved; empty for none.
  const std::string& FilePath() const noexcept { return file_path_; }

  /// Why the last Save, Load or LoadUnsaved failed. After Save and Load the text names the file,
  /// the problem and what to do.
  const std::string& FileProblem() const noexcept { return file_problem_; }

  /// The folder shown; null for none.
  Folder* selectednode() const noexcept { return selected_; }

  /// Shows a folder, as a click on it does. The songs of the folder shown before get their record
  /// numbers as texts again, the songs of the new folder get labels, and the list becomes unsorted.
  ///
  /// \param folder_changes the program's counter of folders shown; incremented
  void ShowFolder(Folder& folder, const clsMain& library, std::int64_t& folder_changes);

  /// Labels the shown songs and makes the window refill its list.
  void ListRefilled(const clsMain& library);

  /// Call this after rank pictures of shown songs have changed.
  void PicturesChanged();

  /// Sorts the list, as a click on a column header does. Successive clicks cycle through four
  /// orders: file name ascending, file name descending, best rank first, worst rank first. The
  /// entries stay and the songs move between them.
  ///
  /// \throws TypeMismatchError, OverflowError from the sort by rank when a rank is not a number
  void ColumnClick(const clsMain& library);

  /// The sort state: 0 not sorted yet, 1 to 4 the order that the next click applies.
  int SortState() const noexcept { return sort_state_; }

  /// \param view null for none; must outlive the jukebox or be removed before
  void SetView(JukeboxView* view) noexcept { view_ = view; }
  JukeboxView* View() const noexcept { return view_; }

 private:
  void NameColumnHeader(std::string_view text);
  /// \throws JukeboxFileError, std::bad_alloc; nothing has changed in that case
  void Take(std::string_view bytes, const std::string& path, const clsMain& library,
            const ResolveConfusedSongs& ask);
  void LabelSongs(const clsMain& library);
  StepResult AfterStep(Folder* concerned);

  FolderTree tree_;
  EditHistory history_{tree_};
  std::string caption_;
  std::string file_location_;
  std::string tag_;
  bool is_form_dirty_ = false;
  bool expanded_ = false;
  std::vector<std::string> headers_;
  Folder* selected_ = nullptr;
  int sort_state_ = 0;
  JukeboxView* view_ = nullptr;
  std::string file_path_;
  std::string file_problem_;
  /// File names, by record number, of songs that the file names but the library lacked at load
  /// time.
  std::unordered_map<std::int32_t, std::string> absent_names_;
  std::uint64_t remembered_content_ = ContentHash(FolderTree());
  /// True when record numbers have changed since remembered_content_ was computed.
  /// HasUnsavedChanges must then read the file to compare contents.
  bool remembered_is_stale_ = false;
};

/// The file name of an entry's song; empty when the library has no such song.
std::string_view FileNameOf(const SongEntry& entry, const clsMain& library);

/// The text of an entry: its record number, or after labelling its position, ".  " and its file
/// name.
std::string EntryText(const SongEntry& entry, const clsMain& library);

}  // namespace tallow

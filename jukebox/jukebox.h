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

/// Is told what a jukebox wants of its window.
class JukeboxView {
 public:
  virtual ~JukeboxView() = default;
  virtual void CaptionChanged() = 0;
  /// The songs of the folder on show, or the folder itself, have changed: fill the list again.
  virtual void ListChanged() = 0;
  /// Texts and pictures of the songs on show have changed, but not which they are.
  virtual void LabelsChanged() = 0;
  virtual void HeadersChanged() = 0;
};

/// One open jukebox: a tree of folders, which of them is on show, and how its list is sorted. The
/// window is a view of it.
class Jukebox {
 public:
  Jukebox() = default;
  Jukebox(const Jukebox&) = delete;
  Jukebox& operator=(const Jukebox&) = delete;

  FolderTree& Nodes() noexcept { return tree_; }
  const FolderTree& Nodes() const noexcept { return tree_; }

  /// What the window is called: the name of the jukebox.
  const std::string& Caption() const noexcept { return caption_; }
  void Caption(std::string_view caption);

  /// The folder of the jukebox's file, ending in a separator; empty for a jukebox that was never saved.
  const std::string& FileLocation() const noexcept { return file_location_; }
  void FileLocation(std::string_view folder) { file_location_ = folder; }

  /// The number of the jukebox's window among the documents, as text.
  const std::string& Tag() const noexcept { return tag_; }
  void Tag(std::string_view tag) { tag_ = tag; }

  /// Whether the jukebox has changed since it was saved or loaded: by the user, without having taken it
  /// back, or by whoever set this.
  bool IsFormDirty() const noexcept { return is_form_dirty_ || !history_.IsAsSaved(); }
  /// \param dirty true stays until the jukebox is saved; false: it is saved now
  void IsFormDirty(bool dirty) noexcept;

  /// Makes the user's changes to folders and songs, and takes them back.
  EditHistory& History() noexcept { return history_; }

  /// What a step back or forth was about.
  struct StepResult {
    bool done = false;            ///< there was one
    Folder* concerned = nullptr;  ///< the folder to show; null for none
    bool list_changed =
        false;  ///< the songs of the folder on show are others now; not labelled yet
  };
  /// Takes back the latest change, or does again the one that was taken back last. Nothing happens where
  /// there is none.
  StepResult Undo();
  StepResult Redo();

  /// The list counts as not sorted, as when a folder is shown.
  void CountAsUnsorted();

  /// The jukebox as the bytes of its file.
  std::string Encode(const clsMain& library) const;

  /// To be called when folders may have left the tree: a folder on show that has is no longer on show.
  void ForgetLostFolder();

  /// Lets songs be meant by the numbers that they have now, in folders and in steps. The songs of the
  /// folder on show have no labels until ListRefilled.
  void Renumber(const NewNumbers& numbers);

  /// Whether folders or songs differ from those of the file that was loaded or saved last, or from those
  /// at the time of RememberContent. Unlike IsFormDirty this looks.
  bool DiffersFromFile() const { return ContentOf(tree_) != remembered_content_; }
  /// Whether closing the jukebox would lose something: it was never saved, its file is gone, or it
  /// differs from its file.
  bool HasUnsavedChanges(const clsMain& library) const;
  /// Takes what the jukebox holds now for that of its file. Save and Load do so themselves.
  void RememberContent() {
    remembered_content_ = ContentOf(tree_);
    remembered_is_stale_ = false;
  }

  /// Whether the tree is shown with all its folders open.
  bool Expanded() const noexcept { return expanded_; }
  void Expanded(bool expanded) noexcept { expanded_ = expanded; }

  /// The texts of the list's column headers, from left to right.
  const std::vector<std::string>& ColumnHeaders() const noexcept { return headers_; }
  void AddColumnHeader(std::string_view text);

  /// Writes the jukebox to a file, replacing it atomically. One that is there and has other content is
  /// kept as ".bak" beside it.
  ///
  /// \returns true on success; else FileProblem() says why not, and the old file stands
  bool Save(const std::string& path, const clsMain& library);

  /// Takes folders, songs and columns from a file. No folder is on show then, and the songs follow those
  /// that have got another number in the library, see RelinkSongs.
  ///
  /// \returns true on success; else FileProblem() says why not, and nothing has changed
  ///
  /// \param ask see RelinkSongs; may be empty
  bool Load(const std::string& path, const clsMain& library, const AskWhichSongs& ask = {});

  /// Like Load, from the bytes of a jukebox that was never saved as it is. It counts as changed.
  /// \param file the jukebox's own file; empty for none
  /// \returns true on success; else FileProblem() says in a few words what is wrong with the bytes
  bool TakeUnsaved(std::string_view bytes, const std::string& file, const clsMain& library,
                   const AskWhichSongs& ask = {});

  /// The file that was loaded or saved last; empty for none.
  const std::string& FilePath() const noexcept { return file_path_; }

  /// Why the last Save, Load or TakeUnsaved failed; of the first two the file, what is the matter and what
  /// to do.
  const std::string& FileProblem() const noexcept { return file_problem_; }

  /// The folder on show; null when none is.
  Folder* selectednode() const noexcept { return selected_; }

  /// Shows a folder, as a click on it does: the songs of the folder shown until now get their
  /// record numbers as texts again, the new folder's get labels, and the list counts as not sorted.
  ///
  /// \param folder_changes the program's counter of shown folders, increased by one
  void ShowFolder(Folder& folder, const clsMain& library, std::int64_t& folder_changes);

  /// Labels the songs on show and lets the window fill its list with them.
  void ListRefilled(const clsMain& library);

  /// The rank pictures of songs on show have changed.
  void PicturesChanged();

  /// Sorts the list, as a click on a column header does. Each click takes the next of four orders:
  /// by file name up, by file name down, by rank from best, by rank from worst. The entries keep
  /// their places and change their songs.
  ///
  /// \throws TypeMismatchError, OverflowError from the sort by rank when a rank is no number
  void ColumnClick(const clsMain& library);

  /// How the list is sorted: 0 not yet, 1 to 4 the order that the next click brings.
  int SortState() const noexcept { return sort_state_; }

  /// \param view null for none; has to outlive the jukebox or be taken off
  void SetView(JukeboxView* view) noexcept { view_ = view; }
  JukeboxView* View() const noexcept { return view_; }

 private:
  void NameColumnHeader(std::string_view text);
  /// \throws JukeboxFileError, std::bad_alloc; nothing has changed then
  void Take(std::string_view bytes, const std::string& path, const clsMain& library,
            const AskWhichSongs& ask);
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
  /// The names in the file of songs that the library did not have when it was loaded, by record number.
  std::unordered_map<std::int32_t, std::string> absent_names_;
  std::uint64_t remembered_content_ = ContentOf(FolderTree());
  /// Songs have got other numbers since, so the file has to be read to tell whether it is the same.
  bool remembered_is_stale_ = false;
};

/// The file name of an entry's song; empty when the library has no such song.
std::string_view FileNameOf(const SongEntry& entry, const clsMain& library);

/// The text of an entry: its record number, or once labelled its position, ".  " and its file name.
std::string EntryText(const SongEntry& entry, const clsMain& library);

}  // namespace tallow

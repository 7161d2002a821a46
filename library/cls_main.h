// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "library/library_file.h"
#include "library/song_table.h"
#include "util/file_system.h"

namespace tallow {

/// What the library needs of the program's settings.
class LibrarySettings {
 public:
  virtual ~LibrarySettings() = default;
  /// The program's data folder, ending in a separator; the library file lies there.
  virtual std::string LocOfGroupingDir() const = 0;
  /// The path of the list of folders that hold songs.
  virtual std::string FileContainingTargetDirectories() const = 0;
  /// How many rows the library file held when it was last saved.
  virtual std::int32_t NumerOfRecordsInTheMain() const = 0;
  virtual void NumerOfRecordsInTheMain(std::int32_t rows) = 0;
  /// Writes the settings file; a failure is not reported.
  virtual void SaveSettings() = 0;
};

/// The song library: one row per MP3 file the program has ever found.
///
/// Rows and columns count from 1, see SongColumn. A row keeps its record number for good, because
/// jukeboxes refer to songs by it; a song whose file is gone is therefore blanked ("0"), never
/// removed.
///
/// The library shows no message. What can fail says so in its result or in its \throws line.
class clsMain {
 public:
  /// \param settings          has to outlive the library
  /// \param search_all_drives runs the song search over all fixed disks, which adds rows to this
  /// library
  clsMain(LibrarySettings& settings, std::function<void()> search_all_drives);

  /// Blanks every row whose file is gone: flag, folder and name become "0". A row whose flag is not
  /// "1" is blanked too, so a song once missing stays missing for good; its file, come back, is
  /// found as a new song.
  ///
  /// \param go_on is told each folder that has been looked at (an empty text while one is waited for), and says
  /// whether to look at more; may be empty. The
  ///        songs of folders that were not looked at stay as they are
  void CheckToSeeIfFilesAreMissingAndMakeFalse(
      const std::function<bool(std::string_view folder)>& go_on = {});

  /// Adds every MP3 file of the remembered folders that is not known as present as a new song of rank
  /// "2", then takes the copies of known songs out again. With no library yet, searches all drives instead.
  ///
  /// A list of folders that cannot be read is written anew from the library; where that fails too, the
  /// songs' own folders serve as the list.
  ///
  /// \param go_on is told each folder that has been looked at (an empty text while one is waited for), and says
  /// whether to look at more; may be empty
  /// \returns always false
  bool AddAnyAdditionalMp3FromTheNormalDirectories(
      const std::function<bool(std::string_view folder)>& go_on = {});

  /// Removes every song whose name a song with a lower record number has (see RemoveDuplicates),
  /// sorts by record number, and when rows were added, numbers the added ones by their row and
  /// saves.
  ///
  /// \param old_count how many rows there were before rows were added
  void DeleteIdenticalFileNamesAndPaths(std::int32_t& old_count);

  /// Sets the record number of every row to its row.
  void RenumberBasedOnArrayNumber();

  /// Sorts whole rows by one column, see SortCity.
  ///
  /// \param ascending smallest key first
  /// \param as_text   by lower-cased text; else as 32-bit integers
  /// \param column    1 to 12
  /// \param result    false when the table has no rows, in which case nothing happens
  /// \throws TypeMismatchError, OverflowError from a numeric sort over a cell that is no number
  bool Sort(bool ascending, const bool& as_text, std::int16_t column, bool& result);

  /// Sets one cell; the table grows to the row.
  ///
  /// \param column 1 to 12
  /// \param row    from 1
  /// \throws SubscriptError
  void Mp3Info(std::int32_t column, std::int32_t row, std::string_view value);

  /// The text of one cell. The view holds until the library is changed.
  ///
  /// \param column 1 to 12
  /// \param row    1 to UBoundOfMp3Array()
  /// \throws SubscriptError when the cell does not exist
  std::string_view Mp3Info(std::int32_t column, std::int32_t row) const;

  /// The number of rows.
  std::int32_t UBoundOfMp3Array() const noexcept { return table_.rows(); }

  void MainIsDirty(bool dirty) noexcept { main_is_dirty_ = dirty; }
  bool MainIsDirty() const noexcept { return main_is_dirty_; }

  /// Writes the library file, then the number of its rows to the settings and those to their file.
  ///
  /// The file is replaced atomically. A file that the last load could not read whole is first kept
  /// as "FileLocNames.lmz.bak". When the bytes on disk are already those of the table, nothing is
  /// written.
  /// \returns false when the file could not be written; the old file and the count in the settings
  ///         then stand, and SaveError() tells why
  bool Save();

  /// Reads the library file into a table of as many rows as the settings count. A record without a
  /// name is skipped; columns 6 to 12 come out empty. A file that does not exist is made empty.
  ///
  /// \returns false when the settings count no rows, when the file holds more records than rows, or
  ///         when it is damaged; the rows read before that stay
  bool LoadMain();

  /// Whether there are rows.
  bool Mp3MainHasSomeMembers() const noexcept { return IsDimensioned(); }

  /// Saves, then writes the list of the folders that hold songs, each once, in the order of a sort
  /// by folder; the rows end in the order of their numbers. A folder whose path holds a line break
  /// is left out. A failure is not reported, see SaveError().
  void WriteOutMp3DirectoryLocations();

  /// Fills the table with what a damaged library file still shows (SalvageLibrary). The next save
  /// keeps the damaged file as "FileLocNames.lmz.bak" first.
  ///
  /// \returns how many songs were found
  /// \throws FileError when the file cannot be read
  std::int32_t Salvage();

  /// The path of the library file.
  std::string LibraryPath() const;

  /// What kept the last Save, or else the last WriteOutMp3DirectoryLocations, from writing; empty when
  /// nothing did.
  const std::string& SaveError() const noexcept {
    return save_error_.empty() ? list_error_ : save_error_;
  }

 private:
  /// The names of the present songs of each folder.
  using KnownSongs = std::unordered_map<std::string_view, std::unordered_set<std::string_view>>;

  /// The folders of the folder list, each ending in a separator.
  std::vector<std::string> RememberedFolders();
  /// Adds the songs of one listed folder.
  ///
  /// \param known the songs that are not added again; the added ones join them
  void AddMp3FilesOfOneFolder(std::string_view folder, const FolderListing& listing,
                              KnownSongs& known);
  void ResizeRows(std::int32_t rows) { table_.Resize(rows); }
  bool IsDimensioned() const noexcept { return table_.rows() > 0; }
  /// Whether the table's rows are those of the library file as it lies on the disk now.
  bool IsOnDisk() const;
  void RememberOnDisk();

  LibrarySettings& settings_;
  std::function<void()> search_all_drives_;
  SongTable table_;
  bool main_is_dirty_ = false;
  bool backup_first_ = false;  ///< the file on disk holds more than the table came to know
  std::string save_error_;     ///< of the last Save
  std::string list_error_;     ///< of the last WriteOutMp3DirectoryLocations
  std::optional<FileStamp>
      saved_stamp_;  ///< of the library file when table and file were last alike
  std::string saved_path_;
  std::uint64_t saved_version_ = 0;  ///< of the table at that time
};

}  // namespace tallow

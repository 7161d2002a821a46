// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "library/duplicate_removal.h"
#include "library/folder_scan.h"
#include "library/known_drives.h"
#include "library/library_companion.h"
#include "library/library_file.h"
#include "library/missing_songs.h"
#include "library/mounted_volumes.h"
#include "library/record_repair.h"
#include "library/scan_report.h"
#include "library/song_table.h"
#include "library/state_file.h"
#include "library/unanswered_places.h"
#include "library/unread_folders.h"
#include "util/file_system.h"
#include "util/wait_decision.h"

namespace tallow {

/// What the library needs of the program's settings.
class LibrarySettings {
 public:
  virtual ~LibrarySettings() = default;
  /// The program's data folder, ending in a separator; the library file lies there.
  virtual std::string LocOfGroupingDir() const = 0;
  /// The folder of the program's own files, ending in a separator.
  virtual std::string SystemFolder() const = 0;
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
/// removed. After every operation but a sort, row i carries the number i.
///
/// A song is missing only when the disk answered that its file is not there. Where nobody can tell (its
/// drive is away, its folder cannot be read) the song is away: its row stays as it is, and it counts as
/// present but for filing, playing and the removal of duplicates. What was known of a missing song is
/// remembered (MissingSongs), so that it is known again when it comes back.
///
/// The library shows no message. What can fail says so in its result or in its \throws line.
class clsMain {
 public:
  /// A list of folders that has more bytes is not read.
  static constexpr std::uint64_t kMaxListBytes = std::uint64_t{256} << 20U;

  /// The first of the numbers, going down, by which a jukebox names a song of which it knows the file name
  /// alone. No row has such a number.
  static constexpr std::int32_t kFirstNumberOfName = -1'000'000'000;

  /// \param settings          has to outlive the library
  /// \param search_all_drives runs the song search over all fixed disks, which adds rows to this
  /// library
  clsMain(LibrarySettings& settings, std::function<void()> search_all_drives);

  /// How the library learns what is mounted where; without this it knows of no drives.
  ///
  /// \param given roots that were given as drives, each ending in a separator
  void UseDrives(LookAtVolumes look, std::vector<std::string> given);

  /// Finds out of every song whether it is there, missing or away.
  ///
  /// A missing song's row is blanked: flag, folder and name become "0". A row whose flag is not
  /// "1" is blanked too, so a song once missing stays missing for good; its file, come back, is
  /// found as a new song, which takes over rank and places (see Returned). A drive that is shown at another
  /// root now takes its rows along.
  ///
  /// \param go_on is told each folder that has been looked at (an empty text while one is waited for), and says
  /// whether to look at more; may be empty. The
  ///        songs of folders that were not looked at stay as they are
  /// \param wait  see WaitForDrive; without it a drive is given up after half a minute
  void CheckToSeeIfFilesAreMissingAndMakeFalse(const GoOn& go_on = {},
                                               const WaitForDrive& wait = {});

  /// Adds every MP3 file of the remembered folders that is not known as present as a new song of rank
  /// "2", then takes the copies of known songs out again. With no library yet, searches all drives instead.
  ///
  /// A list of folders that is not there is written anew from the library. One that cannot be read, or is a
  /// link that leads to nothing, stays as it is; the songs' own folders serve as the list then.
  ///
  /// \param go_on is told each folder that has been looked at (an empty text while one is waited for), and says
  /// whether to look at more; may be empty
  /// \param wait  see WaitForDrive
  /// \returns always false
  bool AddAnyAdditionalMp3FromTheNormalDirectories(const GoOn& go_on = {},
                                                   const WaitForDrive& wait = {});

  /// Removes every added song whose name a song with a lower record number has (see RemoveDuplicates),
  /// sorts by record number, and when rows were added, numbers the added ones by their row, gives those
  /// that come back their ranks, and saves. What is removed is in LeftOut().
  ///
  /// Of a song whose drive is away, a file of the same name and size is a copy; where a size is not known,
  /// one of the same name.
  ///
  /// \param old_count how many rows there were before rows were added
  void DeleteIdenticalFileNamesAndPaths(std::int32_t& old_count);

  /// Sets the record number of every row to its row.
  void RenumberBasedOnArrayNumber();

  /// Makes a library of what a search has added: sorts, removes duplicates, renumbers, saves, loads, and
  /// writes the folder list. Nothing where there are no rows.
  ///
  /// \param old_count rows that were there before the search, which keep their numbers; 0: numbers begin
  ///        anew, and what was remembered of the old ones is forgotten
  void TakeSearchedSongs(std::int32_t old_count);

  /// Appends a song of rank "2" that was added today.
  ///
  /// \param size of its file, in bytes; kUnknownSize where it is not known
  /// \returns its row
  std::int32_t AddSong(std::string_view folder, std::string_view name, std::int64_t size);

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
  /// The file is replaced atomically. The file that is replaced is first kept as
  /// "FileLocNames.lmz.bak"; where that cannot be done and the last load could not read it whole, it is
  /// not replaced. When the bytes on disk are already those of the table, nothing is written.
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
  /// \param is_set_aside the damaged file is kept under another name already, and the backup beside it
  ///        stays
  /// \returns how many songs were found
  /// \throws FileError when the file cannot be read
  std::int32_t Salvage(bool is_set_aside = false);

  /// Puts every row to the place of its number, where an earlier Tallow has left them elsewhere. The
  /// library file as it was is kept as "FileLocNames.lmz.bak", and the library is saved.
  ///
  /// \returns whether anything had to be put right
  bool RepairRecordNumbers();

  /// Whether the song of a record number is there or away; false for a number that is no row.
  bool IsPresent(std::int32_t record) const;
  /// Whether nobody can tell if the song of a record number is there.
  bool IsAway(std::int32_t record) const {
    return record >= 1 && record <= table_.rows() && table_.Facts(record).away != 0;
  }
  /// Whether the song of a record number is missing, and remembered, or nothing but its name is known: its
  /// entries are kept, and not shown.
  bool IsHidden(std::int32_t record) const {
    if (record <= kFirstNumberOfName) return true;
    return missing_.size() > 0 && !IsPresent(record) && missing_.IsMissing(record);
  }
  /// Why a song is away, as it is said of its entries: "NAME is on a drive that is away: ROOT". Empty when
  /// it is not.
  std::string AwayText(std::int32_t record) const;

  /// Looks again whether the song of a record number is there.
  ///
  /// \returns whether it is; its row is no longer away then
  bool LookAgain(std::int32_t record);
  /// LookAgain for each of some songs. Of a folder in which nobody can tell one song, the others are not
  /// asked for.
  /// \returns for each whether it is there
  std::vector<char> LookAgain(const std::vector<std::int32_t>& records);
  /// LookAgain, which also finds out whether the song is away, and blanks its row where it is missing.
  bool CheckSong(std::int32_t record);
  /// Where the first of some songs is found to be away, finds out of each of them whether it is.
  void MarkAwaySongs(const std::vector<std::int32_t>& records);
  /// The root of a drive that is away on which a path lies; empty for none.
  std::string AwayRootOf(std::string_view path) const;

  /// What ReadAhead does while files are waited for: it lets the windows live, and gives drives up that do
  /// not answer; their files are not asked for (see Unanswered) until the next scan.
  ///
  /// \param path_of the path of the file or folder of a question
  /// \param go_on   throws Stopped out of ReadAhead where it returns false; may be empty
  /// \param wait    see WaitForDrive; may be empty
  WhileWaiting WaitingFor(std::function<std::string(std::size_t)> path_of, GoOn go_on,
                          WaitForDrive wait = {});
  /// Runs something that looks at songs. Drives that were given up before are asked again.
  ///
  /// \param go_on see WaitingFor; Stopped comes out of this call
  void LookWithProgress(const GoOn& go_on, const std::function<void()>& act);
  /// Looks at a file of whatever kind, which may lie on a drive that does not answer: then it is unknown, and
  /// Unanswered() covers it.
  FileLook LookAt(const std::string& path, const GoOn& go_on, const WaitForDrive& wait);
  /// Whether a path lies on a drive of another computer, as the drives were looked at last.
  bool IsOnNetwork(std::string_view path) const { return drives_.IsOnNetwork(path); }
  /// The drives that were given up since the last scan began.
  std::shared_ptr<const UnansweredPlaces> Unanswered() const { return unanswered_; }

  /// The places that songs are away with, each with how many of them, in the order of the places.
  std::vector<AwayPlace> AwayPlaces() const;
  /// Makes the songs missing that are away with a place, but for those that are found now, forgets its
  /// drive, and saves. Files that were left out for one of them become songs, with their ranks: see
  /// TakeReturned.
  /// \returns how many songs
  std::int32_t ForgetAwayPlace(const std::string& place);

  /// What is remembered of missing songs.
  const MissingSongs& Missing() const noexcept { return missing_; }
  /// What is known of numbers that meant two songs.
  RepairedNumbers& Repaired() noexcept { return repaired_; }
  const RepairedNumbers& Repaired() const noexcept { return repaired_; }
  /// Writes what is known of them; a failure is not reported.
  void SaveRepaired();

  /// Whether what was remembered of a drive, or of folders below it, has this root.
  bool KnowsDrive(std::string_view root);

  /// The songs that came back since the last call: each number that was missing, and the one it has now.
  std::vector<ReturnedSong> TakeReturned();

  /// Begins to count what a start, a search or a drop of files comes to.
  void BeginScan(ScanKind kind);
  /// Ends that: saves what went missing, and remembers the drives where songs are and what was left out.
  /// \param complete false when the scan was cancelled
  /// \param go_on    is called while a drive is waited for; false gives the drive up. May be empty
  ScanReport FinishScan(bool complete, const GoOn& go_on = {});
  /// A file is left out because a song of its name is there; nothing when it is that song's own.
  void LeaveOut(const std::string& path, std::int32_t record);
  /// The files that the last scans have left out because a song of their name is there.
  const std::vector<LeftOutFile>& LeftOut() const noexcept { return left_out_; }

  /// A folder could not be read, or not all of it: it is said, and looked at again at the next start.
  ///
  /// \param below   whether the folders below it are to be searched too
  /// \param problem what the system says
  void RememberUnread(std::string_view folder, bool below, std::string_view problem);
  /// A folder that could not be read before was read, or is no longer there.
  void ForgetUnread(std::string_view folder) { unread_.Remove(folder); }
  /// The folders that could not be read.
  std::vector<UnreadFolder> UnreadFoldersNow() const { return unread_.Folders(); }

  /// What is known of a song's file: size and the day it was added.
  const SongFacts& Facts(std::int32_t row) const { return table_.Facts(row); }
  /// Sets the size of a song's file, if the row is still that of the path.
  void SetSize(std::int32_t row, std::string_view folder, std::string_view name, std::int64_t size);
  /// Writes the companion of the library file as it lies on the disk; a failure is not reported.
  void SaveFacts();
  /// Makes the library file as it was loaded the good one, whatever the companion's checksums say. What
  /// the companion of the other one knew is kept with ".damaged" behind its name.
  void TrustLibrary();

  /// Why files that the library remembers things in could not be read or written, since the last call.
  std::vector<std::string> TakeProblems();

  /// The path of the library file.
  std::string LibraryPath() const;

  /// What kept the last Save, or else the last WriteOutMp3DirectoryLocations, from writing; empty when
  /// nothing did.
  const std::string& SaveError() const noexcept {
    return save_error_.empty() ? list_error_ : save_error_;
  }

 private:
  class KnownSongs;
  struct FolderRows;
  class PresenceCheck;
  class Asking;

  void CheckPresence();
  void AddFromRememberedFolders();
  // Looks that give up a drive that does not answer.
  template <typename Answer>
  Answer Ask(const std::string& path, Answer (*ask)(const std::string&), const Answer& unanswered);
  template <typename Answer>
  Answer AskBeside(const std::string& path, Answer (*ask)(const std::string&),
                   const Answer& unanswered);
  FileLook Look(const std::string& path);
  FolderState StateOf(const std::string& folder);
  std::vector<std::optional<FolderState>> StatesOf(const std::vector<std::string>& folders);
  WhileWaiting WaitingFor(std::function<std::string(std::size_t)> path_of);
  /// Whether looking into a folder would take long and tell nothing.
  bool IsNotAsked(std::string_view folder) const;
  std::uint32_t UnaskedReason(std::string_view folder);

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
  void RememberOnDisk(std::uint64_t checksum);
  void WriteLibrary(const std::string& path);
  /// Keeps the library file that is about to be replaced.
  /// \returns false where there is none
  bool KeepLibraryAsBackup(const std::string& path);
  void LoadWhatWasSaved();
  void LoadFacts(std::uint64_t checksum);
  std::string CompanionPath() const;
  bool ReadCompanionAgain();
  void TakeFactsOfBackup();
  void WriteCompanion(const CompanionHeader& header);

  void LookAtDrives();
  void LoadDrives();
  bool MarkIfAway(std::int32_t record);
  bool MarkIfAway(std::int32_t record, const FileLook& look);
  FileLook LookAtSong(std::int32_t record);
  class FolderMemory;
  void GoOnOrStop();
  void LoadMemory();
  bool CanRemember();
  void DropUntrueMemories();
  void SaveMemory();
  void BlankRow(std::int32_t row);
  std::uint32_t AwayReason(AwayKind kind, std::string_view place, std::string_view problem = {});
  void LeaveOutRespelled(std::int32_t old_count);
  /// Whether the song of a row lies in a folder that searches take no songs from.
  bool IsInExcludedFolder(std::int32_t row) const;
  /// A song of such a folder that is found elsewhere lies there from now on, with its rank and its places.
  void MoveOutOfExcludedFolders(std::int32_t old_count);
  void LeaveOutCopiesOfAwaySongs(std::int32_t old_count);
  std::vector<char> RowsThatCount() const;
  bool IsOnAwayDrive(std::int32_t row) const;
  void RecognizeReturned(std::int32_t old_count);
  void RecognizeLate();
  std::int64_t SizeOf(std::int32_t row);
  std::vector<std::string> FoldersOf(bool away, std::int32_t first_row) const;

  LibrarySettings& settings_;
  std::function<void()> search_all_drives_;
  SongTable table_;
  LookAtVolumes look_at_volumes_;
  GoOn go_on_;                   ///< of the scan that runs
  WaitForDrive wait_for_drive_;  ///< of the scan that runs
  std::shared_ptr<UnansweredPlaces> unanswered_ = std::make_shared<UnansweredPlaces>();
  KnownDrives drives_;
  MissingSongs missing_;
  RepairedNumbers repaired_;
  StateFile drives_file_;
  StateFile missing_file_;
  StateFile repaired_file_;
  UnreadFolders unread_;
  StateFile unread_file_;
  std::string unread_error_;  ///< why it could not be saved
  bool drives_are_loaded_ = false;
  bool memory_is_loaded_ = false;
  bool drives_were_looked_at_ = false;  ///< in this scan
  std::int32_t rows_before_scan_ = 0;
  bool list_is_stale_ = false;   ///< the folder list has roots that drives no longer have
  bool list_is_unread_ = false;  ///< the folder list could not be read, so it is not replaced

  /// Why songs are away, by SongFacts::away less one.
  struct Reason {
    AwayKind kind;
    std::string place;    ///< the drive's root, or the folder
    std::string problem;  ///< see AwayPlace
    bool operator==(const Reason&) const = default;
  };
  std::vector<Reason> reasons_;

  std::vector<ReturnedSong> returned_;
  std::vector<LeftOutFile> left_out_;
  ScanReport scan_;
  CompanionHeader companion_;
  bool companion_is_unread_ =
      false;  ///< the companion on the disk could not be read at the last load
  std::vector<std::string> problems_;
  bool main_is_dirty_ = false;
  bool backup_first_ = false;    ///< the file on disk holds more than the table came to know
  bool backup_is_good_ = false;  ///< the library's backup is a library that was saved here
  bool is_set_aside_ = false;    ///< the file on disk is kept under another name already
  std::string save_error_;       ///< of the last Save
  std::string list_error_;       ///< of the last WriteOutMp3DirectoryLocations
  std::optional<FileStamp>
      saved_stamp_;  ///< of the library file when table and file were last alike
  std::string saved_path_;
  std::uint64_t saved_version_ = 0;  ///< of the table at that time
  std::size_t loaded_bytes_ = 0;     ///< of the library file at the last LoadMain
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/away_reasons.h"
#include "library/disk_queries.h"
#include "library/duplicate_removal.h"
#include "library/folder_list.h"
#include "library/folder_scan.h"
#include "library/library_settings.h"
#include "library/library_state.h"
#include "library/library_storage.h"
#include "library/missing_songs.h"
#include "library/mounted_volumes.h"
#include "library/new_folders.h"
#include "library/record_repair.h"
#include "library/scan_findings.h"
#include "library/scan_report.h"
#include "library/song_rows.h"
#include "library/song_view.h"
#include "library/switches.h"
#include "library/unanswered_places.h"
#include "library/unread_folders.h"
#include "util/file_system.h"
#include "util/wait_decision.h"

namespace tallow {

/// The song library: one row per MP3 file the program has ever found.
///
/// Rows and columns count from 1, see SongColumn. A row keeps its record number permanently,
/// because jukeboxes refer to songs by it; so a song whose file is gone is blanked ("0"), never
/// removed. After every operation except a sort, row i has the record number i.
///
/// A song is missing only when the disk reported that its file does not exist. When that cannot be
/// determined (its drive is not mounted, its folder is unreadable), the song is away: its row stays
/// unchanged, and it counts as present except for filing, playing and duplicate removal. The data
/// of a missing song are kept (MissingSongs), so that the song is recognized when its file comes
/// back.
///
/// The library shows no messages. Functions that can fail say so in the result or in a \throws
/// line.
class clsMain : public SongRows {
 public:
  /// The first of the negative numbers, counted down, of songs of which only the name is known.
  static constexpr std::int32_t kFirstPlaceholder = -1'000'000'000;

  /// \param settings must outlive the library
  explicit clsMain(LibrarySettings& settings) : settings_(settings) {}

  /// Sets the source of the mounted volumes. Until this is called, the library knows no drives.
  ///
  /// \param given  roots that were given as drives, each ending in a separator
  /// \param limits of the switch `new_subfolders`
  void UseDrives(ReadMountedVolumes read_volumes, std::vector<std::string> given,
                 WalkLimits limits = {});

  /// Switches between the classic and the modern style, and sets songs aside accordingly, see
  /// SetAside. Until this is called, the library is classic. It then sets songs aside only if an
  /// earlier run had another style, see MissingSongs::MayHaveNamesakes.
  void UseSwitches(const tallow::Switches& switches);
  const tallow::Switches& Switches() const noexcept { return switches_; }
  /// Whether songs are set aside, so that there may be several songs of one file name.
  bool HasNamesakes() const noexcept { return sets_aside_ || state_.Missing().MayHaveNamesakes(); }
  /// Determines for every song whether it is present, missing or away.
  ///
  /// The row of a missing song is blanked: flag, folder and name become "0". A row whose flag is
  /// not "1" is blanked too, so a row once blanked stays blank. If the file comes back, it is added
  /// as a new song, which inherits the rank and the jukebox entries (see TakeReturned). If a drive
  /// is now mounted at another root, the folders of its rows are updated.
  ///
  /// \param go_on callback, called with each folder checked, and with an empty text while waiting;
  ///        returns false to stop. May be empty. Songs in folders not checked stay unchanged
  /// \param wait  see WaitForDrive. May be empty: a drive is then given up after 30 s, or after 5 s
  ///        if go_on is empty, too
  void CheckToSeeIfFilesAreMissingAndMakeFalse(const GoOn& go_on = {},
                                               const WaitForDrive& wait = {});

  /// Adds every MP3 file in the remembered folders that is not a present song yet, with rank "2",
  /// then removes copies of known songs. With the switch `new_subfolders`, also adds those in the
  /// folders of NewFolders. When there is no library yet, searches all drives instead and turns the
  /// result into the library, see ImportFoundSongs.
  ///
  /// A missing folder list is rebuilt from the library. A list that cannot be read, or is a
  /// dangling link, is not changed; the folders of the songs are used instead.
  ///
  /// \param go_on callback, called with each folder checked, and with an empty text while waiting;
  ///        returns false to stop. May be empty
  /// \param wait  see WaitForDrive
  /// \param search_all_drives runs the song search over all fixed disks, which adds rows to this
  ///        library; called only when there is no library yet. May be empty
  /// \returns always false
  bool AddAnyAdditionalMp3FromTheNormalDirectories(
      const GoOn& go_on = {}, const WaitForDrive& wait = {},
      const std::function<void()>& search_all_drives = {});

  /// Removes every added song that has the same name as a song with a lower record number (see
  /// RemoveDuplicates) and sorts by record number. If added rows remain, also numbers them by row,
  /// restores the ranks of returned songs, and saves. LeftOut() lists what was removed.
  ///
  /// An added file is a copy of a song on a drive that is away when name and size are equal; when
  /// one of the sizes is unknown, the name decides.
  ///
  /// \param old_count number of rows before rows were added
  void DeleteIdenticalFileNamesAndPaths(std::int32_t& old_count);

  /// Turns the result of a search into the library: sorts, removes duplicates, renumbers, saves,
  /// loads, and writes the folder list. Does nothing when there are no rows.
  ///
  /// \param old_count number of rows before the search, which keep their numbers; with 0 numbering
  ///        restarts, and the missing songs and repaired numbers of the old numbering are forgotten
  void ImportFoundSongs(std::int32_t old_count);

  void MainIsDirty(bool dirty) noexcept { main_is_dirty_ = dirty; }
  bool MainIsDirty() const noexcept { return main_is_dirty_; }

  /// Writes the library file, then stores the number of its rows in the settings and saves the
  /// settings.
  ///
  /// The library file is replaced as by LibraryStorage. If it already has the same bytes as the
  /// table, nothing is written.
  /// \returns false when the file could not be written; the old file and the old row count then
  /// stay, and SaveError() returns the reason
  bool Save();

  /// Loads the library file into a table with the number of rows from the settings. A record
  /// without a name is skipped; columns 6 to 12 stay empty. A missing file is created empty.
  ///
  /// \returns false when the row count in the settings is below 1, when the file has more records
  /// than rows, or when it is damaged; the rows read before that stay
  bool LoadMain();

  /// Saves, then writes the list of the folders that contain songs, each folder once, sorted by
  /// folder. Afterwards the rows are sorted by record number. A folder whose path contains a line
  /// break is left out. Failures are only reported by SaveError().
  void WriteOutMp3DirectoryLocations();

  /// Fills the table with the songs that can be recovered from a damaged library file
  /// (SalvageLibrary). The next save first keeps the damaged file as "FileLocNames.lmz.bak".
  ///
  /// \param is_set_aside the damaged file was already renamed, so the existing backup stays
  /// \returns the number of songs found
  /// \throws FileError when the file cannot be read
  std::int32_t Salvage(bool is_set_aside = false);

  /// Moves every row to the position of its record number. Needed for libraries of earlier
  /// versions, where they could differ. The old library file is kept as "FileLocNames.lmz.bak", and
  /// the library is saved.
  ///
  /// \returns whether any row had to be moved
  bool RepairRecordNumbers();

  /// Whether the song with a record number is present or away; false when there is no such row.
  bool IsPresent(std::int32_t record) const { return Song(record).IsPresent(); }
  /// Whether the song with a record number is away: present, but its file could not be checked.
  bool IsAway(std::int32_t record) const { return Song(record).IsAway(); }
  /// Whether jukeboxes keep the entries of a song but do not show them: the song is missing and
  /// remembered, or set aside, or only its name is known.
  bool IsHidden(std::int32_t record) const {
    if (record <= kFirstPlaceholder || Song(record).IsSetAside()) return true;
    return Missing().size() > 0 && !IsPresent(record) && Missing().IsMissing(record);
  }
  /// The message why a song is away, e.g. "NAME is on a drive that is away: ROOT". Empty when the
  /// song is not away.
  std::string AwayText(std::int32_t record) const;

  /// Checks again whether the file of a song exists.
  ///
  /// \returns whether it exists; the song is then no longer away
  bool RecheckSong(std::int32_t record);
  /// RecheckSong for several songs. After one song of a folder could not be checked, the other
  /// songs of that folder are not checked.
  /// \returns for each song whether its file exists
  std::vector<char> RecheckSong(const std::vector<std::int32_t>& records);
  /// RecheckSong; if the file is not there, the song becomes away, or missing and its row blank.
  bool CheckSong(std::int32_t record);
  /// Checks whether the first song is away, and if so, checks all the songs.
  void MarkAwaySongs(const std::vector<std::int32_t>& records);
  /// The root of the away drive that contains a path; empty when there is none.
  std::string AwayRootOf(std::string_view path) const { return state_.Drives().AwayRootOf(path); }

  /// Creates the callback for ReadAhead that runs while the disk has not answered. It processes
  /// window events and gives up drives that do not answer; their files are not checked again until
  /// the next scan (see Unanswered).
  ///
  /// \param path_of returns the path of the file or folder of a question
  /// \param go_on   when this returns false, the callback throws Stopped out of ReadAhead; may be
  ///        empty
  /// \param wait    see WaitForDrive; may be empty
  WhileWaiting WaitingFor(std::function<std::string(std::size_t)> path_of, GoOn go_on,
                          WaitForDrive wait = {});
  /// Runs a function that checks songs, after resetting the list of drives that were given up.
  ///
  /// \param go_on see WaitingFor; Stopped is thrown out of this call
  void CheckWithProgress(const GoOn& go_on, const std::function<void()>& act);
  /// Checks a file of any type, with a timeout for a drive that does not answer: then the result is
  /// kUnknown, and Unanswered() covers the file.
  FileStatus CheckPath(const std::string& path, const GoOn& go_on, const WaitForDrive& wait);
  /// Whether a path is on a network drive, as of the last CheckDrives.
  bool IsOnNetwork(std::string_view path) const { return state_.Drives().IsOnNetwork(path); }
  /// The places given up since the last scan began.
  std::shared_ptr<const UnansweredPlaces> Unanswered() const { return disk_.Unanswered(); }

  /// The drives and folders whose songs are away, with the number of songs, sorted by place.
  std::vector<AwayPlace> AwayPlaces() const { return reasons_.Places(table_); }
  /// Marks the songs that are away with a place as missing, except those found now, forgets the
  /// drive, and saves. Files that were left out because of such a song are added as songs and
  /// inherit its rank, see TakeReturned.
  /// \returns the number of songs marked as missing
  std::int32_t ForgetAwayPlace(const std::string& place);

  /// The remembered missing songs.
  const MissingSongs& Missing() const noexcept { return state_.Missing(); }
  /// The numbers that meant two songs before they were repaired.
  RepairedNumbers& Repaired() noexcept { return state_.Repaired(); }
  const RepairedNumbers& Repaired() const noexcept { return state_.Repaired(); }
  /// Writes the repaired numbers. A failure is only reported by TakeProblems().
  void SaveRepaired();

  /// Whether a remembered drive, or a folder on one, has this root.
  bool KnowsDrive(std::string_view root);

  /// Returns, and clears, the songs that came back: the number of the missing song and its new
  /// number.
  std::vector<ReturnedSong> TakeReturned();

  /// Resets the counters of the scan report. Called when a start, a search or a drop begins.
  void BeginScan(ScanKind kind);
  /// Ends a scan: saves missing songs, and records the drives of the songs and the count of files
  /// left out.
  /// \param complete false when the scan was cancelled
  /// \param go_on    callback, called while waiting for a drive; returning false gives the drive
  ///        up. May be empty
  ScanReport FinishScan(bool complete, const GoOn& go_on = {});
  /// Records a file left out because a song has the same file name. Does nothing when the file is
  /// that song's own file.
  void LeaveOut(const std::string& path, std::int32_t record);
  /// The files that the last scans left out, because a song has the same file name.
  const std::vector<LeftOutFile>& LeftOut() const noexcept { return left_out_; }

  /// What the scans of this run and earlier ones have left out. Before LoadFindings it has nothing
  /// unless this run has searched the computer.
  const ScanFindings& Findings() const noexcept { return findings_; }
  /// Reads the findings of earlier runs.
  /// \returns false when they were loaded before
  bool LoadFindings();
  /// Records that a scan has read a folder completely.
  /// \param other_formats number of its files of formats that the switches leave out
  void RememberVisit(std::string_view folder, std::size_t other_formats);
  /// Records that a folder with findings does not exist any more.
  void RememberGone(std::string_view folder) { findings_.MarkGone(folder); }

  /// Records that a folder could not be read completely. It is reported, and scanned again at the
  /// next start.
  ///
  /// \param below   whether its subfolders must be searched too
  /// \param problem the system's error message
  void RememberUnread(std::string_view folder, bool below, std::string_view problem);
  /// Forgets an unread folder, because it was read or no longer exists.
  void ForgetUnread(std::string_view folder) { state_.Unread().Remove(folder); }
  /// The folders that could not be read.
  std::vector<UnreadFolder> UnreadFoldersNow() const { return state_.Unread().Folders(); }

  /// Sets the size of a song's file. Does nothing when the row no longer has that path.
  void SetSize(std::int32_t row, std::string_view folder, std::string_view name, std::int64_t size);
  /// Writes the companion of the library file on disk. Failures are not reported.
  void SaveFacts() { storage_.Companion().Save(table_); }
  /// Accepts the loaded library file as good although its checksum is not in the companion. The old
  /// companion is kept under its name followed by ".damaged".
  void TrustLibrary() { storage_.Companion().Trust(table_); }

  /// Returns, and clears, the errors of reading and writing the library's state files.
  std::vector<std::string> TakeProblems();

  /// The path of the library file.
  std::string LibraryPath() const { return storage_.Path(); }

  /// The error of the last Save or, if that succeeded, of the last WriteOutMp3DirectoryLocations;
  /// empty for none.
  const std::string& SaveError() const noexcept {
    return save_error_.empty() ? folder_list_.Error() : save_error_;
  }

 private:
  class KnownSongs;
  class FolderScan;
  class PresenceCheck;
  class FolderCheckCache;
  class Asking;

  void CheckPresence();
  void AddFromRememberedFolders();
  std::uint32_t SkippedReason(std::string_view folder);

  /// The folders of the folder list, each ending in a separator.
  std::vector<std::string> RememberedFolders();
  void RewriteFolderList();
  void LoadWhatWasSaved();

  void CheckDrives();
  void LoadDrives() { state_.LoadDrives(settings_.SystemFolder(), problems_); }
  void LoadMemory() { state_.Load(settings_.SystemFolder(), table_, problems_); }
  bool CanSaveMissingSongs();
  bool MarkIfAway(std::int32_t record);
  bool MarkIfAway(std::int32_t record, const FileStatus& status);
  FileStatus CheckSongFile(std::int32_t record) { return disk_.CheckPath(Song(record).Path()); }
  void BlankRow(std::int32_t row);
  /// Removes added rows with the path of a song, perhaps in another spelling, which the song gets.
  void LeaveOutKnownPaths(std::int32_t old_count);
  /// Gives songs in folders that searches skip the path at which they were also found.
  void MoveOutOfExcludedFolders(std::int32_t old_count);
  void LeaveOutCopiesOfAwaySongs(std::int32_t old_count);
  std::vector<char> RowsToCompare() const;
  bool IsOnAwayDrive(std::int32_t row) const { return reasons_.IsDrive(table_.Facts(row).away); }
  void RecognizeReturned(std::int32_t old_count);
  void RecognizeLate();
  /// Calls `accept` for each row from `first` whose file is taken for a missing song. If the row is
  /// accepted, it gets the song's entries; its rank is set by `accept`.
  ///
  /// \param is_candidate whether the file of a row may be asked for its size
  void ForReturned(std::int32_t first, const std::function<bool(std::int32_t row)>& is_candidate,
                   const std::function<bool(std::int32_t row, const MissingSong& song)>& accept);
  std::int64_t SizeOf(std::int32_t row);
  std::vector<std::string> FoldersOf(bool away, std::int32_t first_row) const;

  /// Sets songs aside again after rows have changed, if HasNamesakes.
  void UpdateSetAside();

  LibrarySettings& settings_;
  tallow::Switches switches_;
  bool sets_aside_ = false;  ///< UseSwitches was called
  LibraryStorage storage_{settings_};
  LibraryState state_;
  DiskQueries disk_{state_.Drives()};
  AwayReasons reasons_;
  FolderList folder_list_{settings_};
  ReadMountedVolumes read_volumes_;
  WalkLimits limits_;
  bool drives_were_checked_ = false;  ///< in this scan
  std::int32_t rows_before_scan_ = 0;
  std::vector<ReturnedSong> returned_;
  std::vector<LeftOutFile> left_out_;
  ScanFindings findings_;
  ScanReport scan_;
  std::vector<std::string> problems_;
  bool main_is_dirty_ = false;
  std::string save_error_;  ///< of the last Save
};

}  // namespace tallow

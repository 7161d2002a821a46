// SPDX-License-Identifier: GPL-3.0-or-later
// How the library adds new songs and recognizes those that come back.
#include <algorithm>
#include <deque>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "library/cls_main.h"
#include "library/excluded_folders.h"
#include "library/folder_scan.h"
#include "library/new_folders.h"
#include "library/song_formats.h"
#include "util/day.h"
#include "util/number.h"
#include "util/path_text.h"
#include "util/read_ahead.h"

namespace tallow {

/// The songs that are present or away, indexed by folder and file name.
class clsMain::KnownSongs {
 public:
  using Rows = std::unordered_map<std::string_view, std::int32_t>;

  explicit KnownSongs(const SongTable& table) {
    for (std::int32_t row = 1; row <= table.rows(); ++row)
      if (table.Cell(kFileIsThere, row) == kPresent)
        OfFolder(table.Cell(kFileLocation, row)).emplace(Key(table.Cell(kFileName, row)), row);
  }
  Rows& OfFolder(std::string_view folder) { return folders_[Key(folder)]; }
  /// The key of a text, see PathKey. The view is valid as long as this object and the text.
  std::string_view Key(std::string_view text) { return PathKeyView(text, keys_); }

 private:
  std::unordered_map<std::string_view, Rows> folders_;
  std::deque<std::string> keys_;
};

void clsMain::BlankRow(std::int32_t row) {
  if (table_.Cell(kFileIsThere, row) == kPresent) {
    if (!CanSaveMissingSongs()) {
      // The song cannot be saved as missing, so keep the row; blanking it would lose the rank.
      table_.Facts(row).away = reasons_.NumberOf(
          AwayKind::kKept, Song(row).Folder(),
          storage_.Companion().IsUnread() ? storage_.Companion().Path() : state_.MissingPath());
      return;
    }
    state_.Missing().Add({.number = NumericValue(table_.Cell(kRecordNumber, row)),
                          .name = std::string(table_.Cell(kFileName, row)),
                          .folder = std::string(table_.Cell(kFileLocation, row)),
                          .size = table_.Facts(row).size,
                          .rank = std::string(table_.Cell(kSongRank, row)),
                          .day = Today(),
                          .now = 0});
    ++scan_.missing;
  }
  BlankSong(table_, row);
  // The size stays: if this library is not saved, the companion still belongs to the previous
  // library.
  table_.Facts(row).away = 0;
}

/// The scan of the remembered folders, and of the new ones that it finds.
class clsMain::FolderScan {
 public:
  explicit FolderScan(clsMain& library) : library_(library), songs_(library.table_) {}

  /// Adds the songs that are not known, as far as the scan is not stopped.
  void Run(std::vector<std::string> folders) {
    if (library_.switches_.new_subfolders)
      new_folders_.emplace(folders, library_.limits_.home, Roots());
    try {
      while (!folders.empty()) {
        List(folders);
        folders = new_folders_ ? new_folders_->TakeNext() : std::vector<std::string>();
      }
    } catch (const Stopped&) {
      // Cancelled; the songs found so far are valid.
    }
  }

  /// Whether songs were found in folders that were not known.
  bool HasNewFolders() const noexcept { return has_new_folders_; }

 private:
  using Role = NewFolders::Role;

  std::vector<std::string> Roots() const {
    std::vector<std::string> roots = library_.state_.Drives().Roots();
    if (library_.limits_.mount_points)
      for (std::string& point : library_.limits_.mount_points()) roots.push_back(std::move(point));
    return roots;
  }

  ListRequest Request() const {
    const std::string_view pattern = SongPattern(library_.switches_);
    return {.pattern = pattern,
            .counted = OtherSongs(pattern),
            .real_subfolders = new_folders_.has_value()};
  }

  void List(const std::vector<std::string>& folders) {
    DiskQueries& disk = library_.disk_;
    ReadAhead(
        folders.size(), kFoldersAtOnce, [&](std::size_t k) { return folders[k]; },
        [unanswered = disk.Unanswered(), request = Request()](const std::string& folder) {
          return unanswered->Covers(folder) ? FolderListing() : ListFolder(folder, request);
        },
        [&](std::size_t k, const FolderListing& listing) {
          Use(folders[k], listing);
          disk.GoOnOrStop(folders[k]);
        },
        disk.WaitingFor([&](std::size_t k) { return folders[k]; }),
        [](std::size_t) { return FolderListing(); });
  }

  void Use(const std::string& folder, const FolderListing& listing) {
    const Role role = new_folders_ ? new_folders_->Visit(folder, listing.subfolders) : Role::kKnown;
    if (role == Role::kIgnored) return;
    // A parent of known folders may have no songs of its own, so its problem is not reported.
    if (!listing.problem.empty() && role != Role::kParent)
      library_.RememberUnread(folder, role == Role::kNew, listing.problem);
    else if ((listing.opened || listing.not_there) &&
             (role == Role::kNew || !library_.state_.Unread().HasBelow(folder)))
      library_.ForgetUnread(folder);
    const bool accepts_new = !HoldsNoSongs(folder);
    if (listing.opened && listing.problem.empty())
      library_.RememberVisit(folder, accepts_new ? listing.counted : 0);
    else if (listing.not_there &&
             library_.state_.Drives().VerdictOf(folder).verdict == KnownDrives::Verdict::kMissing)
      library_.RememberGone(folder);
    if (listing.files.empty()) return;
    has_new_folders_ = has_new_folders_ || role != Role::kKnown;
    AddFiles(folder, listing.files, accepts_new);
  }

  void AddFiles(const std::string& folder, const std::vector<FileEntry>& files, bool accepts_new) {
    KnownSongs::Rows& rows = songs_.OfFolder(folder);
    SongTable& table = library_.table_;
    for (const FileEntry& file : files) {
      if (const auto found = rows.find(songs_.Key(file.name)); found != rows.end()) {
        // On a case-insensitive file system, update the spelling of the name.
        table.SetCell(kFileName, found->second, file.name);
        table.Facts(found->second).away = 0;
        continue;
      }
      if (!accepts_new || !MayBeSong(file.name)) continue;
      const std::int32_t row = library_.AddSong(folder, file.name, kUnknownSize);
      // Use the table's text as the key, because it outlives the listing.
      rows.emplace(songs_.Key(library_.Mp3Info(kFileName, row)), row);
    }
  }

  clsMain& library_;
  /// Files that are already known as present songs are not added; they would only be removed again
  /// as duplicates.
  KnownSongs songs_;
  std::optional<NewFolders> new_folders_;  ///< with the switch `new_subfolders`
  bool has_new_folders_ = false;
};

void clsMain::AddFromRememberedFolders() {
  const std::int32_t rows_before = UBoundOfMp3Array();
  std::int32_t old_count = rows_before;
  std::vector<std::string> folders = RememberedFolders();
  FolderScan scan(*this);
  scan.Run(std::move(folders));
  // From here on the scan can no longer be cancelled: the songs found are added completely.
  disk_.SetCallbacks({}, {});
  DeleteIdenticalFileNamesAndPaths(old_count);
  // The end of the scan adds the new folders to the list.
  if (scan.HasNewFolders() && table_.rows() > rows_before) folder_list_.IsStale(true);
}

std::vector<std::string> clsMain::RememberedFolders() {
  folder_list_.Clear();
  if (!folder_list_.IsStale()) folder_list_.Read(problems_);
  if (!folder_list_.IsRead() && !folder_list_.IsUnread()) {
    // Rebuild the list from the folders of the songs.
    RewriteFolderList();
    if (!folder_list_.IsStale()) folder_list_.Read(problems_);
  }
  std::vector<std::string> folders;
  // Only absolute paths are folders with songs.
  const auto add = [&](std::string_view folder) {
    if (IsAbsolutePath(folder) && !disk_.IsNotAsked(folder))
      folders.push_back(EnsureTrailingBackslash(folder));
  };
  for (const std::string_view line : folder_list_.Lines()) add(line);
  if (folder_list_.IsEmpty() ? !FoldersOf(false, 1).empty() : folder_list_.IsDamaged())
    folder_list_.KeepDamaged(problems_);
  // If the list was not read or is damaged, it lacks folders, so add the folders of all songs.
  std::unordered_set<std::string> listed(folders.begin(), folders.end());
  const auto add_unless_listed = [&](const std::string& folder) {
    if (listed.insert(folder).second) add(folder);
  };
  for (const bool away : {false, true})
    for (const std::string& folder : FoldersOf(away, 1)) add_unless_listed(folder);
  for (const UnreadFolder& folder : state_.Unread().Folders())
    if (!folder.below) add_unless_listed(folder.path);
  return folders;
}

void clsMain::RewriteFolderList() {
  WriteOutMp3DirectoryLocations();
  folder_list_.IsStale(!folder_list_.Error().empty());
}

void clsMain::LeaveOutKnownPaths(std::int32_t old_count) {
  if (table_.rows() <= old_count) return;
  std::unordered_map<std::string, std::int32_t> rows;
  const auto path = [this](std::int32_t row) { return PathKey(Song(row).Path()); };
  // Where a song is a file name, removing duplicates also removes known paths, except these.
  for (std::int32_t row = 1; row <= old_count; ++row)
    if (!Song(row).IsMissing() &&
        (switches_.songs_by_path || table_.IsSetAside(row) || table_.Facts(row).away != 0 ||
         MayHaveOtherSpelling(table_.Cell(kFileName, row))))
      rows.emplace(path(row), row);
  if (rows.empty() && !switches_.songs_by_path) return;
  std::vector<char> is_removed(static_cast<std::size_t>(table_.rows()));
  for (std::int32_t row = old_count + 1; row <= table_.rows(); ++row) {
    const auto found = rows.find(path(row));
    if (found == rows.end()) {
      if (switches_.songs_by_path) rows.emplace(path(row), row);
      continue;
    }
    for (const std::int16_t column : {kFileLocation, kFileName})
      table_.SetCell(column, found->second, table_.Cell(column, row));
    SongFacts& facts = table_.Facts(found->second);
    if (table_.Facts(row).size != kUnknownSize) facts.size = table_.Facts(row).size;
    facts.away = 0;
    is_removed[static_cast<std::size_t>(row - 1)] = 1;
  }
  table_.Remove(is_removed);
}

void clsMain::LeaveOutCopiesOfAwaySongs(std::int32_t old_count) {
  std::unordered_map<std::string_view, std::vector<std::int32_t>> away;
  for (std::int32_t row = 1; row <= old_count; ++row)
    if (IsOnAwayDrive(row) && !table_.IsSetAside(row))
      away[table_.Cell(kFileName, row)].push_back(row);
  if (away.empty()) return;
  std::vector<char> is_removed(static_cast<std::size_t>(table_.rows()));
  for (std::int32_t row = old_count + 1; row <= table_.rows(); ++row) {
    const auto found = away.find(table_.Cell(kFileName, row));
    if (found == away.end()) continue;
    const std::int64_t size = SizeOf(row);
    const auto same =
        std::find_if(found->second.begin(), found->second.end(), [&](std::int32_t other) {
          const std::int64_t other_size = table_.Facts(other).size;
          return size == kUnknownSize || other_size == kUnknownSize || size == other_size;
        });
    if (same == found->second.end()) continue;
    is_removed[static_cast<std::size_t>(row - 1)] = 1;
    left_out_.push_back({Song(row).Path(), Song(*same).Path()});
  }
  table_.Remove(is_removed);
}

std::vector<char> clsMain::RowsToCompare() const {
  std::vector<char> counts(static_cast<std::size_t>(table_.rows()));
  for (std::int32_t row = 1; row <= table_.rows(); ++row)
    counts[static_cast<std::size_t>(row - 1)] = table_.Cell(kFileIsThere, row) == kPresent &&
                                                !table_.IsSetAside(row) && !IsOnAwayDrive(row);
  return counts;
}

void clsMain::DeleteIdenticalFileNamesAndPaths(std::int32_t& old_count) {
  if (scan_.kind != ScanKind::kFiles) left_out_.clear();
  const std::size_t before = left_out_.size();
  LeaveOutKnownPaths(old_count);
  MoveOutOfExcludedFolders(old_count);
  if (!switches_.songs_by_path) {
    LeaveOutCopiesOfAwaySongs(old_count);
    std::vector<LeftOutFile> left_out = RemoveDuplicates(table_, old_count, RowsToCompare());
    left_out_.insert(left_out_.end(), std::make_move_iterator(left_out.begin()),
                     std::make_move_iterator(left_out.end()));
  }
  for (std::size_t k = before; k < left_out_.size(); ++k) findings_.LeaveOut(left_out_[k]);
  if (scan_.kind == ScanKind::kFiles)
    scan_.left_out += static_cast<std::int32_t>(left_out_.size() - before);
  SortByRecord();
  table_.Pack();
  UpdateSetAside();
  if (table_.rows() <= old_count) return;
  for (std::int32_t row = old_count + 1; row <= table_.rows(); ++row)
    table_.SetCell(kRecordNumber, row, std::to_string(row));
  scan_.new_songs += table_.rows() - old_count;
  RecognizeReturned(old_count);
  Save();
}

void clsMain::ForReturned(
    std::int32_t first, const std::function<bool(std::int32_t row)>& is_candidate,
    const std::function<bool(std::int32_t row, const MissingSong& song)>& accept) {
  MissingSongs& missing = state_.Missing();
  if (missing.size() == 0) return;
  std::vector<char> is_back(static_cast<std::size_t>(table_.rows()) + 1);
  const auto pass = [&](auto&& song_of) {
    for (std::int32_t row = first; row <= table_.rows(); ++row) {
      if (is_back[static_cast<std::size_t>(row)] != 0 ||
          !missing.HasName(table_.Cell(kFileName, row)) || !is_candidate(row))
        continue;
      const MissingSong* const song = song_of(row);
      if (song == nullptr || !accept(row, *song)) continue;
      const std::int32_t number = song->number;
      missing.CameBack(number, row);
      returned_.push_back({number, row});
      ++scan_.back;
      is_back[static_cast<std::size_t>(row)] = 1;
    }
  };
  // First, so that no copy elsewhere is taken for a song that is back in its place.
  if (switches_.songs_by_path || HasNamesakes())
    pass([&](std::int32_t row) {
      return missing.In(table_.Cell(kFileLocation, row), table_.Cell(kFileName, row));
    });
  // The size is read only if a missing song has this name. Other sizes are read later, when a
  // window is open.
  pass([&](std::int32_t row) { return missing.Only(table_.Cell(kFileName, row), SizeOf(row)); });
}

void clsMain::RecognizeReturned(std::int32_t old_count) {
  ForReturned(
      old_count + 1, [](std::int32_t) { return true; },
      [this](std::int32_t row, const MissingSong& song) {
        table_.SetCell(kSongRank, row, song.rank);
        --scan_.new_songs;
        return true;
      });
}

std::int64_t clsMain::SizeOf(std::int32_t row) {
  std::int64_t& size = table_.Facts(row).size;
  if (size != kUnknownSize) return size;
  const FileStatus status = CheckSongFile(row);
  if (status.presence == FilePresence::kThere) size = static_cast<std::int64_t>(status.size);
  return size;
}

void clsMain::RecognizeLate() {
  const std::size_t before = returned_.size();
  ForReturned(
      1, [this](std::int32_t row) { return IsPresent(row) && !IsAway(row); },
      [this](std::int32_t row, const MissingSong& song) {
        // A song with a lower number is older than the missing song, so it is another song.
        if (song.number >= row) return false;
        // Of two files that are alike, the other one was here before this one became missing.
        if (HasNamesakes() && table_.Facts(row).added <= song.day) return false;
        // Keep a rank that the user has set meanwhile.
        if (table_.Cell(kSongRank, row) == kUnranked) table_.SetCell(kSongRank, row, song.rank);
        return true;
      });
  if (returned_.size() > before) Save();
}

void clsMain::ImportFoundSongs(std::int32_t old_count) {
  if (!Mp3MainHasSomeMembers()) return;
  if (old_count == 0) {
    LoadMemory();
    state_.Missing().Clear();
    state_.Repaired().Clear();
    SortByName();
  }
  DeleteIdenticalFileNamesAndPaths(old_count);
  RenumberBasedOnArrayNumber();
  // If saving failed, do not load the old file over the songs found.
  const bool saved = Save();
  // Loading resets which songs are away, so load only when no old songs are kept.
  if (saved && old_count == 0) LoadWhatWasSaved();
  WriteOutMp3DirectoryLocations();
}

void clsMain::LoadWhatWasSaved() {
  SongTable found = std::move(table_);
  const LibraryStorage::Written written = storage_.LastWritten();
  if (LoadMain()) return;
  // Reading the file back failed, so continue with the songs in memory, which the file contains.
  table_ = std::move(found);
  storage_.Restore(written);
}

std::vector<ReturnedSong> clsMain::TakeReturned() { return std::exchange(returned_, {}); }

}  // namespace tallow
